#pragma once

#include "ClassRegistry.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <typeinfo>

namespace tarn {
/// What an archive has found out of the classes that it meets again and again, until classes come or go.
class KnownClasses {
public:
    /// As ClassRegistry::firstOf().
    const ClassRegistry::Registration* firstOf(const std::type_info& type)
    {
        forgetIfChanged();
        const auto isIt = [&](const ByType& it) { return it.key == &type; };
        if (const ByType* const known = findIn(byType_, hash(type), isIt))
            return known->registration;
        return put(byType_, hash(type), ByType{&type, registry_->firstOf(type)}).registration;
    }

    /// As Serializable::create(), of a name of so many characters with a zero behind them.
    Serializable* create(const char* name, std::size_t length)
    {
        forgetIfChanged();
        const auto isIt = [&](const ByName& it) {
            return it.length == length && it.key && std::memcmp(it.key, name, length) == 0;
        };
        if (const ByName* const known = findIn(byName_, length, isIt))
            return known->create();
        if (const auto* const found = registry_->find(name))
            put(byName_, length, ByName{found->name.data(), found->name.length(), found->traits.create});
        return Serializable::create(name);
    }

    /// What `find` finds in an object, the whole of which or a base: that lies at the same place in all objects of a
    /// class. To look for it takes ten times as long as to remember it.
    const void* partOf(const Serializable& object, const std::type_info& wanted,
                       const void* (*find)(const Serializable&))
    {
        forgetIfChanged();
        const std::type_info& type = typeid(object);
        const auto* const whole = static_cast<const char*>(dynamic_cast<const void*>(&object));
        const std::ptrdiff_t from = reinterpret_cast<const char*>(&object) - whole;
        const auto isIt = [&](const Part& it) { return it.key == &type && it.wanted == &wanted && it.from == from; };
        if (const Part* const known = findIn(parts_, hash(type), isIt))
            return whole + known->to;
        const void* const found = find(object);
        if (found)
            put(parts_, hash(type), Part{&type, &wanted, from, static_cast<const char*>(found) - whole});
        return found;
    }

private:
    struct ByType {
        const std::type_info* key = nullptr;
        const ClassRegistry::Registration* registration = nullptr;
    };
    struct ByName {
        const char* key = nullptr;
        std::size_t length = 0;
        ClassRegistry::Creator create = nullptr;
    };
    struct Part {
        const std::type_info* key = nullptr;
        const std::type_info* wanted = nullptr;
        std::ptrdiff_t from = 0;
        std::ptrdiff_t to = 0;
    };
    static constexpr std::size_t size = 16, steps = 4;
    template <class T> using Table = std::array<T, size>;

    static std::size_t hash(const std::type_info& type) { return reinterpret_cast<std::uintptr_t>(&type) >> 3; }

    // One of the few places from `start` on, or null.
    template <class T, class IsIt> static const T* findIn(const Table<T>& table, std::size_t start, IsIt isIt)
    {
        for (std::size_t i = start; i < start + steps; ++i)
            if (const T& place = table[i % size]; isIt(place))
                return &place;
        return nullptr;
    }
    // Where nothing is yet, or in the place of another.
    template <class T> [[gnu::noinline]] static const T& put(Table<T>& table, std::size_t start, const T& found)
    {
        std::size_t at = start;
        while (at < start + steps - 1 && table[at % size].key)
            ++at;
        return table[at % size] = found;
    }

    void forgetIfChanged()
    {
        if (version_ != registry_->version())
            *this = KnownClasses();
    }

    const ClassRegistry* registry_ = &ClassRegistry::get();
    unsigned int version_ = registry_->version();
    Table<ByType> byType_{};
    Table<ByName> byName_{};
    Table<Part> parts_{};
};
} // namespace tarn
