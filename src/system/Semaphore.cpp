#include <tarn/Semaphore.h>

#include "../foundation/Quoted.h"
#include "NamedObject.h"

namespace tarn {
Semaphore::Semaphore(long initial, long maximum)
    : WindowsHandle(ensure(CreateSemaphoreW(nullptr, initial, maximum, nullptr), "Error in CreateSemaphore"))
{
}

Semaphore::Semaphore(const wchar_t* name, long initial, long maximum, bool* existed)
    : WindowsHandle(ensureNamed([&] { return CreateSemaphoreW(nullptr, initial, maximum, name); }, existed,
                                "Error in CreateSemaphore"))
{
}

Semaphore Semaphore::openNamed(const wchar_t* name)
{
    return Semaphore(ensure(OpenSemaphoreW(SEMAPHORE_ALL_ACCESS, FALSE, name),
                            [&] { return "Can't open semaphore " + quoted(name); }));
}

long Semaphore::release(long count) const
{
    LONG before = 0;
    ensure(ReleaseSemaphore(getHandle(), count, &before), "Error in ReleaseSemaphore");
    return before;
}
} // namespace tarn
