#include "Test.h"

#include <tarn/Event.h>
#include <tarn/WaitableTimer.h>

TEST_CASE("WaitableTimer: it signals when its time has come, in each period, and not when it is cancelled")
{
    const WaitableTimer once(true), often(false);
    once.set(3'600'000);
    CHECK_FALSE(once.isSignaled());
    once.set(50);
    CHECK(once.wait(20'000) == WindowsHandle::signaled);
    CHECK(once.isSignaled());
    often.set(0, 5);
    for (int i = 0; i < 3; ++i)
        CHECK(often.wait(20'000) == WindowsHandle::signaled);

    once.setAt(Time::now() + 3'600'000);
    CHECK_FALSE(once.isSignaled());
    once.cancel();
    once.setAt(Time::now() - 1000);
    CHECK(once.wait(20'000) == WindowsHandle::signaled);
    expectWindowsError([&] { once.setAt(Time::fromTimeT64(-20'000'000'000)); }, "Can't convert time to file time");
}

TEST_CASE("WaitableTimer: a name is shared, and failing calls name themselves")
{
    bool existed = true;
    WaitableTimer first(L"Local\\TarnTimer", true, &existed);
    CHECK_FALSE(existed);
    const WaitableTimer second(L"Local\\TarnTimer", false, &existed);
    CHECK(existed);
    second.set(0);
    CHECK(WaitableTimer::openNamed(L"Local\\TarnTimer").wait(20'000) == WindowsHandle::signaled);
    CHECK(first.isSignaled()); // Until it is reset.
    const Event other(L"Local\\TarnTimer2", true, false);
    expectWindowsError([] { WaitableTimer(L"Local\\TarnTimer2", true); }, ERROR_INVALID_HANDLE,
                       "Error in CreateWaitableTimer");
    expectWindowsError([] { WaitableTimer::openNamed(L"TarnNone"); }, ERROR_FILE_NOT_FOUND,
                       "Can't open timer \"TarnNone\"");
    first.close();
    expectWindowsError([&] { first.set(0); }, ERROR_INVALID_HANDLE, "Error in SetWaitableTimer");
    expectWindowsError([&] { first.cancel(); }, ERROR_INVALID_HANDLE, "Error in CancelWaitableTimer");
}
