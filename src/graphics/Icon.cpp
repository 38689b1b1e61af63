#include <tarn/Icon.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "GraphicsApi.h"

namespace tarn {
Icon::~Icon() noexcept(false)
{
    closeAtEnd([this] { close(); });
}
Icon& Icon::operator=(Icon&& other) noexcept
{
    Icon former(moveFrom(other), true);
    closeQuietly([&] { former.close(); });
    return *this;
}

void Icon::load(unsigned id, HINSTANCE module) { load(MAKEINTRESOURCEW(id), module); }
void Icon::load(const char* name, HINSTANCE module)
{
    close();
    setHandle(ensure(loadIcon(module, name), "Can't load icon"), true);
}
void Icon::load(const wchar_t* name, HINSTANCE module)
{
    close();
    setHandle(ensure(loadIcon(module, name), "Can't load icon"), true);
}

void Icon::close()
{
    if (const HICON handle = takeOwned())
        ensureGDI([=] { return DestroyIcon(handle); }, "Can't destroy icon");
}
} // namespace tarn
