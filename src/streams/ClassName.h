#pragma once

#include "ClassRegistry.h"

#include <string>
#include <typeinfo>

namespace tarn {
class InputStream;

/// The name by which streams know a type: the registered one, or "class " and the type's own name.
class ClassName {
public:
    explicit ClassName(const std::type_info& type);
    ClassName(const ClassName&) = delete;
    ClassName& operator=(const ClassName&) = delete;

    const char* text() const;
    /// As text(). Throws Serializable::Exception for a class whose objects would come back as another's.
    const char* toWrite() const;

    /// A type's qualified name as programs spell it, without "class" or "struct".
    static std::string qualifiedName(const std::type_info& type);

private:
    const ClassRegistry::Registration* registration_;
    std::string composed_;
};

/// Reads a class name and makes an object of that class. The name is fetched in one plain read, and when
/// that comes back short it is as much as came; one that claims to be very long is fetched in pieces.
Serializable* createNamedOn(InputStream& in);
} // namespace tarn
