#include <tarn/COMServer.h>

constexpr GUID CLSID_Clock = {};
tarn::IUnknownImpl* createClock(IUnknown* outer);

#include "COMServer.example"
