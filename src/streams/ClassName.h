#pragma once

#include "ClassRegistry.h"

#include <string>
#include <typeinfo>

namespace tarn {
class InputStream;
class KnownClasses;
class OutputStream;

/// The name by which streams know a type: the registered one, or "class " and the type's own name.
class ClassName {
public:
    explicit ClassName(const std::type_info& type) : ClassName(type, ClassRegistry::get()) {}
    /// As the classes tell it: a ClassRegistry, or what is known of it.
    template <class Classes>
    ClassName(const std::type_info& type, Classes& classes) : registration_(classes.firstOf(type))
    {
        if (!registration_)
            compose(type);
    }
    ClassName(const ClassName&) = delete;
    ClassName& operator=(const ClassName&) = delete;

    const char* text() const { return registration_ ? registration_->name.data() : composed_.c_str(); }
    /// As text(). Throws Serializable::Exception for a class whose objects would come back as another's.
    const char* toWrite() const
    {
        if (registration_ && registration_->isShadowed)
            refuse();
        return text();
    }
    /// Of the text, in characters.
    std::size_t length() const { return registration_ ? registration_->name.length() : composed_.size(); }

    /// The version with which objects are written; 0 for one without.
    unsigned int version() const { return registration_ ? registration_->traits.version : 0; }
    /// Whether objects may have data of newer programs.
    bool keepsNewerData() const { return registration_ && registration_->traits.keepsNewerData; }
    bool isRegistered() const { return registration_; }
    /// Whether objects are written as their data alone.
    bool isPlain() const
    {
        return registration_ ? registration_->traits.version == 0 && !registration_->traits.keepsNewerData
                             : composed_ != "class tarn::SealedObject";
    }

    /// A type's qualified name as programs spell it, without "class" or "struct".
    static std::string qualifiedName(const std::type_info& type);

private:
    void compose(const std::type_info& type);
    [[noreturn]] void refuse() const;

    const ClassRegistry::Registration* registration_;
    std::string composed_;
};

/// The name of a class with a version, as it is written.
struct VersionedHead {
    VersionedHead(const char* name, unsigned int number) : text(name), version(number) {}
    VersionedHead(const ClassName& name, unsigned int number) : VersionedHead(name.toWrite(), number) {}

    const char* text;
    unsigned int version;
};
OutputStream& operator<<(OutputStream& out, const VersionedHead& head);

/// What stands in front of an object's data. The name is fetched in one plain read, and when that comes back short it
/// is as much as came.
class ObjectHead {
public:
    /// Whether no more than a name that is not very long follows the length.
    static bool isPlain(unsigned int length) { return length < shortest; }
    /// Makes an object of the class with that name. Null for what is known: the registry is asked.
    static Serializable* createPlain(InputStream& in, unsigned int length, KnownClasses* known);

    /// Reads what follows the length.
    ObjectHead(InputStream& in, unsigned int length);
    ObjectHead(const ObjectHead&) = delete;
    ObjectHead& operator=(const ObjectHead&) = delete;

    const char* name() const { return longName_.empty() ? shortName_ : longName_.c_str(); }
    std::size_t length() const { return longName_.empty() ? shortLength_ : longName_.size(); }
    /// Whether a version follows the name, and data in parts.
    bool isVersioned() const { return isVersioned_; }
    unsigned int version() const { return words_[0]; }
    /// That in front of the first part.
    unsigned int firstWord() const { return words_[1]; }

private:
    static constexpr unsigned int shortest = 128; // Of the long names.

    bool isVersioned_;
    unsigned int words_[2] = {};
    unsigned int shortLength_ = 0;
    char shortName_[shortest + sizeof words_];
    std::string longName_;
};
} // namespace tarn
