#include <tarn/Window.h>

#include <tarn/TreeView.h>

#include "WindowWatch.h"

// What the handlers do that nobody overrides.

namespace tarn {
namespace {
// The codes of the tree view's family whose structure is NMTREEVIEW.
bool hasTreeViewStructure(UINT code)
{
    switch (code) {
    case TVN_SELCHANGINGA:
    case TVN_SELCHANGINGW:
    case TVN_SELCHANGEDA:
    case TVN_SELCHANGEDW:
    case TVN_ITEMEXPANDINGA:
    case TVN_ITEMEXPANDINGW:
    case TVN_ITEMEXPANDEDA:
    case TVN_ITEMEXPANDEDW:
    case TVN_BEGINDRAGA:
    case TVN_BEGINDRAGW:
    case TVN_BEGINRDRAGA:
    case TVN_BEGINRDRAGW:
    case TVN_DELETEITEMA:
    case TVN_DELETEITEMW:
    case TVN_SINGLEEXPAND:
        return true;
    default:
        return false;
    }
}

// A control that was made narrow sends these: the texts are narrow already.
bool hasNarrowTexts(UINT code)
{
    switch (code) {
    case TVN_SELCHANGINGA:
    case TVN_SELCHANGEDA:
    case TVN_ITEMEXPANDINGA:
    case TVN_ITEMEXPANDEDA:
    case TVN_BEGINDRAGA:
    case TVN_BEGINRDRAGA:
    case TVN_DELETEITEMA:
        return true;
    default:
        return false;
    }
}

/// The narrow form of an item, with the text that it points to.
class NarrowItem {
public:
    NarrowItem(const TVITEMW& item, bool isNarrow)
        : item_{
              item.mask,       item.hItem,  item.state,          item.stateMask, reinterpret_cast<char*>(item.pszText),
              item.cchTextMax, item.iImage, item.iSelectedImage, item.cChildren, item.lParam}
    {
        const bool hasText = (item.mask & TVIF_TEXT) && item.pszText && item.pszText != LPSTR_TEXTCALLBACKW;
        if (!hasText || isNarrow)
            return;
        text_.assign(StringHelper<char>::convert(item.pszText));
        item_.pszText = text_.data();
    }
    NarrowItem(const NarrowItem&) = delete;
    NarrowItem& operator=(const NarrowItem&) = delete;

