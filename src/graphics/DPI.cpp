#include <tarn/DPI.h>

namespace tarn {
DPI DPI::ofSystem()
{
    const HDC screen = GetDC(nullptr);
    const int dots = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return DPI(static_cast<unsigned>(dots));
}
} // namespace tarn
