#pragma once

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarn {
/// The value of a table that is a set.
struct NoValue {};

/// Values by keys other than 0, side by side in one piece of memory: it takes memory when it doubles, not for each
/// entry, and nothing is ever taken out. Nothing is known of the keys.
template <class Key, class Value = NoValue> class KeyTable {
    struct Slot {
        Key key = 0;
        [[no_unique_address]] Value value;
    };

public:
    /// After this so many more keys go in without taking memory.
    void makeRoom(std::size_t more)
    {
        // Half of it stays free, or looking for what is not there would take long.
        if (const std::size_t needed = 2 * (count_ + more); needed > slots_.size())
            resize(std::bit_ceil(needed + 1) * (needed < 0x10000 ? 2 : 1));
    }
    /// A key's place in the table, where it is or could be put: one search for both. Valid until the next insertion.
    class Place {
    public:
        explicit operator bool() const { return slot_->key != 0; } ///< Whether it is there.
        Value& value() const { return slot_->value; }
        Value& put()
        {
            slot_->key = key_;
            ++table_->count_;
            return slot_->value;
        }

    private:
        friend class KeyTable;
        Place(KeyTable* table, Key key) : table_(table), slot_(&table->slots_[table->placeOf(key)]), key_(key) {}

        KeyTable* table_;
        Slot* slot_;
        Key key_;
    };
    Place placeFor(Key key)
    {
        makeRoom(1);
        return Place(this, key);
    }
    /// The value of the key, which goes in when it is not there.
    Value& operator[](Key key)
    {
        Place place = placeFor(key);
        return place ? place.slot_->value : place.put();
    }
    void insert(Key key) { (*this)[key]; }

    /// Null for a key that is not there.
    const Value* find(Key key) const
    {
        const Slot* const slot = slots_.empty() ? nullptr : &slots_[placeOf(key)];
        return slot && slot->key == key ? &slot->value : nullptr;
    }
    bool contains(Key key) const { return find(key); }

private:
    [[gnu::noinline]] void resize(std::size_t size)
    {
        std::vector<Slot> before(size);
        before.swap(slots_);
        for (const Slot& slot : before)
            if (slot.key != 0)
                slots_[placeOf(slot.key)] = slot;
    }

    // Where a key is, or has to go.
    std::size_t placeOf(Key key) const
    {
        const std::size_t last = slots_.size() - 1;
        std::size_t place = mixed(key) & last;
        while (slots_[place].key != 0 && slots_[place].key != key)
            place = (place + 1) & last;
        return place;
    }

    // Whoever makes up data must not know which keys meet in one place, or searching would take for ever: that
    // differs with each table.
    std::uint32_t mixed(Key key) const
    {
        std::uint32_t bits = seed_ ^ static_cast<std::uint32_t>(key);
        if constexpr (sizeof(Key) > sizeof bits)
            bits += static_cast<std::uint32_t>(key >> 32) * 0x9E3779B1u;
        bits = (bits ^ (bits >> 16)) * 0x85EBCA6Bu;
        bits = (bits ^ (bits >> 13)) * 0xC2B2AE35u;
        return bits ^ (bits >> 16);
    }

    std::vector<Slot> slots_; // As many as a power of two has.
    std::size_t count_ = 0;
    std::uint32_t seed_ = static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
};
} // namespace tarn
