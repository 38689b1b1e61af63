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
        destroyQuietly(hwnd_);
    if (isBound()) // An attached or subclassed window stays as it is, but must not lead to a dead object.
        leave(hwnd_);
    Watch::tellDeath(watch_);
}

// What handlers throw meanwhile is dropped, too.
void Window::destroyQuietly(HWND hwnd) noexcept
{
    HandlerScope scope;
    DestroyWindow(hwnd);
    WindowClass::unregisterAbandoned();
}

// A handler may have bound the object to a next window when this one goes, which then has to go, too.
void Window::destroyForNext(const char* failed)
{
    constexpr int patience = 10; // An object may always make a next one.
    const Watch watch(*this);
    for (int i = 0; hwnd_; ++i) {
        if (i == patience)
            throwWindowsError(ERROR_BUSY, failed);
        destroy();
        if (!watch.isAlive())
            throwWindowsError(ERROR_INVALID_WINDOW_HANDLE, failed);
    }
}

template <class Ch>
void Window::createWindow(const Ch* className, const Ch* title, unsigned long style, const RECT& rect, HWND parent,
                          HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    constexpr const char* failed = "Can't create window";
    const Watch watch(*this);
    destroyForNext(failed);
    HWND hwnd = nullptr;
    try {
        runningHandlers([&] {
            hwnd = createWindowEx(extendedStyle, className, title, style, rect.left, rect.top,
                                  distance(rect.left, rect.right), distance(rect.top, rect.bottom), parent, menu,
                                  instance, static_cast<void*>(this));
        });
        ensure(hwnd, failed);
        if (!watch.isAlive())
            return;
        if (hwnd_ != hwnd)
            bind(hwnd);
        owns_ = true;
    } catch (...) { // A handler may have thrown although there is a window, bound or not.
        if (hwnd)
            destroyQuietly(hwnd);
        if (watch.isAlive() && hwnd_) {
            destroyQuietly(hwnd_);
            unbind();
        }
        throw;
    }
}

void Window::create(const char* className, const char* title, unsigned long style, const RECT& rect, HWND parent,
                    HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    const Watch watch(*this);
    createWindow(className, title, style, rect, parent, menu, instance, extendedStyle);
    if (watch.isAlive())
        takeOverCreated();
}

// Only the narrow form does this: the wide one leaves windows of other classes as they are.
void Window::takeOverCreated()
{
    if (ensure(procedureOf(hwnd_), "Can't retrieve window procedure") != &Window::windowProc)
        subclass(hwnd_);
}

void Window::create(const wchar_t* className, const wchar_t* title, unsigned long style, const RECT& rect, HWND parent,
                    HMENU menu, HINSTANCE instance, unsigned long extendedStyle)
{
    createWindow(className, title, style, rect, parent, menu, instance, extendedStyle);
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
    if (item != hwnd_ || !isBound())
        bind(item);
    owns_ = false;
}

void Window::attachWindow(HWND hwnd, bool owns)
{
    if (hwnd != hwnd_)
        bind(hwnd);
    owns_ = owns;
}

void Window::subclass(HWND hwnd)
{
    if (hwnd && hwnd == hwnd_ && previousProc_) {
        owns_ = false;
        return;
    }
    Window* const former = getWindowFromHandle(hwnd, false);
    const WNDPROC taken = former ? std::exchange(former->previousProc_, nullptr) : nullptr;
    bind(hwnd);
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
        unbind();
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
    unbind();
}

void Window::destroy()
{
    if (!hwnd_)
        return;
    const Watch watch(*this);
    const HWND hwnd = hwnd_;
    HandlerScope scope;
    const bool isDestroyed = DestroyWindow(hwnd) != FALSE;
    const DWORD error = GetLastError();
    if (isDestroyed && watch.isAlive())
        endOfWindow(hwnd);
    WindowClass::unregisterAbandoned();
    scope.rethrow();
    if (!isDestroyed)
        throwWindowsError(error, "Can't destroy window");
}

Window::Pointer<Window> Window::getWindowFromHandle(HWND hwnd, bool createTemporary)
{
    if (!hwnd)
        return {};
    Window* const window = find(hwnd);
    if (window && IsWindow(hwnd))
        return {window, false};
    if (window) // Attached only, so that nothing told the object of the window's end.
        window->unbind();
    return createTemporary ? Pointer<Window>(new Window(hwnd), true) : Pointer<Window>();
}

Window::Pointer<Window> Window::getDialogItem(int id, bool createTemporary) const
{
    return getWindowFromHandle(
        ensure(GetDlgItem(hwnd_, id), [&] { return "Can't retrieve dialog item " + std::to_string(id); }),
        createTemporary);
}

bool Window::isBound() const { return hwnd_ && find(hwnd_) == this; }

// The object leaves its window, and an object that was bound to the new one before is replaced: it becomes
// unbound, or, when it owns the window, keeps only the duty to destroy it.
void Window::bind(HWND hwnd)
{
    unbind();
    if (!hwnd)
        return;
    if (Window* const former = enter(hwnd, this)) {
        former->restoreProcedure();
        former->listens_ = false;
        if (!former->owns_)
            former->forget();
    }
    hwnd_ = hwnd;
}

void Window::unbind()
{
    restoreProcedure();
    if (isBound())
        leave(hwnd_);
    forget();
}

void Window::restoreProcedure()
{
    if (const WNDPROC previous = std::exchange(previousProc_, nullptr))
        SetWindowLongPtrW(hwnd_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
}

void Window::forget()
{
    hwnd_ = nullptr;
    owns_ = listens_ = false;
    timers_.clear();
}

void Window::endOfWindow(HWND hwnd)
{
    if (hwnd && hwnd_ == hwnd)
        unbind();
}
} // namespace tarn
