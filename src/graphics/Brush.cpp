#include <tarn/Brush.h>

#include "../foundation/Check.h"

namespace tarn {
Brush::Brush(unsigned long colour)
    : TypedGDIHandle(ensureGDI([=] { return CreateSolidBrush(colour); }, "Can't create solid brush"), true)
{
}
} // namespace tarn
