#pragma once

#include "KeyTable.h"

#include <array>
#include <algorithm>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tarn {
/// Values by keys other than 0 that are addresses for the most part, whose neighbours are asked for soon after them:
/// those of a region of memory lie in one small table, and the regions in a large one. In a graph that does not fit
/// into the processor's caches a single table would wait for the memory with each key.
///
/// Any other keys may come, too: a region's table never takes more steps than there are keys in a region.
template <class Value = NoValue> class AddressTable {
    struct Slot {
        std::uint32_t key = 0;
        [[no_unique_address]] Value value;
    };
    struct Region {
        std::uint32_t number = 0; // 0 for none.
        std::uint32_t first = 0;  // Where its table begins in slots_.
        std::uint16_t count = 0;
        std::uint16_t bits = 0; // Of its table's size.
    };

public:
    /// A key's place in the table, where it is or can be put: one search for both, and all of the memory that is
    /// needed. Valid until the next search for a place.
    class Place {
    public:
        explicit operator bool() const { return slot_->key != 0; } ///< Whether it is there.
        Value& value() const { return slot_->value; }
        void put(const Value& value = {})
        {
            if (slot_->key == 0)
                ++region_->count;
            *slot_ = {key_, value};
        }

    private:
        friend class AddressTable;
        Place(Region& region, Slot& slot, std::uint32_t key) : region_(&region), slot_(&slot), key_(key) {}

        Region* region_;
        Slot* slot_;
        std::uint32_t key_;
    };
    Place placeFor(std::uint32_t key)
    {
        Region* region = regions_.empty() ? nullptr : &regions_[placeOfRegion(numberOf(key))];
        if (!region || region->number == 0)
            region = &addRegion(numberOf(key));
        // A quarter stays free, so that looking for what is not there ends.
        if (4u * (region->count + 1u) > 3u << region->bits)
            enlarge(*region);
        return Place(*region, slots_[placeIn(*region, key)], key);
    }

    /// Null for a key that is not there.
    const Value* find(std::uint32_t key) const
    {
        if (regions_.empty())
            return nullptr;
        const Region& region = regions_[placeOfRegion(numberOf(key))];
        if (region.number == 0)
            return nullptr;
        const Slot& slot = slots_[placeIn(region, key)];
        return slot.key == key ? &slot.value : nullptr;
    }
    bool contains(std::uint32_t key) const { return find(key); }

private:
    static constexpr unsigned regionBits = 11; // Of the addresses in it.
    static constexpr unsigned fewestBits = 4;

    static std::uint32_t numberOf(std::uint32_t key) { return (key >> regionBits) + 1; }

    // Where a region is, or has to go. Whoever makes up data must not know which meet in one place, or searching would
    // take for ever: that differs with each table.
    std::size_t placeOfRegion(std::uint32_t number) const
    {
        const std::size_t last = regions_.size() - 1;
        std::size_t place = number * factor_ >> shift_;
        while (regions_[place].number != number && regions_[place].number != 0)
            place = (place + 1) & last;
        return place;
    }

    [[gnu::noinline]] Region& addRegion(std::uint32_t number)
    {
        if (2 * (regionCount_ + 1) > regions_.size()) {
            std::vector<Region> before(std::max<std::size_t>(2 * regions_.size(), 16));
            before.swap(regions_);
            shift_ = 32 - static_cast<unsigned>(std::countr_zero(regions_.size()));
            for (const Region& region : before)
                if (region.number != 0)
                    regions_[placeOfRegion(region.number)] = region;
        }
        Region added{number, takeSlots(fewestBits), 0, fewestBits};
        ++regionCount_;
        return regions_[placeOfRegion(number)] = added;
    }

    // Where a key is in the table of its region, or has to go. Objects begin at multiples of 8.
    std::size_t placeIn(const Region& region, std::uint32_t key) const
    {
        const std::uint32_t last = (1u << region.bits) - 1;
        const Slot* const slots = &slots_[region.first];
        std::uint32_t at = ((key >> 3) + (key << 8)) & last;
        while (slots[at].key != key && slots[at].key != 0)
            at = (at + 1) & last;
        return region.first + at;
    }

    [[gnu::noinline]] void enlarge(Region& region)
    {
        const std::size_t first = region.first, end = first + (std::size_t{1} << region.bits);
        std::vector<std::uint32_t>& unused = unused_[region.bits];
        unused.push_back(region.first);
        region.first = takeSlots(region.bits + 1u);
        ++region.bits;
        for (std::size_t i = first; i < end; ++i)
            if (const Slot moved = std::exchange(slots_[i], {}); moved.key != 0)
                slots_[placeIn(region, moved.key)] = moved;
    }

    // The memory of tables that have been enlarged is used for others.
    std::uint32_t takeSlots(unsigned bits)
    {
        std::vector<std::uint32_t>& unused = unused_[bits];
        if (!unused.empty()) {
            const std::uint32_t first = unused.back();
            unused.pop_back();
            return first;
        }
        const std::size_t first = slots_.size();
        slots_.resize(first + (std::size_t{1} << bits));
        return static_cast<std::uint32_t>(first);
    }

    std::vector<Region> regions_; // As many as a power of two has.
    std::size_t regionCount_ = 0;
    unsigned shift_ = 0;
    std::uint32_t factor_ =
        static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count()) * 0x9E3779B1u | 1;
    std::vector<Slot> slots_;
    std::array<std::vector<std::uint32_t>, regionBits + 2> unused_; // Where tables of so many bits may begin.
};
} // namespace tarn
