#include <tarn/Window.h>

#include <tarn/WindowClass.h>

#include "../foundation/Check.h"
#include "HandlerScope.h"
#include "WindowApi.h"
#include "WindowWatch.h"

#include <string>
#include <utility>

// Which object belongs to which window: making, binding and ending windows. An object is in the map exactly
// while it is bound, and never under another handle than its own.

namespace tarn {
namespace {
HWND dialogItemForAttaching(HWND parent, unsigned short id)
{
    return ensure(GetDlgItem(parent, id),
                  [&] { return "Can't get dialog item " + std::to_string(id) + " for attaching"; });
}

// In unsigned arithmetic, so that {CW_USEDEFAULT, CW_USEDEFAULT, 0, 0} gives CW_USEDEFAULT for the size.
int distance(LONG from, LONG to) { return static_cast<int>(static_cast<ULONG>(to) - static_cast<ULONG>(from)); }

WNDPROC procedureOf(HWND hwnd) { return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(hwnd, GWLP_WNDPROC)); }
} // namespace

Window::~Window() noexcept(false)
{
    if (owns_ && hwnd_)
        WindowInternals::destroyQuietly(hwnd_);
    // An attached or subclassed window stays as it is, but must not lead to a dead object.
    if (WindowInternals::isBound(*this))
        WindowInternals::leave(hwnd_);
    WindowInternals::Watch::tellDeath(watch_);
}

// What handlers throw meanwhile is dropped, too.
void Window::WindowInternals::destroyQuietly(HWND hwnd) noexcept
{
    HandlerScope scope;
    DestroyWindow(hwnd);
    WindowClass::unregisterAbandoned();
}

// A handler may have bound the object to a next window when this one goes, which then has to go, too.
void Window::WindowInternals::destroyForNext(Window& window, const char* failed)
{
    constexpr int patience = 10; // An object may always make a next one.
    const Watch watch(window);
    for (int i = 0; window.hwnd_; ++i) {
        if (i == patience)
            throwWindowsError(ERROR_BUSY, failed);
        window.destroy();
        if (!watch.isAlive())
            throwWindowsError(ERROR_INVALID_WINDOW_HANDLE, failed);
    }
}

template <class Ch>
void Window::WindowInternals::createWindow(Window& window, const Ch* className, const Ch* title, unsigned long style,
                                           const RECT& rect, HWND parent, HMENU menu, HINSTANCE instance,
                                           unsigned long extendedStyle)
{
    constexpr const char* failed = "Can't create window";
    const Watch watch(window);
    destroyForNext(window, failed);
    HWND hwnd = nullptr;
    try {
        runningHandlers([&] {
            hwnd = createWindowEx(extendedStyle, className, title, style, rect.left, rect.top,
                                  distance(rect.left, rect.right), distance(rect.top, rect.bottom), parent, menu,
                                  instance, static_cast<void*>(&window));
        });
        ensure(hwnd, failed);
        if (!watch.isAlive())
            return;
        if (window.hwnd_ != hwnd)
            bind(window, hwnd);
        window.owns_ = true;
    } catch (...) { // A handler may have thrown although there is a window, bound or not.
        if (hwnd)
            destroyQuietly(hwnd);
        if (watch.isAlive() && window.hwnd_) {
            destroyQuietly(window.hwnd_);
            unbind(window);
        }
        throw;
    }
}

void Window::create(const char* className, const char* title, unsigned long style, const RECT& rect, HWND parent,
                    HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    const WindowInternals::Watch watch(*this);
    WindowInternals::createWindow(*this, className, title, style, rect, parent, menu, instance, extendedStyle);
    if (watch.isAlive())
        WindowInternals::takeOverCreated(*this);
}

// Only the narrow form does this: the wide one leaves windows of other classes as they are.
void Window::WindowInternals::takeOverCreated(Window& window)
{
    if (ensure(procedureOf(window), "Can't retrieve window procedure") != &Window::windowProc)
        window.subclass(window);
}

void Window::create(const wchar_t* className, const wchar_t* title, unsigned long style, const RECT& rect, HWND parent,
                    HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    WindowInternals::createWindow(*this, className, title, style, rect, parent, menu, instance, extendedStyle);
}

void Window::create(const WindowClass& windowClass, const char* title, unsigned long style, const RECT& rect,
                    HWND parent, HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    create(MAKEINTRESOURCEA(windowClass.getAtom()), title, style, rect, parent, menu, instance, extendedStyle);
}

