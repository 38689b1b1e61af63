#include "TypeName.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace tarn {
std::string readableName(const char* symbol)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(abi::__cxa_demangle(symbol, nullptr, nullptr, &status),
                                                               &std::free);
    return readable ? readable.get() : symbol;
}

std::string typeName(const std::type_info& type) { return readableName(type.name()); }
} // namespace tarn
