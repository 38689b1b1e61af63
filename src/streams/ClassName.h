#pragma once

#include <string>
#include <typeinfo>

namespace tarn {
class InputStream;
class Serializable;

/// The name by which streams know a type: the registered one, or "class " and the type's own name.
class ClassName {
public:
    explicit ClassName(const std::type_info& type);
    ClassName(const ClassName&) = delete;
    ClassName& operator=(const ClassName&) = delete;

    const char* text() const { return registered_ ? registered_ : composed_.c_str(); }

    /// A type's qualified name as programs spell it, without "class" or "struct".
    static std::string qualifiedName(const std::type_info& type);

private:
    const char* registered_;
    std::string composed_;
};

/// Reads a class name and makes an object of that class. The name is fetched in one plain read, and when
/// that comes back short it is as much as came; one that claims to be very long is fetched in pieces.
Serializable* createNamedOn(InputStream& in);
} // namespace tarn
