#pragma once

#include "Description.h"

namespace tarn {
/// A name as messages show it, between double quotes. For the composing half of a check.
template <class Ch> Description quoted(const Ch* name) { return "\"" + Description(name) + "\""; }
} // namespace tarn
