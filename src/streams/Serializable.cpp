#include <tarn/Serializable.h>

#include <tarn/BasicString.h>
#include <tarn/NewerData.h>
#include <tarn/Stream.h>

#include "../foundation/Closing.h"
#include "../foundation/FailureTail.h"
#include "../foundation/Throw.h"
#include "../foundation/TypeName.h"
#include "ArchiveBody.h"
#include "ClassName.h"
#include "ClassRegistry.h"
#include "KnownClasses.h"
#include "Platform.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace tarn {
Serializable::Exception::Exception(const std::string& description) : tarn::Exception(description) {}
Serializable::Exception::Exception(const Exception&) = default;
Serializable::Exception& Serializable::Exception::operator=(const Exception&) = default;
Serializable::Exception::~Exception() = default;

void Serializable::addCreator(const char* name, Serializable* (*creator)()) { ClassRegistry::get().add(name, creator); }

namespace {
[[noreturn, gnu::noinline, gnu::cold]] void throwUnknownClass(const std::string& name)
{
    throwError(
        Serializable::Exception(withSentence("Klassendefinition nicht gefunden - ein Objekt vom Typ SerializableImpl "
                                             "sollte f\xFCr die Klasse \"" +
                                                 name + "\" angelegt werden",
                                             "This program does not know the class \"" + name + "\" of an object")));
}
} // namespace

Serializable* Serializable::create(const char* name)
{
    if (const auto creator = ClassRegistry::get().creatorOf(name))
        return creator();
    throwUnknownClass(name ? name : "");
}

void DestroyObject::operator()(Serializable* object) const noexcept
{
    if (!object)
        return;
    const auto* const registration = ClassRegistry::get().firstOf(typeid(*object));
    closeQuietly([&] {
        if (registration && registration->traits.destroy)
            registration->traits.destroy(object);
        else if (typeid(*object) == typeid(SealedObject))
            ref_ptr<SealedObject>{static_cast<SealedObject*>(object)};
        else
            ref_ptr<Serializable>{object};
    });
}

namespace detail {
void registerClassAs(const std::type_info& type, const char* name, const ClassTraits& traits, const void* owner)
{
    ClassRegistry::get().add(name, traits, type, owner);
}
void registerClass(const std::type_info& type, const char* keyword, const ClassTraits& traits, const void* owner)
{
    registerClassAs(type, (keyword + ClassName::qualifiedName(type)).c_str(), traits, owner);
}
void registerClassAs(const std::type_info& type, const char* name, Serializable* (*creator)(), const void* owner)
{
    registerClassAs(type, name, ClassTraits{.create = creator}, owner);
}
void registerClass(const std::type_info& type, const char* keyword, Serializable* (*creator)(), const void* owner)
{
    registerClass(type, keyword, ClassTraits{.create = creator}, owner);
}

void unregisterClass(const void* owner) noexcept
{
    // The program's own classes stay to its very end, whatever the order in which its static objects die.
    if (liesInLibrary(owner))
        ClassRegistry::get().remove(owner);
}
} // namespace detail

void ClassName::compose(const std::type_info& type) { composed_ = "class " + qualifiedName(type); }

void ClassName::refuse() const
{
    throwError(Serializable::Exception('"' + std::string(text()) + "\" is the name of another class, too"));
}

std::string ClassName::qualifiedName(const std::type_info& type) { return typeName(type); }

namespace {
/// As many of the bytes of a name as come. One that claims to be very long is fetched in pieces.
void readLongName(InputStream& in, std::string& name, unsigned int left)
{
    constexpr unsigned int piece = 0x8000;
    while (left > 0) {
        const unsigned int wanted = std::min(left, piece);
        const std::size_t start = name.size();
        name.resize(start + wanted);
        const unsigned int count = std::min(in.read(name.data() + start, wanted), wanted);
        name.resize(start + count);
        left = count == wanted ? left - count : 0;
    }
}
} // namespace

OutputStream& operator<<(OutputStream& out, const VersionedHead& head)
{
    const auto length = static_cast<unsigned int>(std::strlen(head.text));
    if ((length & versionMask) != 0)
        throwError(Serializable::Exception("The name of a class is too long"));
    const unsigned int mark = length | versionMark;
    char words[128];
    if (length > sizeof words - 2 * sizeof mark) {
        out << mark;
        out.writeFully(head.text, length);
        return out << head.version;
    }
    std::memcpy(words, &mark, sizeof mark);
    std::memcpy(words + sizeof mark, head.text, length);
    std::memcpy(words + sizeof mark + length, &head.version, sizeof head.version);
    out.writeFully(words, static_cast<unsigned int>(2 * sizeof mark) + length);
    return out;
}

Serializable* ObjectHead::createPlain(InputStream& in, unsigned int length, KnownClasses* known)
{
    char name[shortest];
    const unsigned int count = length ? std::min(in.read(name, length), length) : 0;
    name[count] = '\0';
    return known ? known->create(name, count) : Serializable::create(name);
}

ObjectHead::ObjectHead(InputStream& in, unsigned int length)
{
    isVersioned_ = (length & versionMask) == versionMark;
    const unsigned int left = isVersioned_ ? length & ~versionMask : length;
    if (left >= shortest) {
        readLongName(in, longName_, left);
        if (isVersioned_)
            in.readFully(words_, sizeof words_);
    } else if (isVersioned_) {
        in.readFully(shortName_, left + static_cast<unsigned int>(sizeof words_));
        std::memcpy(words_, shortName_ + left, sizeof words_);
        shortName_[left] = '\0';
        shortLength_ = left;
    }
}
} // namespace tarn
