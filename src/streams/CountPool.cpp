#include "CountPool.h"

#include <tarn/ref_ptr.h>

#include <atomic>
#include <cstdint>
#include <new>

namespace tarn {
namespace {
constexpr std::size_t countsInBlock = 62;

// A single count lies on a multiple of 8, one of a pool behind one: so the two are told apart.
struct alignas(8) PooledCount {
    unsigned int distance; // From the beginning of the block, in bytes.
    unsigned int count;
};
static_assert(sizeof(PooledCount) == 8 && __STDCPP_DEFAULT_NEW_ALIGNMENT__ % 8 == 0);
} // namespace

struct CountPool::Block {
    // Of counts that are in use or can be taken still, and the pool itself.
    std::atomic<std::size_t> shares{countsInBlock + 1};
    PooledCount counts[countsInBlock];

    void drop(std::size_t these) noexcept
    {
        if (shares.fetch_sub(these, std::memory_order_acq_rel) == these)
            delete this;
    }
};

void CountPool::makeRoom()
{
    if (block_ && used_ < countsInBlock)
        return;
    Block* const block = new Block;
    leaveBlock();
    block_ = block;
    used_ = 0;
}

unsigned int* CountPool::take() noexcept
{
    PooledCount& place = block_->counts[used_++];
    place.distance = static_cast<unsigned int>(reinterpret_cast<char*>(&place) - reinterpret_cast<char*>(block_));
    place.count = 0;
    return &place.count;
}

void CountPool::leaveBlock() noexcept
{
    if (block_)
        block_->drop(countsInBlock - used_ + 1);
}

unsigned int* detail::newCount() noexcept { return new (std::nothrow) unsigned int(1); }

void detail::freeCount(unsigned int* count) noexcept
{
    if (reinterpret_cast<std::uintptr_t>(count) % alignof(PooledCount) == 0) {
        delete count;
        return;
    }
    char* const place = reinterpret_cast<char*>(count) - offsetof(PooledCount, count);
    reinterpret_cast<CountPool::Block*>(place - reinterpret_cast<PooledCount*>(place)->distance)->drop(1);
}
} // namespace tarn
