#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Factory.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <initializer_list>
#include <vector>

namespace tarn {
/// The COM server that a DLL or program is: its table of classes, their class objects and their entries in
/// the registry. A DLL gets its module and its exported functions in one line from COMServer.h; a program
/// makes one object of this class and calls serve().
///
/// The object lives as long as its DLL or program. Failures throw COMError, WindowsError or BadAllocation.
class TARN_API COMModule : private boost::noncopyable {
public:
    /// The platform's threading models: `single` writes none, the others their name ("Apartment", "Free", "Both",
    /// "Neutral").
    enum ThreadingModel { single, apartment, free, both, neutral };
    /// Where registration writes: for all users, which takes an administrator, or for the current one.
    enum Scope { machine, user };

    /// A line of the table. The texts are not copied: give literals.
    struct Class {
        /// By which programs ask for the class.
        GUID clsid;
        /// Makes an object of it; never null.
        Factory::Creator creator;
        /// For people; shown by tools and never looked up. Never null.
        const wchar_t* name;
        /// Only in-process servers have one.
        ThreadingModel threading = apartment;
        /// By which scripts create objects, "Company.Thing"; may be missing.
        const wchar_t* progID = nullptr;
    };

    /// `instance` is the DLL or program that serves the classes.
    COMModule(HINSTANCE instance, std::initializer_list<Class> classes);
    /// Revokes what is still registered; a failure is dropped.
    ~COMModule();

    /// The first module of the process that is alive; one without classes if there is none.
    static COMModule& getModule();

    /// Hands out a new factory for the class: what a DLL's DllGetClassObject does. Never throws: a class
    /// that is not in the table is `CLASS_E_CLASSNOTAVAILABLE`, and `*object` is null after any failure.
    HRESULT createClassFactory(const GUID& clsid, const GUID& iid, void** object) noexcept;

    /// Keeps the module loaded, or no longer does. Throws COMError(`E_UNEXPECTED`) when there is no lock
    /// to take away.
    void lock(bool lock);
    /// Of lock() and of IClassFactory::LockServer.
    long getLockCount() const { return lockCount_; }
    /// `S_OK` or, while any object of the process's servers lives or this module is locked, `S_FALSE`.
    HRESULT canUnloadNow() const;
    /// No locks, and no objects besides the factories that registerClassFactories made: time for a local
    /// server to go.
    bool isIdle() const;

    /// Offers the classes to other processes, or with `CLSCTX_INPROC_SERVER` to this one only. Takes the
    /// context and the flags of `CoRegisterClassObject`. Throws "Can't register class object", and nothing
    /// is registered then.
    void registerClassFactories(unsigned long context = CLSCTX_LOCAL_SERVER, unsigned long flags = REGCLS_MULTIPLEUSE);
    /// Revokes them all, then throws "Can't revoke class object" if one failed.
    void revokeClassFactories();

    /// The life of a local server, on a thread that has initialised COM: offers the classes, dispatches
    /// messages, and returns when the module was idle for `idleMs` or on `WM_QUIT`. What the handler of a
    /// Window throws meanwhile comes out of it, and the classes are revoked then, too.
    void serve(unsigned idleMs = 5000);

    /// Writes the entries by which the system finds the classes: below "CLSID" the name and the path of
    /// this DLL ("InprocServer32", with its threading model) or program ("LocalServer32"), and the
    /// programmatic identifiers. A registration that fails leaves everything as it was before. Throws "Can't
    /// register COM class without a name" with `ERROR_INVALID_PARAMETER` for a null name, and with
    /// `ERROR_ALREADY_EXISTS` "Programmatic identifier of COM class belongs to another class"; the
    /// description of a programmatic identifier that leads to no class yet stays as it is.
    void registerServer(Scope scope = machine) const;
    /// Removes what registerServer writes and nothing else: values that others wrote or changed stay, with
    /// their keys, and so does a class that another file serves now. Entries that are missing are no error.
    /// All classes are gone through before the first failure is thrown.
    void unregisterServer(Scope scope = machine) const;

private:
    COMModule() = default;
    bool isProgram() const;
    BasicString<wchar_t> serverText() const;

    COMModule* next_ = nullptr; // Of the modules that are alive, in the order of their making.
    HINSTANCE instance_ = nullptr;
    std::vector<Class> classes_;
    std::vector<unsigned long> registrations_;
    long lockCount_ = 0;
};
} // namespace tarn
