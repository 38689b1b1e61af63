#include <tarn/Lock.h>

#include "../foundation/Quoted.h"
#include "NamedObject.h"

namespace tarn {
Mutex::Mutex(bool initiallyOwned)
    : WindowsHandle(ensure(CreateMutexW(nullptr, initiallyOwned, nullptr), "Error in CreateMutex"))
{
}

Mutex::Mutex(const wchar_t* name, bool initiallyOwned, bool* existed)
    : WindowsHandle(
          ensureNamed([&] { return CreateMutexW(nullptr, initiallyOwned, name); }, existed, "Error in CreateMutex"))
{
}

Mutex Mutex::openNamed(const wchar_t* name)
{
    return Mutex(
        Opened{ensure(OpenMutexW(MUTEX_ALL_ACCESS, FALSE, name), [&] { return "Can't open mutex " + quoted(name); })});
}

void Mutex::lock() { wait(INFINITE); }

void Mutex::unlock() { ensure(ReleaseMutex(getHandle()), "Error in ReleaseMutex"); }
} // namespace tarn
