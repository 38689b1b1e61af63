#include <tarn/DeHam48.h>

#include <tarn/Export.h>

namespace tarn::detail {
// What programs made with the headers of 0.1.0 read.
extern TARN_API const std::array<signed char, 256> deHam48Table;
constinit const std::array<signed char, 256> deHam48Table = deHam48;
} // namespace tarn::detail
