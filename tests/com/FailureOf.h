#pragma once

#include "Test.h"

namespace support {
/// The failing call's HRESULT.
template <class Call> HRESULT failureOf(Call call) { return thrownBy<COMError>(call).getHRESULT(); }
} // namespace support
