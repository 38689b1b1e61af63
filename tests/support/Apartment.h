#pragma once

#include <tarn/COMApartment.h>

namespace support {
/// COM on this thread, for as long as it lives.
using Apartment = tarn::COMApartment;
} // namespace support
