#include <tarn/AutoClip.h>

#include <tarn/DeviceContext.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

namespace tarn {
namespace {
constexpr const char* cannotClip = "Can't clip drawing";
} // namespace

AutoClip::AutoClip(HDC context) : context_(context)
{
    const HRGN region = ensureGDI([] { return CreateRectRgn(0, 0, 0, 0); }, cannotClip);
    const int found = GetClipRgn(context, region);
    if (found > 0)
        former_ = region;
    else
        DeleteObject(region);
    if (found < 0)
        throwWindowsError(ERROR_INVALID_HANDLE, cannotClip);
}
AutoClip::AutoClip(HDC context, const RECT& r) : AutoClip(context)
{
    ensureGDI([&] { return IntersectClipRect(context_, r.left, r.top, r.right, r.bottom); }, cannotClip);
}
AutoClip::AutoClip(HDC context, HRGN region) : AutoClip(context)
{
    ensureGDI([&] { return ExtSelectClipRgn(context_, region, RGN_AND); }, cannotClip);
}

AutoClip::~AutoClip() noexcept(false)
{
    closeAtEnd([this] {
        const int result = SelectClipRgn(context_, former_); // It is copied.
        if (former_)
            DeleteObject(former_);
        if (result == ERROR)
            throwWindowsError(ERROR_INVALID_HANDLE, cannotClip);
    });
}
} // namespace tarn
