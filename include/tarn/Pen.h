#pragma once

#include <tarn/Export.h>
#include <tarn/GDIHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// What lines and outlines are drawn with. Ownership and failures are those of GDIHandle.
class TARN_API Pen : public TypedGDIHandle<HPEN> {
public:
    Pen() noexcept = default;
    using TypedGDIHandle::TypedGDIHandle;
    /// An owned pen of an RGB colour: `style` is `PS_SOLID`, `PS_DASH` and so on, `width` is in logical
    /// units, 0 for one pixel. Throws "Can't create pen".
    Pen(unsigned long colour, int style, int width);

    /// Releases the held pen, as close() does, before it makes the new one.
    void create(unsigned long colour, int style, int width);
};
} // namespace tarn
