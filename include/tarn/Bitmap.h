#pragma once

#include <tarn/Export.h>
#include <tarn/GDIHandle.h>
#include <tarn/Size.h>
#include <tarn/Windows.h>

#include <cstdint>
#include <vector>

namespace tarn {
/// A picture that a memory DeviceContext draws into or copies from. What it creates or loads it owns; a
/// handle that it is given only when told so. Ownership and failures are those of GDIHandle.
class TARN_API Bitmap : public TypedGDIHandle<HBITMAP> {
public:
    Bitmap() noexcept = default;
    using TypedGDIHandle::TypedGDIHandle;
    /// A module's bitmap resource. Throws "Can't load bitmap NUMBER".
    Bitmap(unsigned short resource, HINSTANCE module);
    /// In the device's own format; `bits` (rows padded to 16 bits, top row first) may be null, which leaves
    /// the pixels undefined. Throws "Can't create bitmap".
    Bitmap(int width, int height, unsigned planes, unsigned bitsPerPixel, const void* bits);
    /// With the colours of `context`: monochrome for a memory context into which nothing was selected.
    /// Throws "Can't create compatible bitmap".
    Bitmap(HDC context, int width, int height);

    /// Of 32 bits a pixel, which lie in memory from `pixels` on as long as the bitmap lives: 0xAARRGGBB, the top row
    /// first, black and without opacity at first. Call `GdiFlush` between drawing and reading. Throws "Can't create
    /// bitmap".
    static Bitmap withPixels(int width, int height, std::uint32_t*& pixels);
    /// A copy of the pixels as above, of a bitmap of any kind that is not selected into a context. Throws "Can't get
    /// pixels of bitmap".
    std::vector<std::uint32_t> getPixels() const;

    /// The bitmap need not be of device-independent kind. Throws "Can't query bitmap info header".
    void getHeader(BITMAPINFOHEADER& header) const;
    /// In pixels, both positive also when the top row comes first in memory. Throws as getHeader() does.
    Size getSize() const;
};
} // namespace tarn
