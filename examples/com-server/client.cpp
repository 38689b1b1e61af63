// Registers the server beside this program for the current user, lets the system find and create its
// class, calls the object by names, as a script does, hears its events, and unregisters the server.

#include "Greeter.h"

#include <tarn/COMApartment.h>
#include <tarn/Dispatch.h>
#include <tarn/EventConnection.h>
#include <tarn/GUID.h>
#include <tarn/RegistryKey.h>
#include <tarn/WindowsModule.h>

#include <iostream>

namespace {
/// The server's entry in the registry, while this object lives: for the current user or, on systems that
/// do not look for classes there, for all users.
class Registration {
public:
    explicit Registration(const wchar_t* dll) : server_(dll, true)
    {
        install(true);
        if (isVisible())
            return;
        install(false);
        scope_ = L"";
        install(true);
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration()
    {
        try {
            install(false);
        } catch (const std::exception& e) {
            std::cerr << "The server is still registered: " << e.what() << '\n';
        }
    }

    static bool isVisible()
    {
        return tarn::RegistryKey::existsKey(HKEY_CLASSES_ROOT, (L"CLSID\\" + tarn::toWString(CLSID_Greeter)).c_str());
    }
    const char* audience() const { return *scope_ ? "the current user" : "all users"; }

private:
    void install(bool on)
    {
        using Install = HRESULT(STDAPICALLTYPE*)(BOOL, LPCWSTR);
        const auto dllInstall =
            reinterpret_cast<Install>(reinterpret_cast<void*>(server_.getProcAddress("DllInstall", false)));
        tarn::HRESULTHolder::throwOnError(dllInstall(on, scope_), on ? "Can't register" : "Can't unregister");
    }

    tarn::WindowsModule server_;
    const wchar_t* scope_ = L"user";
};

void useGreeter()
{
    const tarn::Dispatch greeter(tarn::toGUID(greeterProgID), CLSCTX_INPROC_SERVER);
    std::cout << greeter.call(L"greet").toAString() << '\n';
    greeter.set(L"name", L"COM");
    std::cout << greeter.call(L"greet").toAString() << '\n';
    {
        const auto onEvent = [](DISPID event, const std::vector<tarn::Variant>& arguments) {
            if (event == greetedEvent)
                std::cout << "An event: " << arguments.at(0).toAString() << '\n';
            return tarn::Variant();
        };
        const tarn::EventConnection connection(greeter.getObject(), DIID_GreeterEvents, onEvent);
        greeter.call(L"greet");
    }
    std::cout << "Greetings so far: " << greeter.get(L"greetings").toLong() << '\n';
    try {
        greeter.set(L"name", L"");
    } catch (const std::exception& e) { // With what the server says.
        std::cout << e.what() << '\n';
    }
}
} // namespace

int main()
{
    try {
        const tarn::COMApartment com;
        const auto folder = tarn::WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameW().getDirectory();
        {
            const Registration registration((folder + L"\\com-server.dll").c_str());
            std::cout << "Registered for " << registration.audience() << " as " << tarn::toAString(CLSID_Greeter, true)
                      << '\n';
            useGreeter();
        }
        std::cout << (Registration::isVisible() ? "Still registered\n" : "Unregistered\n");
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    return 0;
}
