#pragma once

#include <tarn/Archive.h>

#include "CountPool.h"
#include "KeyTable.h"

#include <type_traits>

namespace tarn {
using KeySet = KeyTable<unsigned int>;

/// The key of a shared object where an address fits a key: the address of its counter.
struct AddressKeys {
    unsigned int of(std::uintptr_t counter, const KeySet&) { return static_cast<unsigned int>(counter); }
};
/// The key where it does not: the low half of the address or the next number that is neither 0 nor taken.
struct AssignedKeys {
    unsigned int of(std::uint64_t counter, const KeySet& taken)
    {
        if (counter == 0)
            return 0;
        if (const unsigned int* const known = keys.find(counter))
            return *known;
        auto key = static_cast<unsigned int>(counter);
        while (key == 0 || taken.contains(key))
            ++key;
        return keys[counter] = key;
    }

    KeyTable<std::uint64_t, unsigned int> keys;
};

/// What an archive has written and read so far.
struct Archive::Tables {
    /// Room for one more shared object, to be made before the object is: later it could be lost for want of it.
    void makeRoom()
    {
        if (objects.size() == objects.capacity())
            objects.reserve(2 * objects.size() + 8);
        shared.makeRoom(1);
        counts.makeRoom();
    }
    /// Keeps a shared object for as long as the archive lives, also when another comes up with its key.
    unsigned int add(unsigned int key, const ref_ptr<Serializable>& object)
    {
        const auto place = static_cast<unsigned int>(objects.size());
        objects.push_back(object);
        if (key != 0)
            shared[key] = place;
        return place;
    }
    /// Gives the object at a place up again.
    void drop(unsigned int place)
    {
        objects[place].release();
        while (!objects.empty() && !objects.back())
            objects.pop_back();
    }

    bool isSingle(unsigned int key) const { return key == 0 ? hasSingleZero : single.contains(key); }
    void addSingle(unsigned int key)
    {
        if (key == 0)
            hasSingleZero = true;
        else
            single.insert(key);
    }

    std::conditional_t<sizeof(void*) == sizeof(unsigned int), AddressKeys, AssignedKeys> keys;
    KeySet written;
    KeySet single;
    bool hasSingleZero = false;
    std::vector<ref_ptr<Serializable>> objects;  // All shared ones that were read; null for those given up.
    CountPool counts;                            // For the objects to come.
    KeyTable<unsigned int, unsigned int> shared; // Where the last one of each key lies.
};
} // namespace tarn
