#include "Apartment.h"
#include "Expect.h"
#include "Persistent.h"

#include <tarn/COMModule.h>
#include <tarn/COMServer.h>
#include <tarn/GUID.h>
#include <tarn/Process.h>
#include <tarn/RegistryKey.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>
#include <tarn/WindowsModule.h>

#include <stdexcept>
#include <thread>

using support::CLSID_Persistent;
using support::Persistent;
using tarn::COMInterfacePointer;
using tarn::COMModule;
using tarn::RegistryKey;
using Text = tarn::BasicString<wchar_t>;

namespace {
const Text classPath = L"CLSID\\" + tarn::toWString(CLSID_Persistent);
const Text userClassPath = L"Software\\Classes\\" + classPath;

Text userText(const Text& path, const wchar_t* name = L"")
{
    return RegistryKey(HKEY_CURRENT_USER, path.c_str(), KEY_READ).getStringValue(name);
}

Text folder() { return tarn::WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameW().getDirectory(); }

COMModule::Class persistentClass(COMModule::ThreadingModel threading)
{
    return {CLSID_Persistent, &Persistent::create, L"Persistent test object", threading, support::persistentProgID};
}

// The module of a DLL; any that is loaded will do.
HINSTANCE someDll() { return GetModuleHandleW(L"Tarn++U.dll"); }

bool userHas(const Text& path) { return RegistryKey::existsKey(HKEY_CURRENT_USER, path.c_str()); }

void run(const Text& commandLine)
{
    const tarn::Process process(tarn::BasicString<char>(commandLine.c_str()).c_str(), 0);
    REQUIRE(process.wait(30000) == tarn::WindowsHandle::signaled);
    REQUIRE(process.getExitCode() == 0);
}
} // namespace

TEST_CASE("COMModule: hands out factories for the classes of its table", "[com][module]")
{
    COMModule module(someDll(), {persistentClass(COMModule::both)});
    {
        COMInterfacePointer<IClassFactory> factory;
        REQUIRE(module.createClassFactory(CLSID_Persistent, IID_IClassFactory, factory.putVoid()) == S_OK);
        COMInterfacePointer<IPersist> made;
        CHECK(factory->CreateInstance(nullptr, IID_IPersist, made.putVoid()) == S_OK);
    }
    void* object = &module;
    CHECK(module.createClassFactory(IID_IUnknown, IID_IClassFactory, &object) == CLASS_E_CLASSNOTAVAILABLE);
    CHECK(object == nullptr);
    CHECK(module.createClassFactory(CLSID_Persistent, IID_IPersist, &object) == E_NOINTERFACE);
    CHECK(module.createClassFactory(CLSID_Persistent, IID_IClassFactory, nullptr) == E_POINTER);
    CHECK(module.canUnloadNow() == S_OK);
}

TEST_CASE("COMModule: registration writes its keys and unregistration removes just them", "[com][module]")
{
    const COMModule module(someDll(), {persistentClass(COMModule::both)});
    const Text program = Text(L"Software\\Classes\\") + support::persistentProgID;
    module.registerServer(COMModule::user);
    CHECK(userText(userClassPath) == L"Persistent test object");
    CHECK(userText(userClassPath + L"\\InprocServer32") == tarn::WindowsModule(someDll()).getFilenameW());
    CHECK(userText(userClassPath + L"\\InprocServer32", L"ThreadingModel") == L"Both");
    CHECK(userText(userClassPath + L"\\ProgID") == support::persistentProgID);
    CHECK(userText(program) == L"Persistent test object");
    CHECK(userText(program + L"\\CLSID") == tarn::toWString(CLSID_Persistent));

    SECTION("nothing is left")
    {
        module.unregisterServer(COMModule::user);
        CHECK_FALSE((userHas(userClassPath) || userHas(program)));
        CHECK_NOTHROW(module.unregisterServer(COMModule::user));
    }
    SECTION("what others put there stays")
    {
        RegistryKey(HKEY_CURRENT_USER, userClassPath.c_str(), KEY_WRITE).setValue(L"AppID", L"other");
        RegistryKey(HKEY_CURRENT_USER, (program + L"\\CLSID").c_str(), KEY_WRITE).setValue(L"", L"{other}");
        module.unregisterServer(COMModule::user);
        CHECK(userText(userClassPath, L"AppID") == L"other");
        CHECK_FALSE((userHas(userClassPath + L"\\InprocServer32") || userHas(userClassPath + L"\\ProgID")));
        CHECK(userText(program + L"\\CLSID") == L"{other}");
        const RegistryKey classes(HKEY_CURRENT_USER, L"Software\\Classes", KEY_ALL_ACCESS);
        classes.deleteKeyRecursive(classPath.c_str());
        classes.deleteKeyRecursive(support::persistentProgID);
    }
    SECTION("a program's entry and a DLL's live side by side")
    {
        const COMModule local(GetModuleHandleW(nullptr), {persistentClass(COMModule::single)});
        local.registerServer(COMModule::user);
        CHECK(userText(userClassPath + L"\\LocalServer32").startsWith(L"\""));
        module.unregisterServer(COMModule::user);
        CHECK_FALSE(userHas(userClassPath + L"\\InprocServer32"));
        CHECK(userText(program + L"\\CLSID") == tarn::toWString(CLSID_Persistent));
        local.unregisterServer(COMModule::user);
        CHECK_FALSE((userHas(userClassPath) || userHas(program)));
    }
}

