#include <tarn/COMModule.h>
#include <tarn/COMServer.h>
#include <tarn/GUID.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>
#include <tarn/WindowsModule.h>

#include "../foundation/Check.h"
#include "../registry/RegistryChanges.h"

#include <exception>

namespace tarn {
namespace {
using Text = BasicString<wchar_t>;
using Value = RegistryValue<wchar_t>;

constexpr const wchar_t* inProcessServerKey = L"InprocServer32";
constexpr const wchar_t* localServerKey = L"LocalServer32";

constexpr const wchar_t* classesPath = L"Software\\Classes";
HKEY rootOf(COMModule::Scope scope) { return scope == COMModule::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

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
bool hasProgID(const COMModule::Class& c) { return c.progID && *c.progID; }

bool isSame(const Text& a, const Text& b) { return StringHelper<wchar_t>::icmp(a.c_str(), b.c_str()) == 0; }

// False without such a key or value, or when it is no text.
bool readText(HKEY parent, const Text& path, const wchar_t* name, Text& text)
{
    RegistryKey key;
    RegistryValue<wchar_t> value;
    if (!key.open(parent, path.c_str(), KEY_READ) || !key.getValue(name, value) ||
        (value.getType() != REG_SZ && value.getType() != REG_EXPAND_SZ))
        return false;
    text = value.getString();
    return true;
}

// Whether the programmatic identifier leads to this class or, as `otherwise` says, to none.
bool standsFor(HKEY classes, const COMModule::Class& c, bool otherwise)
{
    Text clsid;
    return readText(classes, Text(c.progID) + L"\\CLSID", L"", clsid) && !clsid.empty()
               ? isSame(clsid, toWString(c.clsid))
               : otherwise;
}

void write(RegistryChanges& changes, const RegistryKey& classes, const COMModule::Class& c, const wchar_t* serverKey,
           const Text& server, const wchar_t* threading)
{
    if (!c.name)
        throwWindowsError(ERROR_INVALID_PARAMETER, "Can't register COM class without a name");
    const RegistryKey key = changes.createKey(classes, classPath(c));
    changes.setValue(key, L"", Value(c.name));
    const RegistryKey serverEntry = changes.createKey(key, serverKey);
    changes.setValue(serverEntry, L"", Value(server));
    if (threading)
        changes.setValue(serverEntry, L"ThreadingModel", Value(threading));
    else
        changes.deleteValue(serverEntry, L"ThreadingModel");
    if (!hasProgID(c))
        return;
    if (!standsFor(classes, c, true))
        throwWindowsError(ERROR_ALREADY_EXISTS, "Programmatic identifier of COM class belongs to another class");
    changes.setValue(changes.createKey(key, L"ProgID"), L"", Value(c.progID));
    const RegistryKey program = changes.createKey(classes, c.progID);
    if (standsFor(classes, c, false) || !program.existsValue(L"")) // The text of a type of files stays.
        changes.setValue(program, L"", Value(c.name));
    changes.setValue(changes.createKey(program, L"CLSID"), L"", Value(toWString(c.clsid)));
}

// Deletes the default text of a key, if it is this one, and the key if nothing else is left in it.
void removeText(const RegistryKey& parent, const Text& path, const Text& text)
{
    RegistryKey key;
    if (!key.open(parent, path.c_str(), KEY_READ | KEY_WRITE))
        return;
    if (Text found; readText(key, L"", L"", found) && isSame(found, text))
        key.deleteValue(L"");
    const bool isEmpty = !key.hasSubkeys() && key.getValueCount() == 0;
    key.close();
    if (isEmpty)
        parent.deleteKey(path.c_str());
}

// False when another file serves the class.
bool removeServer(const RegistryKey& key, const wchar_t* serverKey, const Text& server)
{
    if (Text registered; readText(key, serverKey, L"", registered)) {
        if (!isSame(registered, server))
            return false;
        const RegistryKey entry(key, serverKey, KEY_READ | KEY_WRITE);
        if (entry.existsValue(L"ThreadingModel"))
            entry.deleteValue(L"ThreadingModel");
        removeText(key, serverKey, server);
    }
    Text other;
    return !readText(key, inProcessServerKey, L"", other) && !readText(key, localServerKey, L"", other);
}

void remove(const RegistryKey& classes, const COMModule::Class& c, const wchar_t* serverKey, const Text& server)
{
    const Text path = classPath(c), name = c.name;
    RegistryKey key;
    if (key.open(classes, path.c_str(), KEY_READ | KEY_WRITE) && !removeServer(key, serverKey, server))
        return;
    if (hasProgID(c) && standsFor(classes, c, false)) {
        removeText(classes, Text(c.progID) + L"\\CLSID", toWString(c.clsid));
        removeText(classes, c.progID, name);
    }
    if (!key.isOpen())
        return;
    if (hasProgID(c))
        removeText(key, L"ProgID", c.progID);
    key.close();
    removeText(classes, path, name);
}
} // namespace

bool COMModule::isProgram() const
{
    return instance_ == ensure(GetModuleHandleW(nullptr), "Can't get module handle of the program");
}

BasicString<wchar_t> COMModule::serverText() const
{
    const Text file = WindowsModule(instance_).getFilenameW();
    return isProgram() ? Text(L"\"" + file + L"\"") : file;
}

void COMModule::registerServer(Scope scope) const
{
    const Text server = serverText();
    RegistryChanges changes;
    const RegistryKey classes = changes.createKey(RegistryKey(rootOf(scope), false), classesPath);
    for (const Class& c : classes_)
        write(changes, classes, c, isProgram() ? localServerKey : inProcessServerKey, server,
              isProgram() ? nullptr : threadingName(c.threading));
    changes.keep();
}

void COMModule::unregisterServer(Scope scope) const
{
    const Text server = serverText();
    RegistryKey classes;
    if (!classes.open(rootOf(scope), classesPath, KEY_READ | KEY_WRITE))
        return;
    std::exception_ptr failure;
    for (const Class& c : classes_) {
        try {
            remove(classes, c, isProgram() ? localServerKey : inProcessServerKey, server);
        } catch (...) {
            failure = failure ? failure : std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
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