    const TVITEMA& get() const { return item_; }

private:
    TVITEMA item_;
    BasicString<char> text_;
};

// Whether the object of the tree view that sent it has settled it.
template <class Notification> bool offerToTreeView(const Notification& notification)
{
    const Window::Pointer<Window> sender = Window::getWindowFromHandle(notification.hdr.hwndFrom, false);
    auto* const tree = dynamic_cast<TreeView*>(sender.get());
    return tree && tree->onReflectedNotification(notification);
}

OwnerDrawable* ownerDrawableOf(Window* window) { return dynamic_cast<OwnerDrawable*>(window); }
} // namespace

void Window::onCommand(Window* sender, unsigned short code, unsigned short)
{
    const WindowInternals::Watch watch(*this);
    if (sender) {
        const Pointer<Window> bound = getWindowFromHandle(sender->getWindowHandle(), false);
        if (bound && bound->onReflectedCommand(code))
            return;
    }
    if (watch.isAlive())
        defaultWindowProc();
}

bool Window::onReflectedCommand(unsigned short) { return false; }

LRESULT Window::onNotify(const NMHDR& header)
{
    const int code = static_cast<int>(header.code);
    if (-199 <= code && code <= -100)
        onNotification(reinterpret_cast<const NMLISTVIEW&>(header));
    else if (-499 <= code && code <= -400)
        onNotification(reinterpret_cast<const NMTREEVIEWW&>(header));
    else if (header.code == NM_DBLCLK)
        onDoubleClick(header);
    else
        defaultWindowProc();
    return 0;
}

void Window::onNotification(const NMTREEVIEWW& notification)
{
    const WindowInternals::Watch watch(*this);
    if (offerToTreeView(notification) || !watch.isAlive())
        return;
    const UINT code = notification.hdr.code;
    if (!hasTreeViewStructure(code)) {
        defaultWindowProc();
        return;
    }
    const NarrowItem oldItem(notification.itemOld, hasNarrowTexts(code));
    const NarrowItem newItem(notification.itemNew, hasNarrowTexts(code));
    const NMTREEVIEWA narrow{notification.hdr, notification.action, oldItem.get(), newItem.get(), notification.ptDrag};
    onNotification(narrow);
}

void Window::onNotification(const NMTREEVIEWA& notification)
{
    const WindowInternals::Watch watch(*this);
    if (!offerToTreeView(notification) && watch.isAlive())
        defaultWindowProc();
}

void Window::onDrawItem(UINT, const DRAWITEMSTRUCT& item)
{
    const Pointer<Window> sender = getWindowFromHandle(item.hwndItem, false);
    if (OwnerDrawable* const drawable = ownerDrawableOf(sender))
        drawable->onDrawItem(item);
    else
        defaultWindowProc();
}

// The structure names its control by the id only.
void Window::onMeasureItem(UINT, MEASUREITEMSTRUCT& item)
{
    const HWND itemWindow = item.CtlType == ODT_MENU ? nullptr : GetDlgItem(hwnd_, static_cast<int>(item.CtlID));
    const Pointer<Window> sender = getWindowFromHandle(itemWindow, false);
    if (OwnerDrawable* const drawable = ownerDrawableOf(sender))
        drawable->onMeasureItem(item);
    else
        defaultWindowProc();
}

void Window::onDeleteItem(UINT, const DELETEITEMSTRUCT& item)
{
    const Pointer<Window> sender = getWindowFromHandle(item.hwndItem, false);
    if (OwnerDrawable* const drawable = ownerDrawableOf(sender))
        drawable->onDeleteItem(item);
    else
        defaultWindowProc();
}

OwnerDrawable::compare_result Window::onCompareItem(UINT, const COMPAREITEMSTRUCT& items)
{
    const Pointer<Window> sender = getWindowFromHandle(items.hwndItem, false);
    if (OwnerDrawable* const drawable = ownerDrawableOf(sender))
        return drawable->onCompareItem(items);
    defaultWindowProc();
    return OwnerDrawable::equal;
}

HICON Window::onQueryDragIcon()
{
    defaultWindowProc();
    return nullptr;
}

void Window::onHScroll(Window*, unsigned short, unsigned short) { defaultWindowProc(); }
void Window::onVScroll(Window*, unsigned short, unsigned short) { defaultWindowProc(); }
void Window::onDestroy() { defaultWindowProc(); }
void Window::onDoubleClick(const NMHDR&) { defaultWindowProc(); }
void Window::onNotification(const NMLISTVIEW&) { defaultWindowProc(); }
void Window::onNCDestroy() { defaultWindowProc(); }
void Window::onMouseMove(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onMouseWheel(unsigned short, short, const Point&) { defaultWindowProc(); }
void Window::onLeftButtonDown(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onLeftButtonUp(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onLeftButtonDoubleClick(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onMiddleButtonDown(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onMiddleButtonUp(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onMiddleButtonDoubleClick(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onRightButtonDown(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onRightButtonUp(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onRightButtonDoubleClick(unsigned short, const Point&) { defaultWindowProc(); }
void Window::onKeyDown(UINT, unsigned short, unsigned char, bool, bool) { defaultWindowProc(); }
void Window::onKeyUp(UINT, unsigned char, bool) { defaultWindowProc(); }
void Window::onTimer(UINT_PTR) { defaultWindowProc(); }
void Window::onPaint() { defaultWindowProc(); }
void Window::onSize(UINT, const Size&) { defaultWindowProc(); }
void Window::onSizing(UINT, Rect&) { defaultWindowProc(); }
void Window::onMoving(Rect&) { defaultWindowProc(); }
void Window::onMove(const Point&) { defaultWindowProc(); }
void Window::onEnterSizeMove() { defaultWindowProc(); }
void Window::onExitSizeMove() { defaultWindowProc(); }
void Window::onDroppedFiles(const Point&, bool, const std::list<BasicString<wchar_t>>&) { defaultWindowProc(); }

void Window::onClose() { defaultWindowProc(); }
void Window::onChar(wchar_t, unsigned short) { defaultWindowProc(); }
void Window::onFocusGained(Window*) { defaultWindowProc(); }
void Window::onFocusLost(Window*) { defaultWindowProc(); }
void Window::onContextMenu(Window*, const Point&) { defaultWindowProc(); }
void Window::onMouseHWheel(unsigned short, short, const Point&) { defaultWindowProc(); }
void Window::onMouseLeave() { defaultWindowProc(); }
void Window::onActivate(unsigned short, bool, Window*) { defaultWindowProc(); }
void Window::onShow(bool, UINT) { defaultWindowProc(); }
void Window::onEnable(bool) { defaultWindowProc(); }
void Window::onSettingsChanged(UINT, const wchar_t*) { defaultWindowProc(); }
void Window::onColourSchemeChanged(const ColourScheme&) {}
LRESULT Window::onNotifyToAnswer(NMHDR& header) { return onNotify(header); }

bool Window::onSetCursor(Window*, unsigned short, unsigned short)
{
    defaultWindowProc();
    return false;
}

bool Window::onEraseBackground(const DeviceContext&)
{
    defaultWindowProc();
    return false;
}

// As the system asks of programs that see the dots of each screen; its own procedure leaves the window where it is.
void Window::onDPIChanged(const DPI&, const Rect& suggested) { setPosition(suggested, SWP_NOACTIVATE); }

void OwnerDrawable::onDrawItem(const DRAWITEMSTRUCT&) {}
void OwnerDrawable::onMeasureItem(MEASUREITEMSTRUCT&) {}
void OwnerDrawable::onDeleteItem(const DELETEITEMSTRUCT&) {}
OwnerDrawable::compare_result OwnerDrawable::onCompareItem(const COMPAREITEMSTRUCT&) { return equal; }
} // namespace tarn