TEST_CASE("COMModule: registered class factories can be had until they are revoked", "[com][module]")
{
    const support::Apartment com;
    COMModule module(someDll(), {persistentClass(COMModule::both)});
    const auto find = [] {
        COMInterfacePointer<IClassFactory> factory;
        CoGetClassObject(CLSID_Persistent, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.putVoid());
        return factory;
    };
    CHECK_FALSE(find());
    module.registerClassFactories(CLSCTX_INPROC_SERVER);
    CHECK((module.isIdle() && module.canUnloadNow() == S_FALSE));
    {
        COMInterfacePointer<IPersist> object;
        REQUIRE(find()->CreateInstance(nullptr, IID_IPersist, object.putVoid()) == S_OK);
        CHECK_FALSE(module.isIdle());
    }
    CHECK(module.isIdle());
    module.revokeClassFactories();
    CHECK((!find() && module.canUnloadNow() == S_OK));
}

TEST_CASE("COMModule: what a window's handler throws ends the service and comes out of it", "[com][module]")
{
    struct Failing : tarn::Window {
        void onCommand(Window*, unsigned short, unsigned short) override { throw std::logic_error("handler failed"); }
    };
    const support::Apartment com;
    const tarn::WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, GetModuleHandleW(nullptr));
    Failing window;
    window.create(windowClass, L"", WS_POPUP, tarn::Rect(0, 0, 10, 10), nullptr, nullptr, nullptr);
    COMModule module(GetModuleHandleW(nullptr), {persistentClass(COMModule::both)});
    std::thread sender;
    SECTION("by a message that is dispatched") { window.postMessageW(WM_COMMAND); }
    SECTION("by one that another thread sends")
    {
        sender = std::thread([&] { SendMessageW(window, WM_COMMAND, 0, 0); });
    }
    support::expectError<std::logic_error>([&] { module.serve(60'000); }, "handler failed");
    if (sender.joinable())
        sender.join();
    CHECK(module.canUnloadNow() == S_OK);
}

TEST_CASE("COM server DLL: the system finds it, loads it and lets it go", "[com][server]")
{
    const support::Apartment com;
    const tarn::WindowsModule dll((folder() + L"\\com_test_inproc.dll").c_str(), true);
    const auto call = [&](const char* name, auto... arguments) {
        const auto procedure = reinterpret_cast<void*>(dll.getProcAddress(name, false));
        return reinterpret_cast<HRESULT(STDAPICALLTYPE*)(decltype(arguments)...)>(procedure)(arguments...);
    };
    REQUIRE(call("DllRegisterServer") == S_OK);
    {
        const auto object = COMInterfacePointer<IPersist>::create(tarn::toGUID(support::persistentProgID));
        CHECK(call("DllCanUnloadNow") == S_FALSE);
    }
    CoFreeUnusedLibraries();
    CHECK(call("DllUnregisterServer") == S_OK);
    CHECK_FALSE(RegistryKey::existsKey(HKEY_CLASSES_ROOT, classPath.c_str()));
    CHECK(call("DllInstall", TRUE, L"nobody") == E_INVALIDARG);
    CHECK((call("DllInstall", TRUE, L"User") == S_OK && userHas(userClassPath)));
    CHECK((call("DllInstall", FALSE, L"user") == S_OK && !userHas(userClassPath)));
}

TEST_CASE("COMModule: a local server is started, serves and ends when it is idle", "[com][server]")
{
    const support::Apartment com;
    const tarn::WindowsHandle ended(CreateEventW(nullptr, TRUE, FALSE, support::serverEndedEvent));
    const Text server = L"\"" + folder() + L"\\com_test_local.exe\"";
    run(server + L" -register");
    {
        const auto object = COMInterfacePointer<IPersist>::create(CLSID_Persistent, CLSCTX_LOCAL_SERVER);
        CLSID clsid = {};
        CHECK(object->GetClassID(&clsid) == S_OK);
        CHECK(clsid == CLSID_Persistent);
        CHECK(ended.wait(1000) == tarn::WindowsHandle::timeout);
    }
    CHECK(ended.wait(20000) == tarn::WindowsHandle::signaled);
    run(server + L" -unregister");
    CHECK_FALSE(RegistryKey::existsKey(HKEY_CLASSES_ROOT, classPath.c_str()));
}
