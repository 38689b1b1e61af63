#include "Test.h"

#include <tarn/Event.h>
#include <tarn/Lock.h>
#include <tarn/WindowsHandle.h>

#include <exception>
#include <thread>

namespace {
HANDLE newEvent() { return CreateEventW(nullptr, TRUE, FALSE, nullptr); }
} // namespace

static_assert(!std::is_copy_constructible_v<WindowsHandle> && !std::is_copy_assignable_v<WindowsHandle>);
// A truth value, and no number.
static_assert(!std::is_convertible_v<WindowsHandle, int> && std::is_convertible_v<WindowsHandle, void*>);

TEST_CASE("WindowsHandle: it closes what it owns, once; none and null count as not open")
{
    CHECK(std::uncaught_exceptions() == 0); // The first time the runtime library opens handles of its own.
    const unsigned long before = openHandles();
    {
        WindowsHandle handle(newEvent());
        handle = newEvent();
        CHECK(openHandles() == before + 1);
        CHECK(handle);
        handle.close();
        handle.close();
        CHECK(openHandles() == before);
        CHECK(handle.getHandle() == INVALID_HANDLE_VALUE);
        CHECK_FALSE(handle.isOpen());
        handle.attach(newEvent());
    }
    CHECK(openHandles() == before);
    WindowsHandle null(nullptr);
    const bool isOpen = null;
    CHECK((!null && !isOpen && (null ? 1 : 2) == 2));
    CHECK_NOTHROW(null.close());
}

TEST_CASE("WindowsHandle: a failing close throws, keeps the handle, and also leaves the destructor")
{
    const HANDLE bad = reinterpret_cast<HANDLE>(0x7FFC);
    expectWindowsError([&] { const WindowsHandle handle(bad); }, ERROR_INVALID_HANDLE, "Error while closing handle");
    auto* handle = new (operator new(sizeof(WindowsHandle))) WindowsHandle(bad);
    CHECK_THROWS_AS(handle->close(), WindowsError);
    CHECK_THROWS_AS(handle->attach(nullptr), WindowsError);
    CHECK(handle->getHandle() == bad);
    operator delete(handle);
}

TEST_CASE("WindowsHandle: of two handles the wait names the one that ended it")
{
    using Result = std::pair<WindowsHandle::wait_result, unsigned>;
    Event a(true, false), b(true, false);
    CHECK(WindowsHandle::wait(a, b, 0, false) == Result(WindowsHandle::timeout, 0));
    b.set();
    CHECK(WindowsHandle::wait(a, b, 0, false) == Result(WindowsHandle::signaled, 1));
    CHECK(WindowsHandle::wait(a, b, 0, true) == Result(WindowsHandle::timeout, 0));
    a.set();
    CHECK(WindowsHandle::wait(a, b, 0, true) == Result(WindowsHandle::signaled, 0));
    const WindowsHandle null(nullptr);
    expectWindowsError([&] { WindowsHandle::wait(a, null, 0, false); }, ERROR_INVALID_HANDLE, "Multi wait failed");
    expectWindowsError([&] { null.wait(0); }, ERROR_INVALID_HANDLE, "Error while retrieving handle state");
}

TEST_CASE("WindowsHandle: up to 64 handles are waited for, any or all of them")
{
    std::vector<Event> events;
    for (int i = 0; i < 63; ++i)
        events.emplace_back(false, false);
    const Mutex mutex(false);
    std::vector<void*> handles(events.begin(), events.end());
    handles.push_back(mutex);
    std::thread([&] { mutex.wait(0); }).join();

    CHECK(WindowsHandle::waitForAll(handles, 0) == WindowsHandle::timeout);
    for (const Event& event : events)
        event.set();
    using Result = std::pair<WindowsHandle::wait_result, unsigned>;
    CHECK(WindowsHandle::waitForAny({events[7], events[8]}, 0) == Result(WindowsHandle::signaled, 0));
    CHECK(WindowsHandle::waitForAll(handles, 0) == WindowsHandle::timeout); // One signal is taken.
    events[7].set();
    CHECK(WindowsHandle::waitForAll(handles, 0) == WindowsHandle::abandoned);
    CHECK(WindowsHandle::waitForAny(handles, 0) == Result(WindowsHandle::signaled, 63));

    handles.push_back(mutex);
    expectWindowsError([&] { WindowsHandle::waitForAny(handles, 0); }, ERROR_INVALID_PARAMETER, "Multi wait failed");
    expectWindowsError([&] { WindowsHandle::waitForAll({}, 0); }, ERROR_INVALID_PARAMETER, "Multi wait failed");
}
