#include <tarn/GDIHandle.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

namespace tarn {
GDIHandle::~GDIHandle() noexcept(false)
{
    closeAtEnd([this] { close(); });
}
GDIHandle& GDIHandle::operator=(GDIHandle&& other) noexcept
{
    GDIHandle former(moveFrom(other), true);
    closeQuietly([&] { former.close(); });
    return *this;
}

void GDIHandle::close()
{
    if (void* const handle = takeOwned())
        ensureGDI([=] { return DeleteObject(handle); }, "Can't delete GDI handle");
}
} // namespace tarn
