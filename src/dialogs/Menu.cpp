#include <tarn/Menu.h>

#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "MenuApi.h"

namespace tarn {
namespace {
unsigned lookUp(bool byPosition) { return byPosition ? MF_BYPOSITION : MF_BYCOMMAND; }

template <class Ch> void insertItem(HMENU menu, const Ch* text, unsigned position, unsigned flags, UINT_PTR id)
{
    ensure(insertMenuItem(menu, position, flags, id, text), "Can't insert menu item");
}
} // namespace

Menu::~Menu() noexcept(false)
{
    closeAtEnd([this] { close(); });
}
Menu& Menu::operator=(Menu&& other) noexcept
{
    Menu former(moveFrom(other), true);
    closeQuietly([&] { former.close(); });
    return *this;
}

void Menu::create(bool popup)
{
    close();
    setHandle(ensure(popup ? CreatePopupMenu() : CreateMenu(), "Can't create menu"), true);
}

void Menu::load(int resource, HINSTANCE module)
{
    close();
    setHandle(
        ensure(LoadMenuW(module, MAKEINTRESOURCEW(resource)),
               [&] { return BasicString<char>::fromFormat("Can't load menu %d from module %p", resource, module); }),
        true);
}

void Menu::close()
{
    if (const HMENU handle = takeOwned())
        ensure(DestroyMenu(handle), "Can't destroy menu");
}

void Menu::insert(const char* text, unsigned position, unsigned flags, UINT_PTR id) const
{
    insertItem(getHandle(), text, position, flags, id);
}
void Menu::insert(const wchar_t* text, unsigned position, unsigned flags, UINT_PTR id) const
{
    insertItem(getHandle(), text, position, flags, id);
}

void Menu::insertSeparator() const { insertSeparator(true, static_cast<unsigned>(-1)); }
void Menu::insertSeparator(bool byPosition, unsigned position) const
{
    ensure(InsertMenuW(getHandle(), position, lookUp(byPosition) | MF_SEPARATOR, 0, nullptr),
           "Can't insert menu separator");
}

void Menu::remove(unsigned item, bool byPosition) const
{
    ensure(RemoveMenu(getHandle(), item, lookUp(byPosition)), "Can't remove menu item");
}

unsigned Menu::getItemCount() const
{
    return static_cast<unsigned>(ensureNot(-1, GetMenuItemCount(getHandle()), [&] {
        return BasicString<char>::fromFormat("Can't retrieve item count for menu %p", getHandle());
    }));
}

unsigned Menu::getItemID(unsigned position) const
{
    // An item with a submenu is refused without an error code.
    return ensureGDINot(
        static_cast<UINT>(-1), [&] { return GetMenuItemID(getHandle(), static_cast<int>(position)); },
        [&] { return BasicString<char>::fromFormat("Can't retrieve item %u of menu %p", position, getHandle()); });
}

void Menu::getItemInfo(ItemInfo& info, unsigned item, bool byPosition) const
{
    constexpr const char* failed = "Can't retrieve menu item info";
    MENUITEMINFOW raw{};
    raw.cbSize = sizeof raw;
    raw.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_CHECKMARKS | MIIM_DATA | MIIM_STRING;
    ensure(GetMenuItemInfoW(getHandle(), item, byPosition, &raw), failed);
    BasicString<wchar_t> text;
    if (raw.cch) {
        text.resize(raw.cch);
        MENUITEMINFOW wanted{}; // Not `raw` again: a call may clear what it is not asked for.
        wanted.cbSize = sizeof wanted;
        wanted.fMask = MIIM_STRING;
        wanted.dwTypeData = text.data();
        wanted.cch = raw.cch + 1; // The call writes a terminator.
        ensure(GetMenuItemInfoW(getHandle(), item, byPosition, &wanted), failed);
    }
    info = ItemInfo{raw.fType,       raw.fState,        raw.wID,        raw.hSubMenu,
                    raw.hbmpChecked, raw.hbmpUnchecked, raw.dwItemData, std::move(text)};
}

Menu::state Menu::setItemState(state newState, unsigned item, bool byPosition) const
{
    return static_cast<state>(EnableMenuItem(getHandle(), item, static_cast<UINT>(newState) | lookUp(byPosition)));
}

Menu::check Menu::setItemCheck(check newCheck, unsigned item, bool byPosition) const
{
    return static_cast<check>(CheckMenuItem(getHandle(), item, static_cast<UINT>(newCheck) | lookUp(byPosition)));
}

Menu Menu::getSubMenu(unsigned position) const
{
    return Menu(GetSubMenu(getHandle(), static_cast<int>(position)), false);
}

Menu Menu::findParentOfItem(unsigned short id) const
{
    const unsigned count = getItemCount();
    for (unsigned position = 0; position < count; ++position) {
        ItemInfo info;
        getItemInfo(info, position, true);
        if (info.id == id)
            return Menu(getHandle(), isOwner());
        if (!info.subMenu)
            continue;
        const Menu found = Menu(info.subMenu, false).findParentOfItem(id);
        if (!found.isNull())
            return Menu(found.getHandle(), false);
    }
    return Menu();
}

Menu Window::getMenu() const { return Menu(GetMenu(hwnd_), false); }
} // namespace tarn
