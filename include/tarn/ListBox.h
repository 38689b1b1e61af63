#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

#include <vector>

namespace tarn {
/// A list box, made and used like a ComboBox. For columns and pictures take a ListView.
///
/// Indices count from 0, and -1 means none. Adding throws BadAllocation when the box is out of space and a
/// `std::runtime_error` otherwise; the other failures are WindowsErrors. To draw the items of a box with an
/// owner-draw style derive from this class and OwnerDrawable.
class TARN_API ListBox : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// The new item's index. Throws "Can't add string to listbox".
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
    /// Throws "Can't get listbox item text".
    ///@{
    BasicString<char> getStringA(unsigned index) const;
    BasicString<wchar_t> getStringW(unsigned index) const;
    ///@}
    /// For an owner-drawn box without `LBS_HASSTRINGS`: an item that is only this value.
    /// Throws "Can't add item to listbox".
    int addItem(const void* data) const;
    /// How many are left. Throws "Can't delete listbox item".
    int deleteString(unsigned index) const;
    /// Deletes all items.
    void resetContent() const;
    /// How many items there are.
    int getCount() const;

    /// Throws "Can't set listbox item data".
    void setItemData(unsigned index, const void* data) const;
    /// All bits set for an item that does not exist.
    void* getItemData(unsigned index) const;
    /// The first item behind `start`, and then from the top, that begins with the text, in any case.
    ///@{
    int findString(const char* text, unsigned start = static_cast<unsigned>(-1)) const;
    int findString(const wchar_t* text, unsigned start = static_cast<unsigned>(-1)) const;
    ///@}
    /// Of a box in which one item can be selected.
    int getCurrentSelection() const;
    /// With -1 nothing is selected any more.
    int setCurrentSelection(unsigned index) const;

    // ---- For a box in which several items can be selected

    /// Also of any other box.
    bool isSelected(unsigned index) const;
    /// -1 means all items. Throws "Can't select listbox item".
    void setSelected(unsigned index, bool selected) const;
    /// In their order; also of any other box.
    std::vector<int> getSelectedItems() const;

    /// The style `LBS_HASSTRINGS`, which matters for owner-drawn boxes only.
    bool hasStrings() const;
    /// The styles `LBS_OWNERDRAWFIXED` and `LBS_OWNERDRAWVARIABLE`, or either of them.
    ///@{
    bool isOwnerDrawFixed() const;
    bool isOwnerDrawVariable() const;
    bool isOwnerDraw() const;
    ///@}
};
} // namespace tarn
