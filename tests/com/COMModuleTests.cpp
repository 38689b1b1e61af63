#include "Test.h"

#include "Apartment.h"
#include "Hearing.h"
#include "Persistent.h"

#include <tarn/COMModule.h>
#include <tarn/COMServer.h>
#include <tarn/GUID.h>
#include <tarn/Process.h>
#include <tarn/RegistryKey.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>
#include <tarn/WindowsModule.h>

#include <thread>

using Text = BasicString<wchar_t>;

namespace {
const Text classPath = L"CLSID\\" + toWString(CLSID_Persistent);
const Text userClassPath = L"Software\\Classes\\" + classPath;
const Text program = Text(L"Software\\Classes\\") + persistentProgID;
constexpr const wchar_t* otherProgID = L"Tarn.Other";
const COMModule::Class otherClass = {
    {0x2b1c7a04, 0x51de, 0x4a6b, {0x8f, 0x10, 0x3c, 0x92, 0x6e, 0x55, 0x01, 0xd8}}, nullptr, L"Other test object"};
const Text otherClassPath = L"Software\\Classes\\CLSID\\" + toWString(otherClass.clsid);

Text userText(const Text& path, const wchar_t* name = L"")
{
    return RegistryKey(HKEY_CURRENT_USER, path.c_str(), KEY_READ).getStringValue(name);
}

RegistryKey userKey(const Text& path) { return RegistryKey(HKEY_CURRENT_USER, path.c_str(), KEY_ALL_ACCESS); }

void setUserText(const Text& path, const wchar_t* name, const wchar_t* text)
{
    RegistryKey::createOwned(HKEY_CURRENT_USER, path.c_str(), KEY_WRITE).setValue(name, text);
}

Text folder() { return WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameW().getDirectory(); }

COMModule::Class persistentClass(COMModule::ThreadingModel threading)
{
    return {CLSID_Persistent, &Persistent::create, L"Persistent test object", threading, persistentProgID};
}

// The module of a DLL; any that is loaded will do.
HINSTANCE someDll() { return GetModuleHandleW(L"libstdc++-6.dll"); }

bool userHas(const Text& path) { return RegistryKey::existsKey(HKEY_CURRENT_USER, path.c_str()); }

// The classes of the current user, which are as they were afterwards.
struct UserClasses {
    UserClasses() { clear(); }
    ~UserClasses() { clear(); }
    static void clear()
    {
        for (const Text& path : {userClassPath, program, otherClassPath, Text(L"Software\\Classes\\Tarn.Other")}) {
            if (userHas(path))
                RegistryKey(HKEY_CURRENT_USER, false).deleteKeyRecursive(path.c_str());
        }
    }
};

void run(const Text& commandLine)
{
    const Process process(BasicString<char>(commandLine.c_str()).c_str(), 0);
    REQUIRE(process.wait(30000) == WindowsHandle::signaled);
    REQUIRE(process.getExitCode() == 0);
}
} // namespace

TEST_CASE("COMModule: hands out factories for the classes of its table")
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
    object = &module;
    CHECK((module.createClassFactory(CLSID_Persistent, IID_IPersist, &object) == E_NOINTERFACE && object == nullptr));
    CHECK(module.createClassFactory(CLSID_Persistent, IID_IClassFactory, nullptr) == E_POINTER);
    CHECK(module.canUnloadNow() == S_OK);
}

