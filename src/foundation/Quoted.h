#pragma once

#include <tarn/BasicString.h>

#include <string>

namespace tarn {
/// A name as messages show it: narrow, between double quotes. For the composing half of a check.
template <class Ch> std::string quoted(const Ch* name) { return '"' + BasicString<char>(name) + '"'; }
} // namespace tarn
