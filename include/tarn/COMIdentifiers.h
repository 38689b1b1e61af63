#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

namespace tarn {
/// A text that names an `HRESULT`. Never fails for lack of a name: the answer is then "HRESULT value "
/// and the value in lower-case hexadecimal, closed by one terminating zero that is part of the string
/// (append its `c_str()` where that matters).
TARN_API BasicString<char> getHRESULTIdentifier(long hr);
} // namespace tarn
