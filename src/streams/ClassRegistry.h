#pragma once

#include <tarn/ConstString.h>
#include <tarn/Serializable.h>

#include <list>
#include <map>
#include <string>
#include <typeinfo>
#include <unordered_map>

namespace tarn {
/// Over the length of the shorter name only: a name equals each one that continues it. Among the names in a
/// table no two are equal in this way, which is what keeps them in order.
struct ShorterFirst {
    bool operator()(const ConstString<char>& a, const ConstString<char>& b) const;
};

/// The classes that can be made by name. Of registrations with equal names the first one counts, and when its
/// module is unloaded the next one does.
class ClassRegistry {
public:
    using Creator = Serializable* (*)();

    struct Registration {
        ConstString<char> name;
        detail::ClassTraits traits;
        const std::type_info* type = nullptr; ///< Null where only a creator was given.
        const void* owner = nullptr;          ///< What ends the registration.
        std::string ownName;
        bool isShadowed = false; ///< Objects of another type come back under this very name.
    };

    /// Never destroyed: objects are written and read in the destructors of static objects, too.
    static ClassRegistry& get();

    void add(const char* name, Creator creator);
    void add(const char* name, const detail::ClassTraits& traits, const std::type_info& type, const void* owner);
    void remove(const void* owner) noexcept;

    /// The one that makes objects of that name, whose own may be shorter or longer; null for an unknown name.
    const Registration* find(const char* name) const;
    /// Null for an unknown name.
    Creator creatorOf(const char* name) const
    {
        const Registration* const found = find(name);
        return found ? found->traits.create : nullptr;
    }
    /// The first registration of the type, whatever module's copy of its identity is given; null without one.
    const Registration* firstOf(const std::type_info& type) const;
    /// Another number after each change: what was found before is to be looked for again.
    unsigned int version() const { return version_; }

private:
    void enter(Registration& registration);

    unsigned int version_ = 0;

    std::list<Registration> all_; // In their order.
    std::map<ConstString<char>, Registration*, ShorterFirst> byName_;
    // By where a type's identity lies, and, since modules have copies of it, by its text.
    std::unordered_map<const std::type_info*, Registration*> byType_;
    std::unordered_map<std::string, Registration*> byTypeName_;
};
} // namespace tarn
