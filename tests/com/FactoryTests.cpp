#include "Test.h"

#include "Persistent.h"

#include <tarn/COMApartment.h>
#include <tarn/COMModule.h>
#include <tarn/Factory.h>

#include <thread>

namespace {
// Takes and releases a reference while it is being destroyed, as a call-back to an owner would.
struct Restless : IUnknownImpl {
    Restless() : IUnknownImpl(nullptr) {}
    ~Restless() override
    {
        ++destroyed;
        internalAddRef();
        internalRelease();
    }
    static inline int destroyed = 0;
};

// Throws while it is asked for an interface.
struct Failing : IUnknownImpl {
    explicit Failing(IUnknown* outer) : IUnknownImpl(outer) {}
    static IUnknownImpl* create(IUnknown* outer) { return new Failing(outer); }
    void* queryInterface(const GUID&) override { throw WindowsError(ERROR_ACCESS_DENIED); }
};

// Hands out the interface of what it aggregates.
struct Outer : IUnknown {
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    unsigned long references = 1;
};

HRESULT create(Factory::Creator creator, const IID& iid, void** object, IUnknown* outer = nullptr)
{
    return COMInterfacePointer<IClassFactory>(new Factory(creator))->CreateInstance(outer, iid, object);
}
} // namespace

TEST_CASE("IUnknownImpl: references are counted and the last release destroys once")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    auto* const object = new Restless;
    CHECK(IUnknownImpl::getInstanceCount() == before + 1);
    CHECK((object->internalAddRef() == 1 && object->internalAddRef() == 2));
    CHECK((object->internalRelease() == 1 && object->internalRelease() == 0));
    CHECK((Restless::destroyed == 1 && IUnknownImpl::getInstanceCount() == before));
}

