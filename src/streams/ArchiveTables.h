#pragma once

#include <tarn/Archive.h>

#include <tarn/NewerData.h>

#include "../foundation/Closing.h"
#include "AddressTable.h"
#include "ArchiveBody.h"
#include "ClassName.h"
#include "CountPool.h"
#include "KeyTable.h"
#include "KnownClasses.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tarn {
using KeySet = KeyTable<unsigned int>;

/// The keys of the shared objects that were written. The key is the address of the object's counter, where that fits
/// the 32 bits of a key; else the address's low half, or the next number that is neither 0 nor taken.
template <bool areAddresses> class KeysOfAddresses {
    using HighHalf = std::conditional_t<areAddresses, NoValue, unsigned int>;
    using Table = AddressTable<HighHalf>;

public:
    /// The key of an object, and whether it was written: one search for both. Valid until the next one.
    class Place {
    public:
        explicit operator bool() const { return static_cast<bool>(place_); } ///< Whether it was written.
        unsigned int key() const { return key_; }
        void put()
        {
            if constexpr (!areAddresses)
                if (keys_)
                    keys_->assigned_[address_] = key_;
            place_.put(high_);
        }

    private:
        friend class KeysOfAddresses;
        Place(typename Table::Place place, unsigned int key, HighHalf high) : place_(place), key_(key), high_(high) {}

        typename Table::Place place_;
        unsigned int key_;
        [[no_unique_address]] HighHalf high_;
        KeysOfAddresses* keys_ = nullptr; // For a key that is not the low half.
        std::uint64_t address_ = 0;
    };

    /// Of an address other than 0.
    Place placeFor(std::uint64_t address)
    {
        const auto key = static_cast<unsigned int>(address);
        if constexpr (areAddresses) {
            return Place(table_.placeFor(key), key, {});
        } else {
            const auto high = static_cast<unsigned int>(address >> 32);
            if (key != 0)
                if (const auto place = table_.placeFor(key); !place || place.value() == high)
                    return Place(place, key, high);
            return placeOfAssigned(address);
        }
    }

private:
    static constexpr unsigned int noHighHalf = ~0u; // No address has this one.

    [[gnu::noinline]] Place placeOfAssigned(std::uint64_t address)
    {
        const unsigned int* const known = assigned_.find(address);
        auto key = known ? *known : static_cast<unsigned int>(address);
        while (!known && (key == 0 || table_.contains(key)))
            ++key;
        Place place(table_.placeFor(key), key, noHighHalf);
        place.keys_ = this;
        place.address_ = address;
        return place;
    }

    Table table_;
    KeyTable<std::uint64_t, unsigned int> assigned_;
};
using WrittenKeys = KeysOfAddresses<sizeof(void*) == sizeof(unsigned int)>;

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

/// Gets what an archive would write, in the pieces in which the objects write it.
class GraphRecorder {
public:
    virtual void write(const void* data, unsigned int size) = 0;
    /// An object that was written before.
    virtual void refer(unsigned int key) = 0;
    /// What comes until end() is of a new object, one of a single owner when the key is 0.
    virtual void begin(unsigned int key, std::string className) = 0;
    virtual void end() = 0;
    /// The next reference does not keep its object alive.
    virtual void expectWeak() = 0;

protected:
    ~GraphRecorder() = default;
};

/// What an archive has written and read so far.
struct Archive::Tables {
    Tables() = default;
    /// The copy begins on the outside.
    Tables(const Tables& other)
        : written(other.written), single(other.single), hasSingleZero(other.hasSingleZero),
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
        NewerData::NewerDataInternals::drop(std::move(own));
    }

    /// Room for one more shared object, to be made before the object is: later it could be lost for want of it.
    void makeRoom(unsigned int key)
    {
        if (objects.size() == objects.capacity())
            objects.reserve(2 * objects.size() + 8);
        if (key != 0)
            shared.placeFor(key);
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
            shared.placeFor(key).put(place);
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

    WrittenKeys written;
    KeySet single;
    bool hasSingleZero = false;
    bool keepsUnknown = false;
    bool readsNewerData = false;                // In which objects of unknown classes are kept in any case.
    std::vector<ref_ptr<Serializable>> objects; // All shared ones that were read; null for those given up.
    CountPool counts;                           // For the objects to come.
    AddressTable<unsigned int> shared;          // Where the last one of each key lies.
    std::unordered_map<const unsigned int*, std::weak_ptr<Serializable>> standard; // What standard pointers share.
    std::unordered_set<const unsigned int*> foreign; // What stands in newer data or is of an unknown class.
    KnownClasses classes;
    GraphRecorder* recorder = nullptr; // Gets what would be written.
    BodyWriter writer;
    BodyReader reader;
    FailedPath failed;
};
} // namespace tarn
