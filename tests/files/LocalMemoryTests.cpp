#include "Test.h"

#include <tarn/LocalMemory.h>

TEST_CASE("LocalMemory: movable memory is unlocked as often as it was locked, fixed memory never")
{
    const HLOCAL block = LocalAlloc(LMEM_MOVEABLE, 16), fixedBlock = LocalAlloc(LMEM_FIXED, 16);
    {
        LocalMemory memory(block, true), fixed(fixedBlock, false);
        CHECK(memory.lock() == memory.lock());
        CHECK(memory.getFlags().lockCount() == 2);
        CHECK(memory.unlock());
        CHECK(memory.lock());

        CHECK(fixed.isFixed());
        CHECK(fixed.lock() == fixedBlock);
        CHECK_FALSE(fixed.unlock());
        fixed.free();
        fixed.free();
    }
    CHECK(LocalFlags(block) == LMEM_INVALID_HANDLE);
}

TEST_CASE("LocalMemory: a block that came here locked stays movable, and freed it is fixed")
{
    const HLOCAL block = LocalAlloc(LMEM_MOVEABLE, 16);
    void* const address = LocalLock(block);
    LocalMemory memory(block, true);
    CHECK_FALSE(memory.unlock());
    CHECK(memory.isMovable());
    CHECK(memory.lock() == address);
    {
        const LocalMemory::Access access(memory);
        CHECK(access.data() == memory.lock());
        memory.unlock();
        CHECK(memory.getFlags().lockCount() == 2);
    }
    CHECK(memory.getFlags().lockCount() == 1);
    const HLOCAL former = LocalAlloc(LMEM_MOVEABLE, 16);
    LocalMemory moved(former, true);
    moved = std::move(memory);
    CHECK(LocalFlags(former) == LMEM_INVALID_HANDLE);
    CHECK((moved.isMovable() && memory.isFixed() && memory.lock() == nullptr));
    memory = LocalMemory(std::move(moved));
    CHECK(memory.getFlags().lockCount() == 1);
    memory.free();
    CHECK(memory.isFixed());
    CHECK(memory.lock() == nullptr);
}

TEST_CASE("LocalMemory: each failing call has its text")
{
    LocalMemory unlocked(LocalAlloc(LMEM_MOVEABLE, 16), true);
    expectWindowsError([&] { unlocked.unlock(); }, "Can't unlock local memory handle");
    LocalMemory discarded(LocalDiscard(LocalAlloc(LMEM_MOVEABLE | LMEM_DISCARDABLE, 16)), true);
    expectWindowsError([&] { discarded.lock(); }, "Can't lock local memory handle");

    const HLOCAL gone = LocalAlloc(LMEM_MOVEABLE, 16);
    LocalFree(gone);
    auto* memory = new (operator new(sizeof(LocalMemory))) LocalMemory(gone, true);
    expectWindowsError([&] { memory->free(); }, ERROR_INVALID_HANDLE, "Can't free local memory handle");
    expectWindowsError([&] { memory->getFlags(); }, ERROR_INVALID_HANDLE, "Can't query flags for local memory handle");
    operator delete(memory);
}
