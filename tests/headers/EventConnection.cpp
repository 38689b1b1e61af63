#include <tarn/EventConnection.h>

void listen(IUnknown* object, const GUID& DIID_Events);
void listen(IUnknown* object, const GUID& DIID_Events)
{
#include "EventConnection.example"
}
