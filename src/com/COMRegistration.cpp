#include <tarn/COMModule.h>
#include <tarn/COMServer.h>
#include <tarn/GUID.h>
#include <tarn/RegistryKey.h>
#include <tarn/WindowsModule.h>

namespace tarn {
namespace {
using Text = BasicString<wchar_t>;

constexpr const wchar_t* inProcessServerKey = L"InprocServer32";
constexpr const wchar_t* localServerKey = L"LocalServer32";

RegistryKey createKey(HKEY parent, const wchar_t* path)
{
    RegistryKey key;
    key.create(parent, path, KEY_READ | KEY_WRITE);
    key.attach(key.detach(), true);
    return key;
}

RegistryKey classesOf(COMModule::Scope scope)
{
    return createKey(scope == COMModule::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, L"Software\\Classes");
}

// Null for the model that is expressed by having none.
const wchar_t* threadingName(COMModule::ThreadingModel model)
{
    switch (model) {
    case COMModule::apartment:
        return L"Apartment";
    case COMModule::free:
        return L"Free";
    case COMModule::both:
        return L"Both";
    case COMModule::neutral:
        return L"Neutral";
    default:
        return nullptr;
    }
}

Text classPath(const COMModule::Class& c) { return L"CLSID\\" + toWString(c.clsid); }

void write(const RegistryKey& classes, const COMModule::Class& c, const wchar_t* serverKey, const Text& server)
{
    const RegistryKey key = createKey(classes, classPath(c));
    key.setValue(L"", c.name);
    const RegistryKey serverEntry = createKey(key, serverKey);
    serverEntry.setValue(L"", server.c_str());
    if (const wchar_t* threading = threadingName(c.threading))
        serverEntry.setValue(L"ThreadingModel", threading);
    if (!c.progID)
        return;
    createKey(key, L"ProgID").setValue(L"", c.progID);
    const RegistryKey program = createKey(classes, c.progID);
    program.setValue(L"", c.name);
    createKey(program, L"CLSID").setValue(L"", toWString(c.clsid).c_str());
}

// Deletes the subkeys that exist, then the key itself unless something else is left in it.
void remove(const RegistryKey& classes, const wchar_t* path, std::initializer_list<const wchar_t*> subkeys)
{
    RegistryKey key;
    if (!key.open(classes, path, KEY_READ | KEY_WRITE))
        return;
    for (const wchar_t* subkey : subkeys) {
        if (key.existsKey(subkey))
            key.deleteKey(subkey);
    }
    const bool isOthers = key.hasSubkeys() || key.getValueCount() > (key.existsValue(L"") ? 1u : 0u);
    key.close();
    if (!isOthers)
        classes.deleteKey(path);
}

bool standsFor(const RegistryKey& classes, const wchar_t* progID, const GUID& clsid)
{
    RegistryKey key;
    return key.open(classes, (Text(progID) + L"\\CLSID").c_str(), KEY_READ) && key.existsValue(L"") &&
           key.getStringValue(L"") == toWString(clsid);
}

void remove(const RegistryKey& classes, const COMModule::Class& c, const wchar_t* serverKey)
{
    const Text path = classPath(c);
    RegistryKey key;
    if (key.open(classes, path.c_str(), KEY_READ | KEY_WRITE)) {
        if (key.existsKey(serverKey))
            key.deleteKey(serverKey);
        const bool hasOtherServer = key.existsKey(inProcessServerKey) || key.existsKey(localServerKey);
        key.close();
        if (hasOtherServer)
            return;
    }
    if (c.progID && standsFor(classes, c.progID, c.clsid))
        remove(classes, c.progID, {L"CLSID"});
    remove(classes, path.c_str(), {L"ProgID"});
}
} // namespace

bool COMModule::isProgram() const { return instance_ == GetModuleHandleW(nullptr); }

void COMModule::registerServer(Scope scope) const
{
    Text server = WindowsModule(instance_).getFilenameW();
    if (isProgram())
        server = L"\"" + server + L"\"";
    const RegistryKey classes = classesOf(scope);
    try {
        for (const Class& c : classes_)
            write(classes, c, isProgram() ? localServerKey : inProcessServerKey, server);
    } catch (...) {
        try {
            unregisterServer(scope);
        } catch (...) { // The first failure is the one to report.
        }
        throw;
    }
}

void COMModule::unregisterServer(Scope scope) const
{
    const RegistryKey classes = classesOf(scope);
    for (const Class& c : classes_)
        remove(classes, c, isProgram() ? localServerKey : inProcessServerKey);
}

HRESULT registerCOMServer(const COMModule& module, bool install, const wchar_t* scope) noexcept
{
    const bool forUser = scope && StringHelper<wchar_t>::icmp(scope, L"user") == 0;
    if (scope && *scope && !forUser)
        return E_INVALIDARG;
    return asHRESULT([&] {
        const COMModule::Scope where = forUser ? COMModule::user : COMModule::machine;
        if (install)
            module.registerServer(where);
        else
            module.unregisterServer(where);
    });
}
} // namespace tarn
