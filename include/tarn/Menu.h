#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/OwnedHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// A menu, owned or borrowed; its items are named by position or by command id.
///
/// Follows the rule of OwnedHandle: copy construction moves, assignment of a variable makes a second owner. A menu
/// bar belongs to its window and a submenu to its menu as soon as it is there: call detach() then, so that the object
/// does not destroy it too.
///
/// Failures throw WindowsError, also out of the destructor.
class TARN_API Menu : public OwnedHandle<HMENU> {
public:
    /// Of an item: neither a grayed nor a disabled one can be chosen, and only a grayed one looks like it.
    enum state : int { enabled = MF_ENABLED, grayed = MF_GRAYED, disabled = MF_DISABLED };
    /// Whether an item shows its check mark.
    enum check : int { unchecked = MF_UNCHECKED, checked = MF_CHECKED };

    /// What `MENUITEMINFO` tells of an item, with the text in its own memory (empty for separators).
    struct ItemInfo {
        /// `MFT_...`
        unsigned type = 0;
        /// `MFS_...`
        unsigned state = 0;
        /// What onCommand() is told.
        unsigned id = 0;
        /// Borrowed, as the bitmaps are.
        HMENU subMenu = nullptr;
        /// What stands before the text; null for the system's own mark, or none.
        ///@{
        HBITMAP checkedBitmap = nullptr;
        HBITMAP uncheckedBitmap = nullptr;
        ///@}
        /// The program's own value.
        ULONG_PTR data = 0;
        /// With its "&" and what stands behind the tab.
        BasicString<wchar_t> text;
    };

    Menu() noexcept = default;
    /// Borrows the handle, or with `owns` takes it over.
    Menu(HMENU handle, bool owns) noexcept : OwnedHandle(handle, owns) {}
    /// As create().
    explicit Menu(bool popup) { create(popup); }
    /// As load().
    Menu(int resource, HINSTANCE module) { load(resource, module); }
    /// As those of OwnedHandle.
    ///@{
    Menu(Menu& other) noexcept = default;
    Menu(Menu&& other) noexcept = default;
    Menu& operator=(const Menu&) noexcept = default;
    Menu& operator=(Menu&& other) noexcept;
    ///@}
    ~Menu() noexcept(false);

    /// Null for none. Lent, not given.
    operator HMENU() const noexcept { return getHandle(); }

    /// An empty menu, for a menu bar or to pop up, instead of what is held. Throws "Can't create menu".
    void create(bool popup);
    /// Throws "Can't load menu RESOURCE from module INSTANCE".
    void load(int resource, HINSTANCE module);
    /// Destroys an owned menu with its submenus. Becomes null in any case. Throws "Can't destroy menu".
    void close();

    /// Before the item `position`, which is an id unless `flags` has `MF_BYPOSITION` (-1 is then the end).
    /// With `MF_POPUP`, `id` is the handle of the submenu. Throw "Can't insert menu item".
    ///@{
    void insert(const char* text, unsigned position, unsigned flags, UINT_PTR id) const;
    void insert(const wchar_t* text, unsigned position, unsigned flags, UINT_PTR id) const;
    ///@}
    /// At the end, or before an item. Throw "Can't insert menu separator".
    ///@{
    void insertSeparator() const;
    void insertSeparator(bool byPosition, unsigned position) const;
    ///@}
    /// Takes an item out; its submenu lives on and is then the caller's. Throws "Can't remove menu item".
    void remove(unsigned item, bool byPosition) const;

    /// Throws "Can't retrieve item count for menu MENU".
    unsigned getItemCount() const;
    /// Throws "Can't retrieve item POSITION of menu MENU", also, with the code 0, for an item with a submenu.
    unsigned getItemID(unsigned position) const;
    /// Throws "Can't retrieve menu item info".
    void getItemInfo(ItemInfo& info, unsigned item, bool byPosition) const;
    /// What it was before; -1 when there is no such item.
    ///@{
    state setItemState(state newState, unsigned item, bool byPosition) const;
    check setItemCheck(check newCheck, unsigned item, bool byPosition) const;
    ///@}

    /// Borrowed; null for an item without.
    Menu getSubMenu(unsigned position) const;
    /// The menu that has the item `id` as one of its own: this one, or one of its submenus at any depth
    /// (borrowed). Null when there is none.
    ///
    /// When this menu has the item itself the result has its ownership flag too, and both would destroy the
    /// menu: search an owning one through `Menu(menu.getHandle(), false).findParentOfItem(id)`.
    Menu findParentOfItem(unsigned short id) const;
};
} // namespace tarn
