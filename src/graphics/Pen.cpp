#include <tarn/Pen.h>

#include "../foundation/Check.h"

namespace tarn {
Pen::Pen(unsigned long colour, int style, int width) { create(colour, style, width); }

void Pen::create(unsigned long colour, int style, int width)
{
    close();
    setHandle(ensureGDI([=] { return CreatePen(style, width, colour); }, "Can't create pen"), true);
}
} // namespace tarn
