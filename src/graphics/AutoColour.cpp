#include <tarn/AutoColour.h>

#include <tarn/DeviceContext.h>

#include "../foundation/Closing.h"

namespace tarn {
namespace {
template <ContextColour which> unsigned long setColour(HDC handle, unsigned long colour)
{
    DeviceContext context(handle);
    return which == ContextColour::text ? context.setTextColour(colour) : context.setBackgroundColour(colour);
}
} // namespace

template <ContextColour which>
AutoColour<which>::AutoColour(HDC context, unsigned long colour)
    : context_(context), former_(setColour<which>(context, colour))
{
}
template <ContextColour which> AutoColour<which>::~AutoColour() noexcept(false)
{
    closeAtEnd([this] { setColour<which>(context_, former_); });
}

template class AutoColour<ContextColour::text>;
template class AutoColour<ContextColour::background>;
} // namespace tarn
