#pragma once

#include "Throw.h"

#include <tarn/Exception.h>

#include <cstddef>
#include <new>
#include <stdexcept>

namespace tarn {
/// Resizes a string or vector; throws BadAllocation when the memory, or so much of it, cannot be had.
template <class Container> void resizeOrThrow(Container& container, std::size_t size)
{
    try {
        container.resize(size);
    } catch (const std::bad_alloc&) {
        throwError(BadAllocation());
    } catch (const std::length_error&) {
        throwError(BadAllocation());
    }
}
} // namespace tarn
