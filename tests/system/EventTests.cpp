#include "Test.h"

#include <tarn/Event.h>
#include <tarn/Lock.h>

TEST_CASE("Event: a wait takes the signal of an auto-reset event only, and failing calls name themselves")
{
    const Event automatic(false, true);
    Event manual(true, true);
    CHECK(automatic.wait(INFINITE) == WindowsHandle::signaled);
    CHECK(automatic.wait(0) == WindowsHandle::timeout);
    CHECK(manual.isSignaled());
    CHECK(manual.isSignaled());
    manual.reset();
    CHECK_FALSE(manual.isSignaled());
    manual.pulse(); // Nobody waits, so nothing is left of it.
    CHECK_FALSE(manual.isSignaled());

    manual.close();
    expectWindowsError([&] { manual.set(); }, ERROR_INVALID_HANDLE, "Error in SetEvent");
    expectWindowsError([&] { manual.reset(); }, ERROR_INVALID_HANDLE, "Error in ResetEvent");
    expectWindowsError([&] { manual.pulse(); }, ERROR_INVALID_HANDLE, "Error in PulseEvent");
}

TEST_CASE("Event: a name is shared, and what exists stays as it is")
{
    bool existed = true;
    const Event first(L"Local\\TarnTest \x0416", true, false, &existed);
    CHECK_FALSE(existed);
    const Event second(L"Local\\TarnTest \x0416", false, true, &existed);
    CHECK(existed);
    CHECK(second.wait(0) == WindowsHandle::timeout);
    Event::openNamed(L"Local\\TarnTest \x0416").set();
    CHECK((second.isSignaled() && second.isSignaled()));
    expectWindowsError([] { Mutex(L"Local\\TarnTest \x0416", false); }, ERROR_INVALID_HANDLE, "Error in CreateMutex");
    expectWindowsError([] { Event::openNamed(L"TarnNone"); }, ERROR_FILE_NOT_FOUND, "Can't open event \"TarnNone\"");
}
