#include "Test.h"

#include <tarn/Semaphore.h>

TEST_CASE("Semaphore: it is taken as often as it was given back, and no more than its maximum")
{
    const Semaphore semaphore(1, 3);
    semaphore.acquire();
    CHECK_FALSE(semaphore.tryAcquire(10));
    CHECK(semaphore.release(2) == 0);
    expectWindowsError([&] { semaphore.release(2); }, ERROR_TOO_MANY_POSTS, "Error in ReleaseSemaphore");
    CHECK((semaphore.tryAcquire() && semaphore.tryAcquire() && !semaphore.tryAcquire()));
    expectWindowsError([] { Semaphore(2, 1); }, ERROR_INVALID_PARAMETER, "Error in CreateSemaphore");
}

TEST_CASE("Semaphore: a name is shared")
{
    bool existed = true;
    const Semaphore first(L"Local\\TarnSemaphore", 2, 3, &existed);
    CHECK_FALSE(existed);
    const Semaphore second(L"Local\\TarnSemaphore", 0, 9, &existed);
    CHECK(existed);
    Semaphore::openNamed(L"Local\\TarnSemaphore").acquire();
    CHECK(second.release() == 1);
    expectWindowsError([] { Semaphore::openNamed(L"TarnNone"); }, ERROR_FILE_NOT_FOUND,
                       "Can't open semaphore \"TarnNone\"");
}
