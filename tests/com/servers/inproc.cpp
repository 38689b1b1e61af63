#include "../Persistent.h"

#include <tarn/COMServer.h>

TARN_COM_SERVER({support::CLSID_Persistent, &support::Persistent::create, L"Persistent test object",
                 tarn::COMModule::both, support::persistentProgID});
