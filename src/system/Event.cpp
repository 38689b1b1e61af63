#include <tarn/Event.h>

#include "../foundation/Check.h"

namespace tarn {
Event::Event(bool manualReset, bool initiallySignaled)
    : WindowsHandle(ensure(CreateEventW(nullptr, manualReset, initiallySignaled, nullptr), "Error in CreateEvent"))
{
}

void Event::set() const { ensure(SetEvent(getHandle()), "Error in SetEvent"); }
void Event::reset() const { ensure(ResetEvent(getHandle()), "Error in ResetEvent"); }
void Event::pulse() const { ensure(PulseEvent(getHandle()), "Error in PulseEvent"); }
} // namespace tarn
