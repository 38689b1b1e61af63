#pragma once

#include <string>
#include <typeinfo>

namespace tarn {
/// A type's qualified name as programs spell it, without "class" or "struct".
std::string typeName(const std::type_info& type);

/// A symbol as programs spell it; one that is not the compiler's own as it is.
std::string readableName(const char* symbol);
} // namespace tarn
