#include <tarn/Window.h>

#include <tarn/ColourScheme.h>
#include <tarn/DeviceContext.h>

#include "WindowWatch.h"

#include <shellapi.h>

#include <cwchar>
#include <memory>
#include <type_traits>
#include <vector>

// What a message's two parameters mean, and which handler gets them.

namespace tarn {
namespace {
unsigned short low(ULONG_PTR value) { return LOWORD(value); }
unsigned short high(ULONG_PTR value) { return HIWORD(value); }

// Mouse coordinates may be negative, left of or above the window.
Point signedPoint(LPARAM lParam)
{
    return Point(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
}

// The keyboard's description of a key press.
struct KeyData {
    explicit KeyData(LPARAM lParam) : bits(static_cast<ULONG>(lParam)) {}

    unsigned short repeat() const { return LOWORD(bits); }
    unsigned char scanCode() const { return static_cast<unsigned char>(bits >> 16); }
    bool isExtended() const { return bits >> 24 & 1; }
    bool wasDown() const { return bits >> 30 & 1; }

    ULONG bits;
};

template <class T> T& pointee(LPARAM lParam) { return *reinterpret_cast<T*>(lParam); }

/// The object of the window that a parameter names, or one that stands for it until the handler returns; null for none.
class Partner {
public:
    template <class Parameter>
    explicit Partner(Parameter parameter)
        : temporary_(reinterpret_cast<HWND>(parameter)), bound_(Window::getWindowFromHandle(temporary_, false))
    {
    }

    operator Window*() { return bound_ || !temporary_ ? bound_.get() : &temporary_; }

private:
    Window temporary_;
    Window::Pointer<Window> bound_;
};

struct FinishDrop {
    void operator()(HDROP drop) const { DragFinish(drop); }
};
} // namespace

LRESULT Window::onMessage(UINT msg, WPARAM wParam, LPARAM lParam)
{
    const auto keys = low(wParam);
    switch (msg) {
    case WM_DESTROY:
        onDestroy();
        break;
    case WM_MOVE: // Unsigned, unlike the mouse's coordinates: programs rely on it.
        onMove(Point(LOWORD(lParam), HIWORD(lParam)));
        break;
    case WM_SIZE:
        onSize(static_cast<UINT>(wParam), Size(LOWORD(lParam), HIWORD(lParam)));
        break;
    case WM_PAINT:
        onPaint();
        break;
    case WM_DRAWITEM:
        onDrawItem(static_cast<UINT>(wParam), pointee<const DRAWITEMSTRUCT>(lParam));
        break;
    case WM_MEASUREITEM:
        onMeasureItem(static_cast<UINT>(wParam), pointee<MEASUREITEMSTRUCT>(lParam));
        break;
    case WM_DELETEITEM:
        onDeleteItem(static_cast<UINT>(wParam), pointee<const DELETEITEMSTRUCT>(lParam));
        break;
    case WM_QUERYDRAGICON:
        return reinterpret_cast<LRESULT>(onQueryDragIcon());
    case WM_COMPAREITEM:
        return onCompareItem(static_cast<UINT>(wParam), pointee<const COMPAREITEMSTRUCT>(lParam));
    case WM_NOTIFY:
        return onNotifyToAnswer(pointee<NMHDR>(lParam));
    case WM_NCDESTROY: {
        const WindowInternals::Watch watch(*this);
        const HWND hwnd = hwnd_;
        onNCDestroy();
        if (watch.isAlive())
            WindowInternals::endOfWindow(*this, hwnd);
        break;
    }
    case WM_KEYDOWN: {
        const KeyData key(lParam);
        onKeyDown(static_cast<UINT>(wParam), key.repeat(), key.scanCode(), key.isExtended(), key.wasDown());
        break;
    }
    case WM_KEYUP: {
        const KeyData key(lParam);
        onKeyUp(static_cast<UINT>(wParam), key.scanCode(), key.isExtended());
        break;
    }
    case WM_COMMAND:
        onCommand(Partner(lParam), high(wParam), low(wParam));
        break;
    case WM_TIMER:
        if (!WindowInternals::runTimerFunction(*this, wParam))
            onTimer(wParam);
        break;
    case WM_HSCROLL:
        onHScroll(Partner(lParam), low(wParam), high(wParam));
        break;
    case WM_VSCROLL:
        onVScroll(Partner(lParam), low(wParam), high(wParam));
        break;
    case WM_MOUSEMOVE:
        onMouseMove(keys, signedPoint(lParam));
        break;
    case WM_LBUTTONDOWN:
        onLeftButtonDown(keys, signedPoint(lParam));
        break;
    case WM_LBUTTONUP:
        onLeftButtonUp(keys, signedPoint(lParam));
        break;
    case WM_LBUTTONDBLCLK:
        onLeftButtonDoubleClick(keys, signedPoint(lParam));
        break;
    case WM_RBUTTONDOWN:
        onRightButtonDown(keys, signedPoint(lParam));
        break;
    case WM_RBUTTONUP:
        onRightButtonUp(keys, signedPoint(lParam));
        break;
    case WM_RBUTTONDBLCLK:
        onRightButtonDoubleClick(keys, signedPoint(lParam));
        break;
    case WM_MBUTTONDOWN:
        onMiddleButtonDown(keys, signedPoint(lParam));
        break;
    case WM_MBUTTONUP:
        onMiddleButtonUp(keys, signedPoint(lParam));
        break;
    case WM_MBUTTONDBLCLK:
        onMiddleButtonDoubleClick(keys, signedPoint(lParam));
        break;
    case WM_MOUSEWHEEL:
        onMouseWheel(keys, static_cast<short>(high(wParam)), signedPoint(lParam));
        break;
    case WM_SIZING:
        onSizing(static_cast<UINT>(wParam), static_cast<Rect&>(pointee<RECT>(lParam)));
        break;
    case WM_MOVING:
        onMoving(static_cast<Rect&>(pointee<RECT>(lParam)));
        break;
    case WM_ENTERSIZEMOVE:
        onEnterSizeMove();
        break;
    case WM_EXITSIZEMOVE:
        onExitSizeMove();
        break;
    case WM_CLOSE:
        onClose();
        break;
    case WM_CHAR:
        onChar(static_cast<wchar_t>(wParam), KeyData(lParam).repeat());
        break;
    case WM_SETFOCUS:
        onFocusGained(Partner(wParam));
        break;
    case WM_KILLFOCUS:
        onFocusLost(Partner(wParam));
        break;
    case WM_CONTEXTMENU:
        onContextMenu(Partner(wParam), signedPoint(lParam));
        break;
    case WM_SETCURSOR:
        return onSetCursor(Partner(wParam), low(lParam), high(lParam));
    case WM_ERASEBKGND:
        return onEraseBackground(DeviceContext(reinterpret_cast<HDC>(wParam)));
    case WM_MOUSEHWHEEL:
        onMouseHWheel(keys, static_cast<short>(high(wParam)), signedPoint(lParam));
        break;
    case WM_MOUSELEAVE:
        onMouseLeave();
        break;
    case WM_ACTIVATE:
        onActivate(low(wParam), high(wParam) != 0, Partner(lParam));
        break;
    case WM_SHOWWINDOW:
        onShow(wParam != 0, static_cast<UINT>(lParam));
        break;
    case WM_ENABLE:
        onEnable(wParam != 0);
        break;
    case WM_SETTINGCHANGE:
        WindowInternals::reportSettings(*this, static_cast<UINT>(wParam), reinterpret_cast<const wchar_t*>(lParam));
        break;
    case WM_DPICHANGED:
        onDPIChanged(DPI(low(wParam)), *reinterpret_cast<const RECT*>(lParam));
        break;
    case WM_DROPFILES:
        WindowInternals::reportDroppedFiles(*this, wParam);
        break;
    default:
        defaultWindowProc();
    }
    return 0;
}

void Window::WindowInternals::reportSettings(Window& window, UINT what, const wchar_t* section)
{
    // Read first, as a handler may have changed it.
    const bool haveColoursChanged =
        what == SPI_SETHIGHCONTRAST || (section && std::wcscmp(section, L"ImmersiveColorSet") == 0);
    const Watch watch(window);
    window.onSettingsChanged(what, section);
    if (haveColoursChanged && watch.isAlive())
        window.onColourSchemeChanged(ColourScheme::ofUser());
}

void Window::WindowInternals::reportDroppedFiles(Window& window, WPARAM handle)
{
    const auto drop = reinterpret_cast<HDROP>(handle);
    const std::unique_ptr<std::remove_pointer_t<HDROP>, FinishDrop> owner(drop);
    Point position;
    const bool inClientArea = DragQueryPoint(drop, &position) != FALSE;
    std::list<BasicString<wchar_t>> files;
    std::vector<wchar_t> name;
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        const UINT size = DragQueryFileW(drop, i, nullptr, 0) + 1;
        if (name.size() < size)
            name.resize(size);
        files.emplace_back(name.data(), DragQueryFileW(drop, i, name.data(), size));
    }
    window.onDroppedFiles(position, inClientArea, files);
}
} // namespace tarn
