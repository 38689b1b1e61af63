#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

#include <string>

namespace tarn {
/// What an object says of the failure of this interface that it has just reported; empty when it says nothing.
BasicString<wchar_t> toldBy(IUnknown* object, const GUID& iid);

/// Throws for a failing result as HRESULTHolder::throwOnError does; what the object said stands behind the description.
[[noreturn, gnu::noinline, gnu::cold]] void throwTold(long hr, const std::string& description,
                                                      const BasicString<wchar_t>& told, const void* caller);
} // namespace tarn
