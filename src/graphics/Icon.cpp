#include <tarn/Icon.h>

#include <tarn/Bitmap.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "GraphicsApi.h"

namespace tarn {
namespace {
constexpr const char* cannotLoadIcon = "Can't load icon";
} // namespace

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
    setHandle(ensure(loadIcon(module, name), cannotLoadIcon), true);
}
void Icon::load(const wchar_t* name, HINSTANCE module)
{
    close();
    setHandle(ensure(loadIcon(module, name), cannotLoadIcon), true);
}

template <class Ch> void Icon::loadSized(const Ch* name, HINSTANCE module, int size, UINT flags)
{
    close();
    const HANDLE icon = ensure(loadImage(module, name, IMAGE_ICON, size, flags), cannotLoadIcon);
    setHandle(static_cast<HICON>(icon), true);
}
void Icon::load(unsigned id, HINSTANCE module, int size) { load(MAKEINTRESOURCEW(id), module, size); }
void Icon::load(const char* name, HINSTANCE module, int size) { loadSized(name, module, size, 0); }
void Icon::load(const wchar_t* name, HINSTANCE module, int size) { loadSized(name, module, size, 0); }
void Icon::loadFile(const char* file, int size) { loadSized(file, nullptr, size, LR_LOADFROMFILE); }
void Icon::loadFile(const wchar_t* file, int size) { loadSized(file, nullptr, size, LR_LOADFROMFILE); }

Size Icon::getSize() const
{
    ICONINFO info{};
    ensureGDI([&] { return GetIconInfo(getHandle(), &info); }, "Can't get size of icon");
    const Bitmap mask(info.hbmMask, true), colours(info.hbmColor, true);
    const Size size = mask.getSize();
    return colours.isNull() ? Size(size.cx, size.cy / 2) : size; // Without colours two masks, one above the other.
}

void Icon::close()
{
    if (const HICON handle = takeOwned())
        ensureGDI([=] { return DestroyIcon(handle); }, "Can't destroy icon");
}
} // namespace tarn
