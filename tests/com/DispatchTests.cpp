#include "Test.h"

#include "FailureOf.h"

#include <tarn/COMApartment.h>
#include <tarn/Dispatch.h>
#include <tarn/GUID.h>
#include <tarn/IUnknownImpl.h>

#include <thread>

namespace {
// Any member of it fails, and it says why.
class Failing : public IDispatch, public IUnknownImpl {
public:
    explicit Failing(bool later) : IUnknownImpl(nullptr), later_(later) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) override
    {
        return *ids = 1, S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD how, DISPPARAMS* arguments, VARIANT*, EXCEPINFO* info,
                                     UINT*) override
    {
        flags = how;
        given.assign(arguments->rgvarg, arguments->rgvarg + arguments->cArgs);
        info->wCode = 1001;
        if (later_)
            info->pfnDeferredFillIn = fill;
        else
            fill(info);
        return DISP_E_EXCEPTION;
    }

    static inline WORD flags = 0;
    static inline std::vector<Variant> given; // As the platform has them, the last one first.

private:
    static HRESULT STDAPICALLTYPE fill(EXCEPINFO* info)
    {
        return info->bstrDescription = SysAllocString(L"No \x4E2D"), S_OK;
    }

    bool later_;
};
} // namespace

TEST_CASE("Dispatch: calls members of an object by their names")
{
    std::thread([model = GENERATE(COMApartment::singleThreaded, COMApartment::multiThreaded)] {
        const COMApartment com(model);
        const Dispatch dictionary(toGUID(L"Scripting.Dictionary"));
        dictionary.call(L"Add", {"a", 1});
        dictionary.call(L"add", {}, {{L"Item", 2}, {L"Key", "b"}});
        CHECK((dictionary.get(L"Count") == 2 && dictionary.get(L"Item", {"b"}) == 2));
        dictionary.set(L"Item", L"new", {"a"});
        CHECK(dictionary.get(L"Item", {"a"}) == "new");
        dictionary.call(L"RemoveAll");
        CHECK(dictionary.get(L"Count") == 0);

        CHECK(failureOf([&] { dictionary.get(L"Price"); }) == DISP_E_UNKNOWNNAME);
        CHECK(failureOf([&] { dictionary.call(L"Add", {}, {{L"Price", 1}}); }) == DISP_E_UNKNOWNNAME);
        CHECK(failureOf([&] { dictionary.call(L"Add", {1}); }) < 0);
    }).join();
    CHECK(failureOf([] { Dispatch(COMInterfacePointer<IDispatch>()); }) == E_POINTER);
}

TEST_CASE("Dispatch: what the object says of a failure stands in the error")
{
    const Dispatch object(COMInterfacePointer<IDispatch>(new Failing(GENERATE(false, true))));
    const auto error = thrownBy<COMError>([&] { object.call(L"\x4E2D"); });
    CHECK(error.getHRESULT() == MAKE_HRESULT(1, FACILITY_ITF, 1001));
    CHECK(whatW(error) == L"Can't call \"\x4E2D\": No \x4E2D: HRESULT value 800403e9");
    CHECK(Failing::flags == DISPATCH_METHOD);
    CHECK(failureOf([&] { object.set(L"any", object.getObject()); }) == error.getHRESULT());
    CHECK(Failing::flags == (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)); // An object is a reference.
    CHECK_THROWS_AS(object.get(L"any", {1, 2}), COMError);
    CHECK((Failing::flags == DISPATCH_PROPERTYGET && Failing::given == std::vector<Variant>{2, 1}));
    CHECK_THROWS_AS(object.set(L"any", 3, {1, 2}), COMError);
    CHECK((Failing::flags == DISPATCH_PROPERTYPUT && Failing::given == std::vector<Variant>{3, 2, 1}));
}
