#include <tarn/ref_ptr.h>

#include "../foundation/Closing.h"
#include "Platform.h"
#include "WeakAnchors.h"

#include <vector>

namespace tarn {
namespace {
constexpr unsigned int deepest = 100;

/// What is being destroyed on a thread: how many objects inside each other, and, once these are too many, those
/// that have to wait.
struct Destroying {
    unsigned int depth = 0;
    std::vector<detail::LastShare>* waiting = nullptr;
};
thread_local Destroying onThisThread;

void destroy(const detail::LastShare& last) noexcept
{
    closeQuietly([&] { last.destroy(last.object); });
    detail::freeCount(last.count);
}

void destroyInTurn(const detail::LastShare& first) noexcept
{
    std::vector<detail::LastShare> waiting;
    onThisThread.waiting = &waiting;
    destroy(first);
    while (!waiting.empty()) {
        const detail::LastShare next = waiting.back();
        waiting.pop_back();
        destroy(next);
    }
    onThisThread.waiting = nullptr;
}

bool letWait(const detail::LastShare& last) noexcept
{
    try {
        onThisThread.waiting->push_back(last);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}
} // namespace

void detail::letGo(const LastShare& last) noexcept
{
    if (weakAnchorCount.load(std::memory_order_relaxed) > 0)
        expireWeakAnchor(last.count);
    Destroying& state = onThisThread;
    if (state.waiting) {
        if (!letWait(last))
            destroy(last);
    } else if (state.depth == deepest || !stackHasRoom()) {
        destroyInTurn(last);
    } else {
        ++state.depth;
        destroy(last);
        --state.depth;
    }
}
} // namespace tarn
