#include <tarn/ImageList.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

#include <utility>

namespace tarn {
static_assert(ImageList::bitmap == IMAGE_BITMAP && ImageList::icon == IMAGE_ICON && ImageList::cursor == IMAGE_CURSOR);

ImageList::ImageList(int resource, what kind, unsigned width, unsigned long mask, unsigned flags, HINSTANCE module)
{
    load(resource, kind, width, mask, flags, module);
}

ImageList::~ImageList() noexcept(false)
{
    closeAtEnd([this] { destroy(); });
}

ImageList& ImageList::operator=(ImageList&& other) noexcept
{
    const HIMAGELIST taken = other.detach(); // First, because it may be this object.
    if (taken != list_)
        closeQuietly([this] { destroy(); });
    list_ = taken;
    return *this;
}

void ImageList::load(int resource, what kind, unsigned width, unsigned long mask, unsigned flags, HINSTANCE module)
{
    constexpr int growth = 4; // Pictures that can be added before the list is enlarged.
    destroy();
    list_ = ensureGDI(
        [=] {
            return ImageList_LoadImageW(module, MAKEINTRESOURCEW(resource), static_cast<int>(width), growth, mask,
                                        static_cast<UINT>(kind), flags);
        },
        "Failed to load image list");
}

void ImageList::destroy()
{
    if (const HIMAGELIST list = detach())
        ensureGDI([=] { return ImageList_Destroy(list); }, "Failed to destroy image list");
}

void ImageList::attach(HIMAGELIST list)
{
    if (list != list_)
        destroy();
    list_ = list;
}

HIMAGELIST ImageList::detach() noexcept { return std::exchange(list_, nullptr); }
} // namespace tarn
