#include <catch2/catch.hpp>

#include "Expect.h"
#include "Handles.h"

#include <tarn/Event.h>
#include <tarn/Lock.h>
#include <tarn/WindowsHandle.h>

#include <exception>
#include <thread>
#include <type_traits>
#include <vector>

using support::expectWindowsError;
using tarn::Event;
using tarn::Mutex;
using tarn::WindowsHandle;

namespace {
HANDLE newEvent() { return CreateEventW(nullptr, TRUE, FALSE, nullptr); }
} // namespace

static_assert(!std::is_copy_constructible_v<WindowsHandle> && !std::is_copy_assignable_v<WindowsHandle>);

TEST_CASE("WindowsHandle: it closes what it owns, once; none and null count as not open", "[system][handle]")
{
    CHECK(std::uncaught_exceptions() == 0); // The first time the runtime library opens handles of its own.
    const unsigned long before = support::openHandles();
    {
        WindowsHandle handle(newEvent());
        handle = newEvent();
        CHECK(support::openHandles() == before + 1);
        CHECK(handle);
        handle.close();
        handle.close();
        CHECK(support::openHandles() == before);
        CHECK(handle.getHandle() == INVALID_HANDLE_VALUE);
        CHECK_FALSE(handle.isOpen());
        handle.attach(newEvent());
    }
    CHECK(support::openHandles() == before);
    WindowsHandle null(nullptr);
    CHECK(!null);
    CHECK_NOTHROW(null.close());
}

TEST_CASE("WindowsHandle: a failing close throws, keeps the handle, and also leaves the destructor", "[system][handle]")
{
    const HANDLE bad = reinterpret_cast<HANDLE>(0x7FFC);
    expectWindowsError([&] { const WindowsHandle handle(bad); }, ERROR_INVALID_HANDLE, "Error while closing handle");
    auto* handle = new (operator new(sizeof(WindowsHandle))) WindowsHandle(bad);
    CHECK_THROWS_AS(handle->close(), tarn::WindowsError);
    CHECK_THROWS_AS(handle->attach(nullptr), tarn::WindowsError);
    CHECK(handle->getHandle() == bad);
    operator delete(handle);
}

TEST_CASE("WindowsHandle: of two handles the wait names the one that ended it", "[system][handle]")
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

TEST_CASE("WindowsHandle: up to 64 handles are waited for, any or all of them", "[system][handle]")
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
