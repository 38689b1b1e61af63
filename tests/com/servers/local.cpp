#include "../Talking.h"

#include <tarn/COMModule.h>
#include <tarn/WindowsHandle.h>

#include <cstring>

int main(int argc, char** argv)
{
    tarn::COMModule module(GetModuleHandleW(nullptr),
                           {{support::CLSID_Persistent, &support::Talking::create, L"Persistent test object",
                             tarn::COMModule::both, support::persistentProgID}});
    const auto is = [&](const char* option) { return argc > 1 && std::strcmp(argv[1], option) == 0; };
    const HRESULT hr = tarn::asHRESULT([&] {
        if (is("-register"))
            return module.registerServer();
        if (is("-unregister"))
            return module.unregisterServer();
        tarn::HRESULTHolder::throwOnError(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
        module.serve(1500);
        CoUninitialize();
        const tarn::WindowsHandle ended(OpenEventW(EVENT_MODIFY_STATE, FALSE, support::serverEndedEvent));
        SetEvent(ended);
    });
    return SUCCEEDED(hr) ? 0 : 1;
}
