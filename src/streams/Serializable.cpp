#include <tarn/Serializable.h>

#include <tarn/BasicString.h>
#include <tarn/ConstString.h>
#include <tarn/Stream.h>

#include "../foundation/Throw.h"
#include "ClassName.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <map>
#include <memory>
#include <typeindex>
#include <unordered_map>

namespace tarn {
namespace {
// Over the length of the shorter name only: a name equals each one that continues it. Among registered
// names no two are equal in this way, which is what keeps them in order.
struct ShorterFirst {
    bool operator()(const ConstString<char>& a, const ConstString<char>& b) const
    {
        return std::char_traits<char>::compare(a.data(), b.data(), std::min(a.length(), b.length())) < 0;
    }
};

using Creator = Serializable* (*)();

// The tables are never destroyed: objects are written and read in the destructors of static objects, too.
std::map<ConstString<char>, Creator, ShorterFirst>& creators()
{
    static auto& all = *new std::map<ConstString<char>, Creator, ShorterFirst>;
    return all;
}

/// The registered types, by their identity and, since each module may have a copy of it, by where it lies.
struct RegisteredTypes {
    std::unordered_map<std::type_index, std::string> names;
    std::unordered_map<const std::type_info*, const char*> namesByAddress;
};

RegisteredTypes& registeredTypes()
{
    static auto& all = *new RegisteredTypes;
    return all;
}

// The length is counted once, not at every comparison.
ConstString<char> measured(const char* name)
{
    const ConstString<char> text(name ? name : "");
    return ConstString<char>(text.data(), text.length());
}
} // namespace

Serializable::Exception::Exception(const std::string& description) : tarn::Exception(description) {}
Serializable::Exception::Exception(const Exception&) = default;
Serializable::Exception& Serializable::Exception::operator=(const Exception&) = default;
Serializable::Exception::~Exception() = default;

void Serializable::addCreator(const char* name, Creator creator) { creators().try_emplace(measured(name), creator); }

Serializable* Serializable::create(const char* name)
{
    const auto found = creators().find(measured(name));
    if (found == creators().end())
        throwError(
            Exception(std::string("Klassendefinition nicht gefunden - ein Objekt vom Typ SerializableImpl sollte "
                                  "f\xFCr die Klasse \"") +
                      (name ? name : "") + "\" angelegt werden"));
    return found->second();
}

namespace {
const char* registeredName(const std::type_info& type)
{
    const RegisteredTypes& types = registeredTypes();
    if (const auto found = types.namesByAddress.find(&type); found != types.namesByAddress.end())
        return found->second;
    const auto found = types.names.find(type);
    return found != types.names.end() ? found->second.c_str() : nullptr;
}
} // namespace

namespace detail {
void registerClassAs(const std::type_info& type, const char* name, Creator creator)
{
    const auto [entry, isNew] = registeredTypes().names.try_emplace(type, name);
    registeredTypes().namesByAddress.try_emplace(&type, entry->second.c_str());
    if (isNew)
        Serializable::addCreator(entry->second.c_str(), creator);
}

void registerClass(const std::type_info& type, const char* keyword, Creator creator)
{
    registerClassAs(type, (keyword + ClassName::qualifiedName(type)).c_str(), creator);
}
} // namespace detail

ClassName::ClassName(const std::type_info& type) : registered_(registeredName(type))
{
    if (!registered_)
        composed_ = "class " + qualifiedName(type);
}

std::string ClassName::qualifiedName(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return readable ? readable.get() : type.name();
}

Serializable* createNamedOn(InputStream& in)
{
    constexpr unsigned int piece = 0x8000;
    char shortName[128];
    unsigned int left = in.readUInt32();
    if (left < sizeof shortName) {
        const unsigned int count = left ? std::min(in.read(shortName, left), left) : 0;
        shortName[count] = '\0';
        return Serializable::create(shortName);
    }
    std::string name;
    while (left > 0) {
        const unsigned int wanted = std::min(left, piece);
        const std::size_t start = name.size();
        name.resize(start + wanted);
        const unsigned int count = std::min(in.read(name.data() + start, wanted), wanted);
        name.resize(start + count);
        left = count == wanted ? left - count : 0;
    }
    return Serializable::create(name.c_str());
}
} // namespace tarn
