#include <tarn/BufferedPaint.h>

#include "../foundation/Closing.h"

#include <algorithm>
#include <exception>

namespace tarn {
// The buffer begins at the window's corner, so that its coordinates are the window's whatever the program does with
// them.
BufferedPaint::BufferedPaint(HWND window)
    : paint_(window),
      buffer_(paint_, std::max(1L, getUpdateRectangle().right), std::max(1L, getUpdateRectangle().bottom))
{
    former_ = select(buffer_);
    const Rect shown = getUpdateRectangle();
    IntersectClipRect(*this, shown.left, shown.top, shown.right, shown.bottom); // The rest would be in vain.
}

BufferedPaint::~BufferedPaint() noexcept(false)
{
    if (std::uncaught_exceptions() == 0)
        close();
    else
        closeQuietly([this] { end(); });
}

void BufferedPaint::close()
{
    if (!getHandle())
        return;
    try {
        const Rect shown = getUpdateRectangle();
        setViewportOrigin(0, 0);
        paint_.blit(*this, shown.left, shown.top, shown.getWidth(), shown.getHeight(), shown.left, shown.top, SRCCOPY);
    } catch (...) {
        closeQuietly([this] { end(); });
        throw;
    }
    end();
}

// The bitmap goes after the context that has it selected.
void BufferedPaint::end()
{
    select(former_);
    DeviceContext::close();
    buffer_.close();
    paint_.close();
}
} // namespace tarn
