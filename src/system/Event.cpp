#include <tarn/Event.h>

#include "../foundation/Quoted.h"
#include "NamedObject.h"

namespace tarn {
Event::Event(bool manualReset, bool initiallySignaled)
    : WindowsHandle(ensure(CreateEventW(nullptr, manualReset, initiallySignaled, nullptr), "Error in CreateEvent"))
{
}

Event::Event(const wchar_t* name, bool manualReset, bool initiallySignaled, bool* existed)
    : WindowsHandle(ensureNamed([&] { return CreateEventW(nullptr, manualReset, initiallySignaled, name); }, existed,
                                "Error in CreateEvent"))
{
}

Event Event::openNamed(const wchar_t* name)
{
    return Event(
        Opened{ensure(OpenEventW(EVENT_ALL_ACCESS, FALSE, name), [&] { return "Can't open event " + quoted(name); })});
}

void Event::set() const { ensure(SetEvent(getHandle()), "Error in SetEvent"); }
void Event::reset() const { ensure(ResetEvent(getHandle()), "Error in ResetEvent"); }
void Event::pulse() const { ensure(PulseEvent(getHandle()), "Error in PulseEvent"); }
} // namespace tarn