void Window::create(const WindowClass& windowClass, const wchar_t* title, unsigned long style, const RECT& rect,
                    HWND parent, HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    create(MAKEINTRESOURCEW(windowClass.getAtom()), title, style, rect, parent, menu, instance, extendedStyle);
}

void Window::attach(HWND parent, unsigned short id)
{
    const HWND item = dialogItemForAttaching(parent, id);
    if (item != hwnd_ || !WindowInternals::isBound(*this))
        WindowInternals::bind(*this, item);
    owns_ = false;
}

void Window::WindowInternals::attach(Window& window, HWND hwnd, bool owns)
{
    if (hwnd != window.hwnd_)
        bind(window, hwnd);
    window.owns_ = owns;
}

void Window::subclass(HWND hwnd)
{
    if (hwnd && hwnd == hwnd_ && previousProc_) {
        owns_ = false;
        return;
    }
    Window* const former = getWindowFromHandle(hwnd, false);
    const WNDPROC taken = former ? std::exchange(former->previousProc_, nullptr) : nullptr;
    WindowInternals::bind(*this, hwnd);
    if (!hwnd)
        return;
    if (taken) { // The shared procedure is in its place already; one that somebody put before it stays there.
        previousProc_ = taken;
        listens_ = true;
        return;
    }
    try {
        const LONG_PTR previous = setWindowLong(GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Window::windowProc));
        // The shared procedure as its own predecessor would be called without end.
        if (reinterpret_cast<WNDPROC>(previous) != &Window::windowProc)
            previousProc_ = reinterpret_cast<WNDPROC>(previous);
        listens_ = true;
    } catch (...) {
        WindowInternals::unbind(*this);
        throw;
    }
}

void Window::subclass(HWND parent, unsigned short id)
{
    subclass(ensure(GetDlgItem(parent, id), "Can't retrieve dialogue item for subclassing"));
}

void Window::unsubclass()
{
    if (previousProc_) {
        setWindowLong(GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previousProc_));
        previousProc_ = nullptr;
    }
    WindowInternals::unbind(*this);
}

void Window::destroy()
{
    if (!hwnd_)
        return;
    const WindowInternals::Watch watch(*this);
    const HWND hwnd = hwnd_;
    HandlerScope scope;
    const bool isDestroyed = DestroyWindow(hwnd) != FALSE;
    const DWORD error = GetLastError();
    if (isDestroyed && watch.isAlive())
        WindowInternals::endOfWindow(*this, hwnd);
    WindowClass::unregisterAbandoned();
    scope.rethrow();
    if (!isDestroyed)
        throwWindowsError(error, "Can't destroy window");
}

Window::Pointer<Window> Window::getWindowFromHandle(HWND hwnd, bool createTemporary)
{
    if (!hwnd)
        return {};
    Window* const window = WindowInternals::find(hwnd);
    if (window && IsWindow(hwnd))
        return {window, false};
    if (window) // Attached only, so that nothing told the object of the window's end.
        WindowInternals::unbind(*window);
    return createTemporary ? Pointer<Window>(new Window(hwnd), true) : Pointer<Window>();
}

Window::Pointer<Window> Window::getDialogItem(int id, bool createTemporary) const
{
    return getWindowFromHandle(
        ensure(GetDlgItem(hwnd_, id), [&] { return "Can't retrieve dialog item " + std::to_string(id); }),
        createTemporary);
}

bool Window::WindowInternals::isBound(const Window& window) { return window.hwnd_ && find(window.hwnd_) == &window; }

// The object leaves its window, and an object that was bound to the new one before is replaced: it becomes
// unbound, or, when it owns the window, keeps only the duty to destroy it.
void Window::WindowInternals::bind(Window& window, HWND hwnd)
{
    unbind(window);
    if (!hwnd)
        return;
    if (Window* const former = enter(hwnd, &window)) {
        restoreProcedure(*former);
        former->listens_ = false;
        if (!former->owns_)
            forget(*former);
    }
    window.hwnd_ = hwnd;
}

void Window::WindowInternals::unbind(Window& window)
{
    restoreProcedure(window);
    if (isBound(window))
        leave(window);
    forget(window);
}

void Window::WindowInternals::restoreProcedure(Window& window)
{
    if (const WNDPROC previous = std::exchange(window.previousProc_, nullptr))
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
}

void Window::WindowInternals::forget(Window& window)
{
    window.hwnd_ = nullptr;
    window.owns_ = window.listens_ = false;
    window.timers_.clear();
}

void Window::WindowInternals::endOfWindow(Window& window, HWND hwnd)
{
    if (hwnd && window.hwnd_ == hwnd)
        unbind(window);
}
} // namespace tarn
