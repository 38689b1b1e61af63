#include <tarn/WaitableTimer.h>

#include "../foundation/Quoted.h"
#include "NamedObject.h"

namespace tarn {
namespace {
void setTimer(HANDLE timer, LONGLONG due, unsigned periodMs)
{
    LARGE_INTEGER time;
    time.QuadPart = due;
    ensure(SetWaitableTimer(timer, &time, static_cast<LONG>(periodMs), nullptr, nullptr, FALSE),
           "Error in SetWaitableTimer");
}
} // namespace

WaitableTimer::WaitableTimer(bool manualReset)
    : WindowsHandle(ensure(CreateWaitableTimerW(nullptr, manualReset, nullptr), "Error in CreateWaitableTimer"))
{
}

WaitableTimer::WaitableTimer(const wchar_t* name, bool manualReset, bool* existed)
    : WindowsHandle(ensureNamed([&] { return CreateWaitableTimerW(nullptr, manualReset, name); }, existed,
                                "Error in CreateWaitableTimer"))
{
}

WaitableTimer WaitableTimer::openNamed(const wchar_t* name)
{
    return WaitableTimer(
        ensure(OpenWaitableTimerW(TIMER_ALL_ACCESS, FALSE, name), [&] { return "Can't open timer " + quoted(name); }));
}

void WaitableTimer::set(unsigned dueMs, unsigned periodMs) const
{
    setTimer(getHandle(), -10'000 * static_cast<LONGLONG>(dueMs), periodMs); // Below zero: from now on.
}

void WaitableTimer::setAt(Time due, unsigned periodMs) const
{
    const FILETIME time = due.toFileTime();
    setTimer(getHandle(), static_cast<LONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime, periodMs);
}

void WaitableTimer::cancel() const { ensure(CancelWaitableTimer(getHandle()), "Error in CancelWaitableTimer"); }
} // namespace tarn
