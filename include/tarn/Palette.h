#pragma once

#include <tarn/Export.h>
#include <tarn/GDIHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// The colours of a device that shows only some at a time; what DeviceContext::select hands back for one.
/// Ownership and failures are those of GDIHandle.
class TARN_API Palette : public TypedGDIHandle<HPALETTE> {
public:
    Palette() noexcept = default;
    using TypedGDIHandle::TypedGDIHandle;
};
} // namespace tarn
