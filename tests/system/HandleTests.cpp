#include <catch2/catch.hpp>

#include "Expect.h"
#include "Handles.h"

#include <tarn/Event.h>
#include <tarn/WindowsHandle.h>

#include <type_traits>

using tarn::Event;
using tarn::WindowsHandle;

namespace {
HANDLE newEvent() { return CreateEventW(nullptr, TRUE, FALSE, nullptr); }

bool isValid(HANDLE handle)
{
    DWORD flags;
    return GetHandleInformation(handle, &flags) != FALSE;
}
} // namespace

static_assert(!std::is_copy_constructible_v<WindowsHandle> && !std::is_copy_assignable_v<WindowsHandle>);

TEST_CASE("WindowsHandle: none and null both count as not open", "[system][handle]")
{
    WindowsHandle none;
    CHECK_FALSE(none.isOpen());
    CHECK(!none);
    CHECK(none.getHandle() == INVALID_HANDLE_VALUE);
    CHECK_NOTHROW(none.close());
    WindowsHandle null(nullptr);
    CHECK_FALSE(null);
    null.close();
    CHECK(null.getHandle() == INVALID_HANDLE_VALUE);
}

TEST_CASE("WindowsHandle: it closes what it owns, once", "[system][handle]")
{
    const unsigned long before = support::openHandles();
    {
        const HANDLE first = newEvent();
        WindowsHandle handle(first);
        const HANDLE second = newEvent();
        handle = second;
        CHECK_FALSE(isValid(first));
        CHECK(isValid(second));
        CHECK(static_cast<void*>(handle) == second);
        handle.close();
        handle.close();
        CHECK_FALSE(isValid(second));
        handle.attach(newEvent());
        CHECK(handle);
    }
    CHECK(support::openHandles() == before);
}

TEST_CASE("WindowsHandle: a failing close throws, keeps the handle, and also leaves the destructor", "[system][handle]")
{
    const HANDLE bad = reinterpret_cast<HANDLE>(0x7FFC);
    support::expectWindowsError([&] { const WindowsHandle handle(bad); }, ERROR_INVALID_HANDLE,
                                "Error while closing handle");
    auto* handle = new (operator new(sizeof(WindowsHandle))) WindowsHandle(bad);
    CHECK_THROWS_AS(handle->close(), tarn::WindowsError);
    CHECK_THROWS_AS(handle->attach(nullptr), tarn::WindowsError);
    CHECK(handle->getHandle() == bad);
    operator delete(handle);
}

TEST_CASE("WindowsHandle: waiting tells signaled, timeout and abandoned apart", "[system][handle]")
{
    Event event(false, false);
    CHECK(event.wait(0) == WindowsHandle::timeout);
    CHECK_FALSE(event.isSignaled());
    event.set();
    CHECK(event.wait(INFINITE) == WindowsHandle::signaled);
    CHECK(event.wait(0) == WindowsHandle::timeout); // The wait took the signal.
    support::expectWindowsError([] { WindowsHandle(nullptr).wait(0); }, ERROR_INVALID_HANDLE,
                                "Error while retrieving handle state");
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
    support::expectWindowsError([&] { WindowsHandle::wait(a, WindowsHandle(nullptr), 0, false); }, ERROR_INVALID_HANDLE,
                                "Multi wait failed");
}

TEST_CASE("Event: a manual-reset event stays signaled until reset", "[system][event]")
{
    const Event event(true, true);
    CHECK(event.isSignaled());
    CHECK(event.isSignaled());
    event.reset();
    CHECK_FALSE(event.isSignaled());
    event.pulse(); // Nobody waits, so nothing is left of it.
    CHECK_FALSE(event.isSignaled());
}

TEST_CASE("Event: each failing call has its own text", "[system][event]")
{
    Event event(true, false);
    event.close();
    support::expectWindowsError([&] { event.set(); }, ERROR_INVALID_HANDLE, "Error in SetEvent");
    support::expectWindowsError([&] { event.reset(); }, ERROR_INVALID_HANDLE, "Error in ResetEvent");
    support::expectWindowsError([&] { event.pulse(); }, ERROR_INVALID_HANDLE, "Error in PulseEvent");
}
