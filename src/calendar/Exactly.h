#pragma once

#include <typeinfo>

namespace tarn {
/// Whether the object's class is C itself: its virtual operations are then known, and a virtual call for
/// each of many fields can be saved. Derived classes see every call. Compares addresses, which is fast; a
/// copy of the type's information elsewhere would only cost the calls.
template <class C> bool isExactly(const C& object) { return &typeid(object) == &typeid(C); }
} // namespace tarn