TEST_CASE("COMModule: registration writes its keys and unregistration removes just them")
{
    const UserClasses classes;
    const COMModule module(someDll(), {otherClass, persistentClass(COMModule::both)});
    const bool isType = GENERATE(false, true); // Or a type of files that has no class yet.
    if (isType)
        setUserText(program, L"", L"Type");
    module.registerServer(COMModule::user);
    CHECK(userText(userClassPath) == L"Persistent test object");
    CHECK(userText(userClassPath + L"\\InprocServer32") == WindowsModule(someDll()).getFilenameW());
    CHECK(userText(userClassPath + L"\\InprocServer32", L"ThreadingModel") == L"Both");
    CHECK(userText(userClassPath + L"\\ProgID") == persistentProgID);
    CHECK(userText(program) == (isType ? L"Type" : L"Persistent test object"));
    CHECK(userText(program + L"\\CLSID") == toWString(CLSID_Persistent));

    SECTION("nothing is left")
    {
        module.unregisterServer(COMModule::user);
        CHECK_FALSE((userHas(userClassPath) || userHas(otherClassPath)));
        CHECK((userHas(program) == isType && !userHas(program + L"\\CLSID")));
        CHECK_NOTHROW(module.unregisterServer(COMModule::user));
    }
    SECTION("what others put there stays, and stops no other class")
    {
        setUserText(userClassPath + L"\\InprocServer32", L"CodeBase", L"other");
        setUserText(userClassPath + L"\\InprocServer32\\sub", L"", L"other");
        setUserText(otherClassPath + L"\\InprocServer32", L"", L"other.dll");
        setUserText(program + L"\\CLSID", L"", L"{other}");
        setUserText(userClassPath, L"", L"Renamed");
        module.unregisterServer(COMModule::user);
        const RegistryKey server(HKEY_CURRENT_USER, (userClassPath + L"\\InprocServer32").c_str(), KEY_READ);
        CHECK((server.getValueCount() == 1 && server.existsKey(L"sub")));
        CHECK_FALSE(userHas(userClassPath + L"\\ProgID"));
        CHECK((userText(otherClassPath) == L"Other test object" && userText(userClassPath) == L"Renamed"));
        CHECK(userText(program + L"\\CLSID") == L"{other}");
    }
    SECTION("a program's entry and a DLL's live side by side")
    {
        const COMModule local(GetModuleHandleW(nullptr), {persistentClass(COMModule::both)});
        local.registerServer(COMModule::user);
        CHECK(userText(userClassPath + L"\\LocalServer32") ==
              L"\"" + WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameW() + L"\"");
        CHECK(userKey(userClassPath + L"\\LocalServer32").getValueCount() == 1);
        module.unregisterServer(COMModule::user);
        CHECK_FALSE(userHas(userClassPath + L"\\InprocServer32"));
        CHECK(userText(program + L"\\CLSID") == toWString(CLSID_Persistent));
        local.unregisterServer(COMModule::user);
        CHECK_FALSE((userHas(userClassPath) || userHas(program + L"\\CLSID")));
    }
    SECTION("a class that cannot be removed stops no other one")
    {
        COMModule::Class failing = otherClass;
        const Text tooLong(std::wstring(300, L'x')); // No key has such a name.
        failing.progID = tooLong.c_str();
        CHECK_THROWS_AS(
            COMModule(someDll(), {failing, persistentClass(COMModule::both)}).unregisterServer(COMModule::user),
            WindowsError);
        CHECK_FALSE(userHas(userClassPath));
    }
    SECTION("a model has its name, and none takes the former one away")
    {
        const auto models = {std::pair(COMModule::apartment, L"Apartment"),
                             {COMModule::free, L"Free"},
                             {COMModule::neutral, L"Neutral"}};
        for (const auto& [model, name] : models) {
            COMModule(someDll(), {persistentClass(model)}).registerServer(COMModule::user);
            CHECK(userText(userClassPath + L"\\InprocServer32", L"ThreadingModel") == name);
        }
        COMModule(someDll(), {persistentClass(COMModule::single)}).registerServer(COMModule::user);
        CHECK(userKey(userClassPath + L"\\InprocServer32").getValueCount() == 1);
    }
}

TEST_CASE("COMModule: a registration that fails leaves everything as it was")
{
    const UserClasses classes;
    const bool wasRegistered = GENERATE(false, true);
    if (wasRegistered)
        COMModule(someDll(), {persistentClass(COMModule::both)}).registerServer(COMModule::user);
    COMModule::Class renamed = persistentClass(COMModule::single), failing = otherClass;
    renamed.name = L"Renamed";
    const auto registering = [&] { COMModule(someDll(), {renamed, failing}).registerServer(COMModule::user); };
    SECTION("for a name that is missing")
    {
        failing.name = nullptr;
        expectWindowsError(registering, ERROR_INVALID_PARAMETER, "Can't register COM class without a name");
    }
    SECTION("for another's programmatic identifier")
    {
        failing.progID = otherProgID;
        setUserText(L"Software\\Classes\\Tarn.Other", L"", L"Other's");
        setUserText(L"Software\\Classes\\Tarn.Other\\CLSID", L"", toWString(IID_IDispatch).c_str());
        expectWindowsError(registering, ERROR_ALREADY_EXISTS,
                           "Programmatic identifier of COM class belongs to another class");
        CHECK(userText(L"Software\\Classes\\Tarn.Other") == L"Other's");
        CHECK(userText(L"Software\\Classes\\Tarn.Other\\CLSID") == toWString(IID_IDispatch));
    }
    CHECK((userHas(userClassPath) == wasRegistered && userHas(program) == wasRegistered));
    CHECK_FALSE(userHas(otherClassPath));
    if (wasRegistered) {
        CHECK(userText(userClassPath) == L"Persistent test object");
        CHECK(userText(userClassPath + L"\\InprocServer32", L"ThreadingModel") == L"Both");
    }
}

TEST_CASE("COMModule: getModule is the first that is alive")
{
    auto first = std::make_unique<COMModule>(someDll(), std::initializer_list<COMModule::Class>());
    const COMModule second(someDll(), {});
    CHECK(&COMModule::getModule() == first.get());
    first.reset();
    CHECK(&COMModule::getModule() == &second);
}

