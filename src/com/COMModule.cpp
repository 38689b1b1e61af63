#include <tarn/COMModule.h>

#include <tarn/Window.h>

#include "../foundation/Closing.h"
#include "../foundation/NullIdentifier.h"
#include "../foundation/Throw.h"
#include "../windowing/MessageQueue.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tarn {
namespace {
COMModule* firstModule = nullptr;
SRWLOCK modulesLock = SRWLOCK_INIT; // Ready before any static object of a server is made.

class ModulesLock : private boost::noncopyable {
public:
    ModulesLock() { AcquireSRWLockExclusive(&modulesLock); }
    ~ModulesLock() { ReleaseSRWLockExclusive(&modulesLock); }
};

// Locks the module that made it, which matters where several servers share a process.
class ModuleFactory final : public Factory {
public:
    ModuleFactory(Creator creator, COMModule& module) : Factory(creator), module_(&module) {}

    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override
    {
        return asHRESULT([&] { module_->lock(lock != FALSE); });
    }

private:
    COMModule* module_;
};

// Handles waiting messages, at most `timeoutMs` later; false on WM_QUIT. Throws what a handler throws.
bool dispatchMessages(DWORD timeoutMs)
{
    MsgWaitForMultipleObjectsEx(0, nullptr, timeoutMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    MSG message;
    while (takeMessage(message, nullptr, 0, 0)) {
        if (message.message == WM_QUIT)
            return false;
        TranslateMessage(&message);
        Window::dispatchMessage(message);
    }
    return true;
}

void dispatchUntilIdle(const COMModule& module, unsigned idleMs)
{
    constexpr DWORD longestWaitMs = 250; // Objects may come and go on other threads, without a message.
    ULONGLONG idleSince = GetTickCount64();
    while (dispatchMessages(std::min<DWORD>(idleMs, longestWaitMs))) {
        if (!module.isIdle()) {
            idleSince = GetTickCount64();
        } else if (GetTickCount64() - idleSince >= idleMs) {
            CoSuspendClassObjects(); // From here on a new client starts a server of its own.
            if (module.isIdle())
                break;
            CoResumeClassObjects();
        }
    }
}
} // namespace

COMModule::COMModule(HINSTANCE instance, std::initializer_list<Class> classes) : instance_(instance), classes_(classes)
{
    const ModulesLock lock;
    COMModule** end = &firstModule;
    while (*end)
        end = &(*end)->next_;
    *end = this;
}

COMModule::~COMModule()
{
    // COM may have ended before the module, and taken the class objects with it.
    closeQuietly([this] { revokeClassFactories(); });
    const ModulesLock lock;
    for (COMModule** module = &firstModule; *module; module = &(*module)->next_) {
        if (*module == this) {
            *module = next_;
            break;
        }
    }
}

COMModule& COMModule::getModule()
{
    static COMModule withoutClasses;
    const ModulesLock lock;
    return firstModule ? *firstModule : withoutClasses;
}

HRESULT COMModule::createClassFactory(const GUID& clsid, const GUID& iid, void** object) noexcept
{
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (isNull(clsid) || isNull(iid))
        return E_POINTER;
    return asHRESULT([&] {
        const auto found = std::ranges::find_if(classes_, [&](const Class& c) { return c.clsid == clsid; });
        if (found == classes_.end())
            return CLASS_E_CLASSNOTAVAILABLE;
        auto factory = std::make_unique<ModuleFactory>(found->creator, *this);
        const HRESULT hr = factory->internalQueryInterface(iid, object);
        if (SUCCEEDED(hr))
            factory.release(); // The reference handed out owns it now.
        return hr;
    });
}

void COMModule::lock(bool lock)
{
    if (lock)
        InterlockedIncrement(&lockCount_);
    else if (lockCount_ == 0)
        throwError(COMError(static_cast<unsigned long>(E_UNEXPECTED)));
    else
        InterlockedDecrement(&lockCount_);
}

HRESULT COMModule::canUnloadNow() const
{
    return IUnknownImpl::getInstanceCount() != 0 || lockCount_ > 0 ? S_FALSE : S_OK;
}

bool COMModule::isIdle() const { return IUnknownImpl::getInstanceCount() <= registrations_.size() && lockCount_ == 0; }

void COMModule::registerClassFactories(unsigned long context, unsigned long flags)
{
    revokeClassFactories();
    registrations_.reserve(classes_.size());
    try {
        for (const Class& c : classes_) {
            const COMInterfacePointer<IUnknown> factory(&(new ModuleFactory(c.creator, *this))->getUnknown());
            DWORD registration = 0;
            HRESULTHolder::throwOnError(CoRegisterClassObject(c.clsid, factory, context, flags, &registration),
                                        "Can't register class object");
            registrations_.push_back(registration);
        }
    } catch (...) {
        for (const unsigned long registration : std::exchange(registrations_, {}))
            CoRevokeClassObject(registration);
        throw;
    }
}

void COMModule::revokeClassFactories()
{
    HRESULT failure = S_OK;
    for (const unsigned long registration : std::exchange(registrations_, {})) {
        const HRESULT hr = CoRevokeClassObject(registration);
        if (FAILED(hr))
            failure = hr;
    }
    HRESULTHolder::throwOnError(failure, "Can't revoke class object");
}

void COMModule::serve(unsigned idleMs)
{
    registerClassFactories();
    try {
        dispatchUntilIdle(*this, idleMs);
    } catch (...) {
        try {
            revokeClassFactories();
        } catch (...) { // What has ended the service says more.
        }
        throw;
    }
    revokeClassFactories();
}
} // namespace tarn
