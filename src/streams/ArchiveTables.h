#pragma once

#include <tarn/Archive.h>

#include <tarn/NewerData.h>

#include "../foundation/Closing.h"
#include "ArchiveBody.h"
#include "ClassName.h"
#include "CountPool.h"
#include "KeyTable.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <type_traits>
#include <typeinfo>
#include <unordered_map>
#include <unordered_set>
#include <vector>

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

/// The version that an object is written with: that of its class, or that of a newer program whose data it keeps.
class Archive::DataVersion {
public:
    DataVersion(const ClassName& name, const Serializable& object) : number_(name.version())
    {
        if (name.keepsNewerData())
            newer_ = dynamic_cast<const NewerData*>(&object);
        if (newer_)
            number_ = std::max(number_, newer_->getNewerVersion());
    }
    DataVersion(const SealedObject& object) : number_(object.getNewerVersion()), newer_(&object) {}

    bool isWritten() const { return number_ > 0; }
    unsigned int number() const { return number_; }
    const NewerData* newerData() const { return newer_; }

private:
    unsigned int number_;
    const NewerData* newer_ = nullptr;
};

/// The classes of the objects in which reading failed, from the innermost on, gathered as they are left.
struct FailedPath {
    std::vector<const std::type_info*> classes;
    unsigned int depth = 0; ///< Of the outermost one.
    std::optional<unsigned long long> offset;
};

/// What an archive has written and read so far.
struct Archive::Tables {
    Tables() = default;
    /// The copy begins on the outside.
    Tables(const Tables& other)
        : keys(other.keys), written(other.written), single(other.single), hasSingleZero(other.hasSingleZero),
          keepsUnknown(other.keepsUnknown), objects(other.objects), shared(other.shared), standard(other.standard),
          foreign(other.foreign)
    {
    }
    Tables& operator=(const Tables&) = delete;
    ~Tables()
    {
        if (foreign.empty() && standard.empty())
            return;
        // Nobody has a pointer of their own class to what stands in newer data or behind standard pointers, and nobody
        // else opens the circles of unknown objects that a failed reading has left.
        std::vector<detail::SealedPart> own;
        closeQuietly([&] {
            for (auto& object : objects)
                if (foreign.contains(object.getIdentity()) || standard.contains(object.getIdentity()))
                    own.emplace_back().object.swap(object);
        });
        NewerData::drop(std::move(own));
    }

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
        if (readsNewerData || (keepsUnknown && dynamic_cast<SealedObject*>(object.get())))
            foreign.insert(object.getIdentity());
        if (key != 0)
            shared[key] = place;
        return place;
    }
    /// Gives the object at a place up again, which no key leads to.
    void drop(unsigned int place)
    {
        objects[place].release();
        if (place + 1 == objects.size())
            objects.pop_back();
    }
    /// Null for a key that was not read, or whose object was given up.
    const ref_ptr<Serializable>* find(unsigned int key) const
    {
        const unsigned int* const place = shared.find(key);
        return place && objects[*place] ? &objects[*place] : nullptr;
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
    bool keepsUnknown = false;
    bool readsNewerData = false;                 // In which objects of unknown classes are kept in any case.
    std::vector<ref_ptr<Serializable>> objects;  // All shared ones that were read; null for those given up.
    CountPool counts;                            // For the objects to come.
    KeyTable<unsigned int, unsigned int> shared; // Where the last one of each key lies.
    std::unordered_map<const unsigned int*, std::weak_ptr<Serializable>> standard; // What standard pointers share.
    std::unordered_set<const unsigned int*> foreign; // What stands in newer data or is of an unknown class.
    BodyWriter writer;
    BodyReader reader;
    FailedPath failed;
};
} // namespace tarn
