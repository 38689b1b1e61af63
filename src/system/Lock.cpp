#include <tarn/Lock.h>

#include "../foundation/Check.h"

namespace tarn {
Mutex::Mutex(bool initiallyOwned)
    : WindowsHandle(ensure(CreateMutexW(nullptr, initiallyOwned, nullptr), "Error in CreateMutex"))
{
}

void Mutex::lock() { wait(INFINITE); }

void Mutex::unlock() { ensure(ReleaseMutex(getHandle()), "Error in ReleaseMutex"); }
} // namespace tarn
