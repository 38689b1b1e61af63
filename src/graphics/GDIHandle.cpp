#include <tarn/GDIHandle.h>

#include "../foundation/Check.h"

namespace tarn {
GDIHandle::~GDIHandle() noexcept(false) { close(); }

void GDIHandle::close()
{
    if (void* const handle = takeOwned())
        ensureGDI([=] { return DeleteObject(handle); }, "Can't delete GDI handle");
}
} // namespace tarn
