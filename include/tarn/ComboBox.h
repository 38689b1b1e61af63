#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

namespace tarn {
/// A combo box: an edit field or a display with a list that drops down.
///
/// Indices count from 0, and -1 means none. Adding throws BadAllocation when the box is out of space and a
/// `std::runtime_error` otherwise; the other failures are WindowsErrors. To draw the items of a box with an
/// owner-draw style derive from this class and OwnerDrawable.
class TARN_API ComboBox : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// The new item's index. Throws "Unspecified error in adding a string to a combo box".
    ///@{
    int addString(const char* text) const;
    int addString(const wchar_t* text) const;
    ///@}
    /// Each line of a string resource (null: the program's) becomes an item, without empty ones. Gives the
    /// last item's index, -1 when there was none, also because the resource is missing.
    int addString(unsigned short resource, HINSTANCE module) const;
    /// Before the item `index`, or at the end for -1, also in a sorted box; otherwise as addString().
    ///@{
    int insertString(unsigned index, const char* text) const;
    int insertString(unsigned index, const wchar_t* text) const;
    ///@}
    /// Throws "Can't get combo box item text".
    ///@{
    BasicString<char> getStringA(unsigned index) const;
    BasicString<wchar_t> getStringW(unsigned index) const;
    ///@}
    /// For an owner-drawn box without `CBS_HASSTRINGS`: an item that is only this value.
    /// Throws "Unspecified error in adding an owner draw item to a combo box".
    int addItem(const void* data) const;
    /// How many are left. Throws "Error when deleting a combo box item".
    int deleteString(unsigned index) const;
    /// Deletes all items.
    void resetContent() const;
    /// How many items there are.
    int getCount() const;

    /// Throws "Can't set combo box item data".
    void setItemData(unsigned index, const void* data) const;
    /// All bits set for an item that does not exist.
    void* getItemData(unsigned index) const;
    /// The first item behind `start`, and then from the top, that begins with the text, in any case.
    ///@{
    int findString(const char* text, unsigned start = static_cast<unsigned>(-1)) const;
    int findString(const wchar_t* text, unsigned start = static_cast<unsigned>(-1)) const;
    ///@}
    /// -1 when none is selected.
    int getCurrentSelection() const;
    /// Gives the index, -1 for an item that does not exist: then, and for -1, nothing is selected any more.
    int setCurrentSelection(unsigned index) const;

    /// The style `CBS_HASSTRINGS`, which matters for owner-drawn boxes only.
    bool hasStrings() const;
    /// The styles `CBS_OWNERDRAWFIXED` and `CBS_OWNERDRAWVARIABLE`, or either of them.
    ///@{
    bool isOwnerDrawFixed() const;
    bool isOwnerDrawVariable() const;
    bool isOwnerDraw() const;
    ///@}
};
} // namespace tarn
