#include <tarn/Dialog.h>

#include <tarn/PaintDeviceContext.h>

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/SystemDialogs.h"
#include "DialogTemplate.h"

namespace tarn {
void Dialog::defaultWindowProc() { markLastMessageUnhandled(); }

void Dialog::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    if (code == 0 && (id == IDOK || id == IDCANCEL || id == IDCLOSE))
        end(id);
    else
        Window::onCommand(sender, code, id);
}

void Dialog::onPaint()
{
    const HICON icon = isIconic() ? Dialog::onQueryDragIcon() : nullptr;
    if (!icon) {
        defaultWindowProc();
        return;
    }
    const PaintDeviceContext context(*this);
    sendMessageA(WM_ICONERASEBKGND, reinterpret_cast<WPARAM>(context.getHandle()));
    const Size space = getClientSize();
    context.drawIcon((space.cx - GetSystemMetrics(SM_CXICON) + 1) / 2, (space.cy - GetSystemMetrics(SM_CYICON) + 1) / 2,
                     icon);
}

HICON Dialog::onQueryDragIcon()
{
    if (const HICON icon = getIcon(big_icon))
        return icon;
    if (const HICON icon = getIcon(small_icon))
        return icon;
    return Window::onQueryDragIcon();
}

void Dialog::onDPIChanged(const DPI& dpi, const Rect& suggested)
{
    const HFONT former = font_ ? font_.getHandle() : reinterpret_cast<HFONT>(sendMessageA(WM_GETFONT));
    Font next = former ? Font(former, false).rescaled(dpi_, dpi) : Font();
    rescaleControls(dpi_, dpi, former, next);
    font_ = std::move(next);
    dpi_ = dpi;
    Window::onDPIChanged(dpi, suggested);
}

bool Dialog::onInitDialog(Window&) { return true; }

void Dialog::create(HWND parent, unsigned short resource, HINSTANCE instance)
{
    constexpr const char* failed = "Can't create dialog";
    WindowInternals::destroyForNext(*this, failed);
    parent_ = parent;
    resource_ = resource;
    instance_ = instance;
    HandlerScope scope;
    const HWND hwnd = CreateDialogParamW(instance, MAKEINTRESOURCEW(resource), parent, &Dialog::dlgProc,
                                         reinterpret_cast<LPARAM>(this));
    if (scope.hasKept() && hwnd)
        DestroyWindow(hwnd);
    scope.rethrow();
    ensure(hwnd, failed);
    // A handler may have ended the dialog already, and with it this object.
    if (getWindowFromHandle(hwnd, false).get() == this)
        attach(hwnd, true);
}
void Dialog::create(HWND parent) { create(parent, resource_, instance_); }
void Dialog::create() { create(parent_); }

int Dialog::showModal() const
{
    const auto run = [this] {
        return DialogBoxParamW(instance_, MAKEINTRESOURCEW(resource_), parent_, &Dialog::dlgProc,
                               reinterpret_cast<LPARAM>(this));
    };
    // Both are results as good as any for a dialog that ran.
    const auto isFailure = [](INT_PTR result) {
        return (result == 0 || result == -1) && GetLastError() != ERROR_SUCCESS;
    };
    const auto cancel = [this]() noexcept { cancelDialog(getWindowHandle()); };
    return static_cast<int>(
        ensureClearing([&] { return runningLoop(run, cancel); }, isFailure, "Can't create modal dialog"));
}

Size Dialog::getWindowSize() const { return isOpen() ? Window::getWindowSize() : sizeOfTemplate(instance_, resource_); }

void Dialog::end(int result) const
{
    ensure(runningHandlers([&] { return EndDialog(getWindowHandle(), result); }), "Can't end modal dialog");
}

INT_PTR Dialog::initialize(HWND hwnd, HWND focus)
{
    attach(hwnd, false);
    listens_ = true;
    dpi_ = getDPI();
    font_.close();
    const Pointer<Window> focused = getWindowFromHandle(focus, true);
    Window none;
    return onInitDialog(focused ? *focused : none);
}

INT_PTR CALLBACK Dialog::dlgProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return guardedCallback<INT_PTR>(FALSE, {nullptr, hwnd, msg}, [&]() -> INT_PTR {
        if (msg != WM_INITDIALOG)
            return DialogInternals::route(hwnd, msg, wParam, lParam);
        try {
            return reinterpret_cast<Dialog*>(lParam)->initialize(hwnd, reinterpret_cast<HWND>(wParam));
        } catch (...) { // The object may not know of its window.
            cancelDialog(hwnd);
            throw;
        }
    });
}

INT_PTR Dialog::DialogInternals::route(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam)
{
    const Pointer<Window> found = getWindowFromHandle(hwnd, false);
    auto* const dialog = dynamic_cast<Dialog*>(found.get());
    if (!dialog)
        return FALSE;
    // The last error that a handler leaves behind is its own affair. With its last message the dialog has
    // come to a regular end, which showModal() must not take for a failure.
    const DWORD error = msg == WM_NCDESTROY ? ERROR_SUCCESS : GetLastError();
    const message_result result = dialog->processMessage(msg, wParam, lParam);
    if (result.handled)
        SetWindowLongPtrW(hwnd, DWLP_MSGRESULT, result.value);
    SetLastError(error);
    if (!result.handled)
        return FALSE;
    return msg == WM_QUERYDRAGICON ? GetWindowLongPtrW(hwnd, DWLP_MSGRESULT) : TRUE;
}
} // namespace tarn
