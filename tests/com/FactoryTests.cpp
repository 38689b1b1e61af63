#include "Expect.h"
#include "Persistent.h"

#include <tarn/COMModule.h>
#include <tarn/Factory.h>

#include <stdexcept>

using support::Persistent;
using tarn::COMInterfacePointer;
using tarn::Factory;
using tarn::IUnknownImpl;

namespace {
// Takes and releases a reference while it is being destroyed, as a call-back to an owner would.
class Restless : public IUnknownImpl {
public:
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
class Failing : public IUnknownImpl {
public:
    explicit Failing(IUnknown* outer) : IUnknownImpl(outer) {}
    static IUnknownImpl* create(IUnknown* outer) { return new Failing(outer); }

protected:
    void* queryInterface(const GUID&) override { throw tarn::WindowsError(ERROR_ACCESS_DENIED); }
};

// Hands out the interface of what it aggregates.
class Outer : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        ++queries;
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    unsigned long references = 1;
    int queries = 0;
};

HRESULT create(Factory::Creator creator, const IID& iid, void** object, IUnknown* outer = nullptr)
{
    return COMInterfacePointer<IClassFactory>(new Factory(creator))->CreateInstance(outer, iid, object);
}
} // namespace

TEST_CASE("IUnknownImpl: references are counted and the last release destroys once", "[com][unknown]")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    auto* const object = new Restless;
    CHECK(IUnknownImpl::getInstanceCount() == before + 1);
    CHECK(object->internalAddRef() == 1);
    CHECK(object->internalAddRef() == 2);
    CHECK(object->internalRelease() == 1);
    CHECK(object->internalRelease() == 0);
    CHECK(Restless::destroyed == 1);
    CHECK(IUnknownImpl::getInstanceCount() == before);
}

TEST_CASE("IUnknownImpl: a query counts, refuses and reports without touching the pointer", "[com][unknown]")
{
    COMInterfacePointer<IPersist> object(new Persistent(nullptr));
    void* found = &object;
    CHECK(object->QueryInterface(IID_IDispatch, &found) == E_NOINTERFACE);
    CHECK(found == &object);
    CHECK(object->QueryInterface(IID_IPersist, nullptr) == E_POINTER);
    CHECK(object.as<IPersist>() == object);
    CHECK_FALSE(object.as<IDispatch>());
    support::expectError<tarn::COMError>([&] { object.require<IDispatch>(); },
                                         std::string("Can't get COM interface: HRESULT value 80004002"));

    Failing failing(nullptr);
    CHECK(failing.internalQueryInterface(IID_IUnknown, &found) == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

TEST_CASE("Factory: a new object has one reference and dies with it", "[com][factory]")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    IPersist* object = nullptr;
    REQUIRE(create(&Persistent::create, IID_IPersist, reinterpret_cast<void**>(&object)) == S_OK);
    CLSID clsid;
    CHECK(object->GetClassID(&clsid) == S_OK);
    CHECK(clsid == support::CLSID_Persistent);
    CHECK(IUnknownImpl::getInstanceCount() == before + 1);
    CHECK(object->Release() == 0);
    CHECK(IUnknownImpl::getInstanceCount() == before);
}

TEST_CASE("Factory: every failure is a result and leaves no object behind", "[com][factory]")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    const auto& [creator, expected] = GENERATE(table<Factory::Creator, HRESULT>({
        {&Persistent::create, E_NOINTERFACE},
        {&Failing::create, HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)},
        {[](IUnknown*) -> IUnknownImpl* { return nullptr; }, E_OUTOFMEMORY},
        {[](IUnknown*) -> IUnknownImpl* { throw tarn::COMError(0x80040110); }, CLASS_E_NOAGGREGATION},
        {[](IUnknown*) -> IUnknownImpl* { throw std::runtime_error("no"); }, E_FAIL},
        {[](IUnknown*) -> IUnknownImpl* { throw 1; }, E_FAIL},
    }));
    void* object = nullptr;
    CHECK(create(creator, IID_IDispatch, &object) == expected);
    CHECK(IUnknownImpl::getInstanceCount() == before);
    // Null arguments are refused before anything is created.
    const IID* volatile nothing = nullptr;
    CHECK(create(creator, *nothing, &object) == E_POINTER);
    CHECK(create(creator, IID_IUnknown, nullptr) == E_POINTER);
}

TEST_CASE("Factory: an aggregated object is made for its outer one and answers through it", "[com][factory]")
{
    static Persistent* inner;
    Outer outer;
    void* object = nullptr;
    CHECK(create([](IUnknown* o) -> IUnknownImpl* { return inner = new Persistent(o); }, IID_IPersist, &object,
                 &outer) == S_OK);
    CHECK(object == &outer);
    CHECK(outer.queries == 1);
    CHECK(&inner->getUnknown() == &outer);
    CHECK(inner->AddRef() == 3);
    CHECK(inner->Release() == 2);
    CHECK(inner->getOuter() == &outer);
    CHECK(outer.references == 2);
    // As its own unknown it counts for itself.
    CHECK(inner->internalAddRef() == 1);
    CHECK(inner->internalRelease() == 0);
}

TEST_CASE("COMModule: locks outlive the factory that took them and cannot go below none", "[com][factory]")
{
    tarn::COMModule& module = tarn::COMModule::getModule();
    {
        const COMInterfacePointer<IClassFactory> factory(new Factory(&Persistent::create));
        CHECK(factory->LockServer(FALSE) == E_UNEXPECTED);
        CHECK(factory->LockServer(TRUE) == S_OK);
        CHECK(module.getLockCount() == 1);
    }
    REQUIRE(IUnknownImpl::getInstanceCount() == 0);
    CHECK(module.canUnloadNow() == S_FALSE);
    module.lock(false);
    CHECK(module.canUnloadNow() == S_OK);
    CHECK(support::thrownBy<tarn::COMError>([&] { module.lock(false); }).getHRESULT() == E_UNEXPECTED);
    const COMInterfacePointer<IPersist> object(new Persistent(nullptr));
    CHECK(module.canUnloadNow() == S_FALSE);
}
