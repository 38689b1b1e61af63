#include <tarn/AutoColour.h>

#include <tarn/DeviceContext.h>

#include "../foundation/Closing.h"

namespace tarn {
AutoTextColour::AutoTextColour(HDC context, unsigned long colour)
    : context_(context), former_(DeviceContext(context).setTextColour(colour))
{
}
AutoTextColour::~AutoTextColour() noexcept(false)
{
    closeAtEnd([this] { DeviceContext(context_).setTextColour(former_); });
}

AutoBackgroundColour::AutoBackgroundColour(HDC context, unsigned long colour)
    : context_(context), former_(DeviceContext(context).setBackgroundColour(colour))
{
}
AutoBackgroundColour::~AutoBackgroundColour() noexcept(false)
{
    closeAtEnd([this] { DeviceContext(context_).setBackgroundColour(former_); });
}
} // namespace tarn
