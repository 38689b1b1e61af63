#pragma once

#include <tarn/Export.h>
#include <tarn/GDIHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// What areas are filled with. Ownership and failures are those of GDIHandle.
class TARN_API Brush : public TypedGDIHandle<HBRUSH> {
public:
    Brush() noexcept = default;
    using TypedGDIHandle::TypedGDIHandle;
    /// A solid brush of an RGB colour, owned. Throws "Can't create solid brush".
    Brush(unsigned long colour);
};
} // namespace tarn
