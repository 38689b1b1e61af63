#include "Test.h"

#include "FailureOf.h"

#include <tarn/COMInterfacePointer.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/SafeArray.h>
#include <tarn/Variant.h>

#include <array>
#include <list>
#include <numeric>
#include <span>

namespace {
// Larger than what a variant holds.
using Record = std::array<long, 5>;

// What the system asks of a type of records.
class Records : public IRecordInfo, public IUnknownImpl {
public:
    Records() : IUnknownImpl(nullptr) {}

    TARN_IUNKNOWN_METHODS
    HRESULT STDMETHODCALLTYPE RecordInit(void* record) override { return RecordClear(record); }
    HRESULT STDMETHODCALLTYPE RecordClear(void* record) override { return *static_cast<Record*>(record) = {}, S_OK; }
    HRESULT STDMETHODCALLTYPE RecordCopy(void* from, void* to) override
    {
        return *static_cast<Record*>(to) = *static_cast<Record*>(from), S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetGuid(GUID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetName(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSize(ULONG* size) override { return *size = sizeof(Record), S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetField(void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNoCopy(void*, LPCOLESTR, VARIANT*, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutField(ULONG, void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutFieldNoCopy(ULONG, void*, LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetFieldNames(ULONG*, BSTR*) override { return E_NOTIMPL; }
    BOOL STDMETHODCALLTYPE IsMatchingType(IRecordInfo* other) override { return other == this; }
    void* STDMETHODCALLTYPE RecordCreate() override { return ++living, new Record{}; }
    HRESULT STDMETHODCALLTYPE RecordCreateCopy(void* from, void** to) override
    {
        return ++living, *to = new Record(*static_cast<Record*>(from)), S_OK;
    }
    HRESULT STDMETHODCALLTYPE RecordDestroy(void* record) override
    {
        return --living, delete static_cast<Record*>(record), S_OK;
    }

    static inline int living = 0;
};
} // namespace

TEST_CASE("SafeArray: elements of each type come back, objects with their reference")
{
    const auto type = static_cast<VARTYPE>(GENERATE(VT_UI1, VT_I2, VT_I8, VT_R4, VT_DATE, VT_CY, VT_DECIMAL, VT_BSTR));
    SafeArray array(type, 2);
    array.setElement(1, Variant(7));
    CHECK((array.getElement(1).getType() == type && array.getElement(1).toLong() == 7));
    const unsigned before = IUnknownImpl::getInstanceCount();
    {
        SafeArray objects(VT_UNKNOWN, 1);
        objects.setElement(0, Variant(COMInterfacePointer<IUnknown>(new Records).get()));
        CHECK(objects.getElement(0).toUnknown());
    }
    CHECK(IUnknownImpl::getInstanceCount() == before);
    for (const VARTYPE none : {VT_EMPTY, VT_NULL, VT_RECORD})
        expectWindowsError([none] { SafeArray(none, 1); }, ERROR_INVALID_PARAMETER, "Can't create safe array");
}

TEST_CASE("SafeArray: elements convert to and from variants")
{
    SafeArray numbers(VT_I4, 3, 10), texts(VT_BSTR, 2), any(VT_VARIANT, 1);
    CHECK(numbers.getUpperBound() == 12);
    numbers.setElement(11, Variant("5"));
    texts.setElement(1, Variant(2));
    any.setElement(0, Variant("x"));
    CHECK((numbers.getElement(11).lVal == 5 && any.getElement(0).getType() == VT_BSTR));
    CHECK((texts.getElement(1).toString() == L"2" && texts.getElement(0).toString().empty()));
    CHECK(failureOf([&] { numbers.getElement(13); }) == DISP_E_BADINDEX);
    CHECK(failureOf([&] { numbers.setElement(9, Variant(1)); }) == DISP_E_BADINDEX);
    CHECK(failureOf([&] { numbers.getElement({10, 0}); }) == DISP_E_BADINDEX);
    CHECK(failureOf([&] { numbers.setElement(10, Variant("word")); }) == DISP_E_TYPEMISMATCH);
    CHECK(failureOf([] { SafeArray().getElement(0); }) == DISP_E_BADINDEX);
    expectWindowsError([] { SafeArray().getType(); }, ERROR_INVALID_PARAMETER, "Can't get type of safe array");
}

TEST_CASE("SafeArray: several dimensions are made of a container, and into one")
{
    const std::vector<double> elements = {1, 2, 3, 4, 5, 6};
    const SafeArray matrix = SafeArray::of(elements, {{2, 0}, {3, 1}});
    CHECK((matrix.getElement({1, 1}) == 2.0 && matrix.getElement({0, 3}) == 5.0));
    CHECK(matrix.toVector<double>() == elements);
    expectWindowsError(
        [&] {
            SafeArray::of(elements, {{2, 0}, {2, 0}});
        },
        ERROR_INVALID_PARAMETER, "Can't create safe array");
}

TEST_CASE("SafeArray: elements in place, of the right type only, and locked meanwhile")
{
    SafeArray matrix(VT_R8, {{2, 0}, {3, 1}});
    CHECK(matrix.getSize() == 6);
    {
        const SafeArray::Access<double> cells(matrix);
        std::iota(cells.begin(), cells.end(), 0.0);
        CHECK(failureOf([&] { matrix.resize(4); }) == DISP_E_ARRAYISLOCKED);
    }
    CHECK(matrix.getElement({1, 1}).dblVal == 1); // The leftmost index runs fastest.
    CHECK(failureOf([&] { SafeArray::Access<long long> wrong(matrix); }) == DISP_E_TYPEMISMATCH);
    matrix.resize(4);
    CHECK((matrix.getUpperBound(2) == 4 && matrix.getElement({0, 2}).dblVal == 2));
}

TEST_CASE("SafeArray: records come and go whole")
{
    const COMInterfacePointer<IRecordInfo> info(new Records);
    SAFEARRAYBOUND bound = {2, 0};
    SafeArray records;
    records.attach(SafeArrayCreateEx(VT_RECORD, 1, &bound, info.get()));
    for (Record& record : std::span(static_cast<Record*>(records.get()->pvData), 2))
        record = {1, 2, 3, 4, 5};
    Variant element = records.getElement(1);
    REQUIRE((element.getType() == VT_RECORD && element.pRecInfo == info));
    CHECK(static_cast<Record*>(element.pvRecord)->at(4) == 5);
    static_cast<Record*>(element.pvRecord)->at(4) = 6;
    records.setElement(0, element);
    CHECK(static_cast<Record*>(records.get()->pvData)->at(4) == 6);
    CHECK(failureOf([&] { records.setElement(0, Variant(1)); }) == DISP_E_TYPEMISMATCH);
    CHECK((failureOf([&] { records.getElement(2); }) == DISP_E_BADINDEX && Records::living == 1));
    // Taken apart by hand, whatever the system does with the memory of a record that it clears.
    const COMInterfacePointer<IRecordInfo> owner(element.pRecInfo);
    owner->RecordDestroy(element.detach().pvRecord);
    owner.get()->Release();
}

TEST_CASE("SafeArray: copies are deep, also inside variants")
{
    SafeArray texts(VT_BSTR, 1);
    texts.setElement(0, Variant("one"));
    const Variant held(texts);
    texts.setElement(0, Variant("two"));
    CHECK((held.getType() == (VT_ARRAY | VT_BSTR) && held.toSafeArray().getElement(0).toString() == L"one"));
    SafeArray moved(std::move(texts));
    CHECK((texts.get() == nullptr && moved.getElement(0).toString() == L"two"));
    *moved.put() = SafeArrayCreateVector(VT_UI1, 0, 8);
    CHECK(moved.getSize() == 8);
}

TEST_CASE("SafeArray: made of containers, and made into them")
{
    const auto there = []<class T>(const std::vector<T>& elements, VARTYPE type) {
        const SafeArray array = SafeArray::of(elements);
        CHECK(array.getType() == type);
        CHECK(array.getSize() == elements.size());
        CHECK(array.toVector<T>() == elements);
    };
    there(std::vector<int>{1, -2}, VT_I4);
    there(std::vector<double>{0.5}, VT_R8);
    there(std::vector<bool>{true, false}, VT_BOOL);
    there(std::vector<unsigned char>{}, VT_UI1);
    there(std::vector<BasicString<wchar_t>>{L"a", L""}, VT_BSTR);
    there(std::vector<std::wstring>{std::wstring(L"a\0b", 3)}, VT_BSTR);

    const SafeArray mixed = SafeArray::of(std::list<Variant>{Variant(7), Variant("text")});
    CHECK(mixed.toVector<Variant>()[1].toString() == L"text");
    for (const auto& wrong : {failureOf([&] { mixed.toVector<int>(); }),
                              failureOf([] { SafeArray::of(std::vector<short>{1}).toVector<bool>(); })})
        CHECK(wrong == DISP_E_TYPEMISMATCH);
}
