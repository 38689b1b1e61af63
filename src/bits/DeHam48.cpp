#include <tarn/DeHam48.h>

#include <tarn/Export.h>

namespace tarn::detail {
// What programs made with the headers of 0.1.0 read. Of a constant of their own they need not ask the library's import
// table for its address, which in a loop takes as long as the rest.
extern TARN_API const std::array<signed char, 256> deHam48Table;
constinit const std::array<signed char, 256> deHam48Table = deHam48;
} // namespace tarn::detail
