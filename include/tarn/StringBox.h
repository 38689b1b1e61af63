#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
namespace detail {
/// The numbers of the messages and styles, and the texts of the errors.
///@{
struct ComboBoxMessages;
struct ListBoxMessages;
///@}
} // namespace detail

/// What ComboBox and ListBox have in common: a box with texts to choose from.
///
/// Indices count from 0, and -1 means none. Adding throws BadAllocation when the box is out of space and a
/// `std::runtime_error` otherwise; the other failures are WindowsErrors. The class says with which texts. To draw the
/// items of a box with an owner-draw style derive from this class and OwnerDrawable.
template <class Messages> class TARN_API StringBox : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// The new item's index.
    int addString(const char* text) const;
    /// The same.
    int addString(const wchar_t* text) const;
    /// Each line of a string resource (null: the program's) becomes an item, without empty ones. Gives the
    /// last item's index, -1 when there was none, also because the resource is missing.
    int addString(unsigned short resource, HINSTANCE module) const;
    /// Before the item `index`, or at the end for -1, also in a sorted box; otherwise as addString().
    int insertString(unsigned index, const char* text) const;
    /// The same.
    int insertString(unsigned index, const wchar_t* text) const;
    /// The text of an item.
    BasicString<char> getStringA(unsigned index) const;
    /// The same.
    BasicString<wchar_t> getStringW(unsigned index) const;
    /// For an owner-drawn box whose style has no `..._HASSTRINGS`: an item that is only this value.
    int addItem(const void* data) const;
    /// How many are left.
    int deleteString(unsigned index) const;
    /// Deletes all items.
    void resetContent() const;
    /// How many items there are.
    int getCount() const;

    /// The program's own value.
    void setItemData(unsigned index, const void* data) const;
    /// All bits set for an item that does not exist.
    void* getItemData(unsigned index) const;
    /// The first item behind `start`, and then from the top, that begins with the text, in any case.
    int findString(const char* text, unsigned start = static_cast<unsigned>(-1)) const;
    /// The same.
    int findString(const wchar_t* text, unsigned start = static_cast<unsigned>(-1)) const;
    /// -1 when none is selected. Of a box in which one item can be selected.
    int getCurrentSelection() const;
    /// Gives the index, -1 for an item that does not exist: then, and for -1, nothing is selected any more.
    int setCurrentSelection(unsigned index) const;

    /// The style `..._HASSTRINGS`, which matters for owner-drawn boxes only.
    bool hasStrings() const;
    /// The style `..._OWNERDRAWFIXED`.
    bool isOwnerDrawFixed() const;
    /// The style `..._OWNERDRAWVARIABLE`.
    bool isOwnerDrawVariable() const;
    /// Either of them.
    bool isOwnerDraw() const;
};

extern template class StringBox<detail::ComboBoxMessages>;
extern template class StringBox<detail::ListBoxMessages>;
} // namespace tarn
