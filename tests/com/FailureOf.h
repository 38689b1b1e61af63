#pragma once

#include "Expect.h"

namespace support {
/// The failing call's HRESULT.
template <class Call> HRESULT failureOf(Call call) { return thrownBy<tarn::COMError>(call).getHRESULT(); }
} // namespace support
