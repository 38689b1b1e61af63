#include <tarn/Brush.h>

#include "GDICheck.h"

namespace tarn {
Brush::Brush(unsigned long colour)
    : TypedGDIHandle(ensureGDI([=] { return CreateSolidBrush(colour); }, "Can't create solid brush"), true)
{
}
} // namespace tarn
