#include <tarn/weak_ref.h>

#include "WeakAnchors.h"

#include <memory>
#include <mutex>
#include <unordered_map>

namespace tarn {
std::atomic<unsigned int> weakAnchorCount;

namespace {
// Of the objects that weak_refs refer to, by their counts. Never destroyed: static objects have references, too.
struct Anchors {
    std::mutex mutex;
    std::unordered_map<const unsigned int*, detail::WeakAnchor*> byCount;
};
Anchors& anchors()
{
    static auto& all = *new Anchors;
    return all;
}
} // namespace

void expireWeakAnchor(const unsigned int* count) noexcept
{
    const std::lock_guard lock(anchors().mutex);
    const auto found = anchors().byCount.find(count);
    if (found == anchors().byCount.end())
        return;
    found->second->count = nullptr;
    anchors().byCount.erase(found);
    --weakAnchorCount;
}

detail::WeakAnchor* detail::anchorOf(unsigned int* count)
{
    const std::lock_guard lock(anchors().mutex);
    if (const auto found = anchors().byCount.find(count); found != anchors().byCount.end()) {
        ++found->second->references;
        return found->second;
    }
    auto anchor = std::make_unique<WeakAnchor>(WeakAnchor{count, 1});
    anchors().byCount.emplace(count, anchor.get());
    ++weakAnchorCount;
    return anchor.release();
}

void detail::leaveAnchor(WeakAnchor* anchor) noexcept
{
    if (--anchor->references > 0)
        return;
    if (anchor->count) {
        const std::lock_guard lock(anchors().mutex);
        anchors().byCount.erase(anchor->count);
        --weakAnchorCount;
    }
    delete anchor;
}
} // namespace tarn