TEST_CASE("IUnknownImpl: a query counts, refuses and reports without touching the pointer")
{
    COMInterfacePointer<IPersist> object(new Persistent(nullptr));
    int untouched = 0;
    void* found = &untouched;
    CHECK((object->QueryInterface(IID_IDispatch, &found) == E_NOINTERFACE && found == &untouched));
    CHECK(object->QueryInterface(IID_IPersist, nullptr) == E_POINTER);
    CHECK((object.as<IPersist>() == object && !object.as<IDispatch>()));
    COMInterfacePointer<IUnknown> base = object, moved = COMInterfacePointer<IPersist>(object);
    CHECK((base == moved && (moved = nullptr, base = std::move(object), !object && base.as<IPersist>())));
    object = base.as<IPersist>();
    CHECK((object && object == object.get() && object != nullptr && object.as<IUnknown>() != nullptr));
    struct Nameless : IPersist {}; // Has no identifier of its own.
    CHECK((object.as<Nameless>(IID_IPersist) == object && !object.as<Nameless>(IID_IDispatch)));
    CHECK(object.require<Nameless>(IID_IPersist) == object);
    expectError<COMError>([&] { object.require<IDispatch>(); },
                          std::string("Can't get COM interface: HRESULT value 80004002"));

    Failing failing(nullptr);
    CHECK(failing.internalQueryInterface(IID_IUnknown, &found) == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

namespace {
// Fails with an error whose text the code page cannot hold, and tells its clients, if asked to.
template <class... Told> struct Complaining : Persistent, SupportErrorInfo<Told...> {
    explicit Complaining(std::function<void()> method) : Persistent(nullptr), fail(std::move(method)) {}
    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return asHRESULT(fail); }
    void* queryInterface(const GUID& iid) override
    {
        return iid == IID_ISupportErrorInfo ? static_cast<ISupportErrorInfo*>(this) : Persistent::queryInterface(iid);
    }
    std::function<void()> fail;
};

template <class Error, class... Told> std::wstring toldOf(std::function<void()> method)
{
    const COMInterfacePointer<IPersist> object(new Complaining<Told...>(std::move(method)));
    CLSID clsid;
    object.throwOnError(S_OK, "nothing");
    return whatW(thrownBy<Error>([&] { object.throwOnError(object->GetClassID(&clsid), "Can't ask"); }));
}
} // namespace

TEST_CASE("asHRESULT: the text of an exception arrives at the client")
{
    std::thread([model = GENERATE(COMApartment::singleThreaded, COMApartment::multiThreaded)] {
        const COMApartment com(model);
        const std::wstring failed = whatW(COMError(static_cast<unsigned long>(E_FAIL)));
        const auto fail = [] { throw COMError(0x80040123, errorText(L"The plan \x4E2D is locked")); };
        CHECK(toldOf<COMError, IPersist>(fail) == L"Can't ask: The plan \x4E2D is locked: HRESULT value 80040123");
        CHECK(toldOf<COMError, IPersist>([] { throw std::runtime_error("Too late"); }) ==
              L"Can't ask: Too late: " + failed);
        const std::wstring reason = whatW(WindowsError(ERROR_ACCESS_DENIED));
        CHECK(toldOf<WindowsError, IPersist>([] { throw WindowsError(ERROR_ACCESS_DENIED, "No key"); }) ==
              L"Can't ask: No key: " + reason);
        CHECK(toldOf<BadAllocation, IPersist>([] { throw std::bad_alloc(); }) == L"bad allocation");
        CHECK(toldOf<COMError, IDispatch>(fail) == L"Can't ask: HRESULT value 80040123"); // Of another interface.
        CHECK(toldOf<COMError, IPersist>([] { throw 1; }) == L"Can't ask: " + failed);    // Not the last.
    }).join();
}

TEST_CASE("Factory: a new object has one reference, and every failure is a result and leaves none")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    IPersist* made = nullptr;
    REQUIRE(create(&Persistent::create, IID_IPersist, reinterpret_cast<void**>(&made)) == S_OK);
    CHECK(IUnknownImpl::getInstanceCount() == before + 1);
    CHECK(made->Release() == 0);
    const auto& [creator, expected] = GENERATE(table<Factory::Creator, HRESULT>({
        {&Persistent::create, E_NOINTERFACE},
        {&Failing::create, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)},
        {[](IUnknown*) -> IUnknownImpl* { return nullptr; }, E_OUTOFMEMORY},
        {[](IUnknown*) -> IUnknownImpl* { throw COMError(0x80040110); }, CLASS_E_NOAGGREGATION},
        {[](IUnknown*) -> IUnknownImpl* { throw std::runtime_error("no"); }, E_FAIL},
        {[](IUnknown*) -> IUnknownImpl* { throw 1; }, E_FAIL},
        {[](IUnknown*) -> IUnknownImpl* { throw WindowsError(ERROR_SUCCESS); }, E_FAIL},
        {[](IUnknown*) -> IUnknownImpl* { throw COMError(S_FALSE); }, E_FAIL},
    }));
    void* object = nullptr;
    CHECK(create(creator, IID_IDispatch, &object) == expected);
    CHECK(IUnknownImpl::getInstanceCount() == before);
    // Null arguments are refused before anything is created.
    const IID* volatile nothing = nullptr;
    CHECK(create(creator, *nothing, &object) == E_POINTER);
    CHECK(create(creator, IID_IUnknown, nullptr) == E_POINTER);
}

TEST_CASE("Factory: an aggregated object is made for its outer one and answers through it")
{
    static Persistent* inner;
    Outer outer;
    void* object = nullptr;
    CHECK(create([](IUnknown* o) -> IUnknownImpl* { return inner = new Persistent(o); }, IID_IPersist, &object,
                 &outer) == S_OK);
    CHECK((object == &outer && &inner->getUnknown() == &outer && inner->getOuter() == &outer));
    CHECK((inner->AddRef() == 3 && inner->Release() == 2 && outer.references == 2));
    // As its own unknown it counts for itself.
    CHECK((inner->internalAddRef() == 1 && inner->internalRelease() == 0));
}

TEST_CASE("COMModule: locks outlive the factory that took them and cannot go below none")
{
    COMModule& module = COMModule::getModule();
    {
        const COMInterfacePointer<IClassFactory> factory(new Factory(&Persistent::create));
        CHECK((factory->LockServer(FALSE) == E_UNEXPECTED && factory->LockServer(TRUE) == S_OK));
        CHECK(module.getLockCount() == 1);
    }
    REQUIRE(IUnknownImpl::getInstanceCount() == 0);
    CHECK(module.canUnloadNow() == S_FALSE);
    module.lock(false);
    CHECK(module.canUnloadNow() == S_OK);
    CHECK(thrownBy<COMError>([&] { module.lock(false); }).getHRESULT() == E_UNEXPECTED);
    const COMInterfacePointer<IPersist> object(new Persistent(nullptr));
    CHECK(module.canUnloadNow() == S_FALSE);
}
