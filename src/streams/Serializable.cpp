#include <tarn/Serializable.h>

#include <tarn/BasicString.h>
#include <tarn/Stream.h>

#include "../foundation/Throw.h"
#include "ClassName.h"
#include "ClassRegistry.h"
#include "Platform.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace tarn {
Serializable::Exception::Exception(const std::string& description) : tarn::Exception(description) {}
Serializable::Exception::Exception(const Exception&) = default;
Serializable::Exception& Serializable::Exception::operator=(const Exception&) = default;
Serializable::Exception::~Exception() = default;

void Serializable::addCreator(const char* name, Serializable* (*creator)()) { ClassRegistry::get().add(name, creator); }

Serializable* Serializable::create(const char* name)
{
    if (const auto creator = ClassRegistry::get().creatorOf(name))
        return creator();
    throwError(Exception(std::string("Klassendefinition nicht gefunden - ein Objekt vom Typ SerializableImpl sollte "
                                     "f\xFCr die Klasse \"") +
                         (name ? name : "") + "\" angelegt werden"));
}

namespace detail {
void registerClassAs(const std::type_info& type, const char* name, Serializable* (*creator)(), const void* owner)
{
    ClassRegistry::get().add(name, creator, type, owner);
}

void registerClass(const std::type_info& type, const char* keyword, Serializable* (*creator)(), const void* owner)
{
    registerClassAs(type, (keyword + ClassName::qualifiedName(type)).c_str(), creator, owner);
}

void unregisterClass(const void* owner) noexcept
{
    // The program's own classes stay to its very end, whatever the order in which its static objects die.
    if (liesInLibrary(owner))
        ClassRegistry::get().remove(owner);
}
} // namespace detail

ClassName::ClassName(const std::type_info& type) : registration_(ClassRegistry::get().firstOf(type))
{
    if (!registration_)
        composed_ = "class " + qualifiedName(type);
}

const char* ClassName::text() const { return registration_ ? registration_->name.data() : composed_.c_str(); }

const char* ClassName::toWrite() const
{
    if (registration_ && registration_->isShadowed)
        throwError(Serializable::Exception('"' + std::string(text()) + "\" is the name of another class, too"));
    return text();
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