TEST_CASE("COMModule: registered class factories can be had until they are revoked")
{
    auto com = std::make_unique<Apartment>();
    COMModule module(someDll(), {persistentClass(COMModule::both)});
    const auto find = [] {
        COMInterfacePointer<IClassFactory> factory;
        CoGetClassObject(CLSID_Persistent, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.putVoid());
        return factory;
    };
    CHECK_FALSE(find());
    module.registerClassFactories(CLSCTX_INPROC_SERVER);
    module.registerClassFactories(CLSCTX_INPROC_SERVER); // Only once, all the same.
    CHECK((module.isIdle() && module.canUnloadNow() == S_FALSE));
    {
        COMInterfacePointer<IPersist> object;
        REQUIRE(find()->CreateInstance(nullptr, IID_IPersist, object.putVoid()) == S_OK);
        CHECK_FALSE(module.isIdle());
    }
    module.lock(true);
    CHECK_FALSE(module.isIdle());
    module.lock(false);
    CHECK(module.isIdle());
    module.revokeClassFactories();
    CHECK((!find() && module.canUnloadNow() == S_OK));
    PostQuitMessage(0);
    module.serve(60'000);
    CHECK(module.canUnloadNow() == S_OK);
    module.registerClassFactories(CLSCTX_INPROC_SERVER);
    com.reset(); // Which takes the class objects along.
    CHECK_THROWS_WITH(module.revokeClassFactories(), Catch::StartsWith("Can't revoke class object"));
    CHECK_NOTHROW(module.revokeClassFactories());
}

TEST_CASE("COMModule: what a window's handler throws ends the service and comes out of it")
{
    struct Failing : Window {
        void onCommand(Window*, unsigned short, unsigned short) override { throw std::logic_error("handler failed"); }
    };
    const Apartment com;
    const WindowClass windowClass(0, 0, nullptr, COLOR_WINDOW, nullptr, GetModuleHandleW(nullptr));
    Failing window;
    window.create(windowClass, L"", WS_POPUP, Rect(0, 0, 10, 10), nullptr, nullptr, nullptr);
    COMModule module(GetModuleHandleW(nullptr), {persistentClass(COMModule::both)});
    std::thread sender;
    SECTION("by a message that is dispatched") { window.postMessageW(WM_COMMAND); }
    SECTION("by one that another thread sends")
    {
        sender = std::thread([&] { SendMessageW(window, WM_COMMAND, 0, 0); });
    }
    expectError<std::logic_error>([&] { module.serve(60'000); }, "handler failed");
    if (sender.joinable())
        sender.join();
    CHECK(module.canUnloadNow() == S_OK);
}

TEST_CASE("COM server DLL: the system finds it, loads it and lets it go")
{
    const Apartment com;
    const WindowsModule dll((folder() + L"\\com_test_inproc.dll").c_str(), true);
    const auto call = [&](const char* name, auto... arguments) {
        const auto procedure = reinterpret_cast<void*>(dll.getProcAddress(name, false));
        return reinterpret_cast<HRESULT(STDAPICALLTYPE*)(decltype(arguments)...)>(procedure)(arguments...);
    };
    REQUIRE(call("DllRegisterServer") == S_OK);
    {
        const auto object = COMInterfacePointer<IPersist>::create(toGUID(persistentProgID));
        CHECK(call("DllCanUnloadNow") == S_FALSE);
    }
    CoFreeUnusedLibraries();
    CHECK(call("DllUnregisterServer") == S_OK);
    CHECK_FALSE(RegistryKey::existsKey(HKEY_CLASSES_ROOT, classPath.c_str()));
    CHECK(call("DllInstall", TRUE, L"nobody") == E_INVALIDARG);
    CHECK((call("DllInstall", TRUE, L"User") == S_OK && userHas(userClassPath)));
    CHECK((call("DllInstall", FALSE, L"user") == S_OK && !userHas(userClassPath)));
}

TEST_CASE("COMModule: a local server is started, serves, tells of errors and ends when it is idle")
{
    const Apartment com;
    const WindowsHandle ended(CreateEventW(nullptr, TRUE, FALSE, serverEndedEvent));
    const Text server = L"\"" + folder() + L"\\com_test_local.exe\"";
    run(server + L" -register");
    {
        const auto object = COMInterfacePointer<IPersist>::create(CLSID_Persistent, CLSCTX_LOCAL_SERVER);
        CLSID clsid = {};
        CHECK(object->GetClassID(&clsid) == S_OK);
        CHECK(clsid == CLSID_Persistent);
        checkErrorsOf(object.require<IDispatch>());
        CHECK(ended.wait(1000) == WindowsHandle::timeout);
    }
    CHECK(ended.wait(20000) == WindowsHandle::signaled);
    run(server + L" -unregister");
    CHECK_FALSE(RegistryKey::existsKey(HKEY_CLASSES_ROOT, classPath.c_str()));
}
