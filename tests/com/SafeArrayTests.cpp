#include "Expect.h"
#include "Persistent.h"

#include <tarn/Atom.h>
#include <tarn/BStr.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>
#include <tarn/SafeArray.h>
#include <tarn/Variant.h>

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <span>
#include <type_traits>
#include <unordered_map>
#include <utility>

using tarn::Atom;
using tarn::BasicString;
using tarn::BStr;
using tarn::SafeArray;
using tarn::Variant;
using namespace std::string_literals;

namespace {
// The failing call's HRESULT.
template <class Call> HRESULT failureOf(Call call) { return support::thrownBy<tarn::COMError>(call).getHRESULT(); }

// Larger than what a variant holds.
using Record = std::array<long, 5>;

// What the system asks of a type of records.
class Records : public IRecordInfo, public tarn::IUnknownImpl {
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
    void* STDMETHODCALLTYPE RecordCreate() override { return new Record{}; }
    HRESULT STDMETHODCALLTYPE RecordCreateCopy(void* from, void** to) override
    {
        return *to = new Record(*static_cast<Record*>(from)), S_OK;
    }
    HRESULT STDMETHODCALLTYPE RecordDestroy(void* record) override { return delete static_cast<Record*>(record), S_OK; }
};

constexpr LCID english = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
} // namespace

TEST_CASE("BStr: owns counted text of both widths, zeros included", "[com][bstr]")
{
    const BStr withZero(BasicString<char>("a\0b"s)), null;
    const std::string size = "Gr\xF6\xDF\x65";
    CHECK(BStr(size.c_str()).toString() == tarn::a2w(size.c_str(), CP_ACP));
    CHECK((withZero.toString() == L"a\0b"s && withZero.toAString() == "a\0b"s));
    CHECK((withZero == BStr(L"a\0b", 3) && !(withZero == BStr(L"a"))));
    CHECK((null.get() == nullptr && BStr(L"").get() != nullptr));
    CHECK((null == BStr(L"") && null.toAString().empty()));
}

TEST_CASE("BStr: copies are its own, moves and put hand over", "[com][bstr]")
{
    BStr text(L"text"), copy(text);
    const BSTR raw = text.get();
    const BStr moved(std::move(text));
    CHECK((moved.get() == raw && copy.get() != raw));
    *copy.put() = SysAllocString(L"put");
    CHECK(copy.toString() == L"put");
    copy = moved;
    CHECK(copy == moved);
    SysFreeString(copy.detach());
    CHECK(copy.get() == nullptr);
}

TEMPLATE_TEST_CASE("BStr: compares as text with any wide text, in both orders", "[com][bstr]", const wchar_t*,
                   std::wstring, std::wstring_view, BasicString<wchar_t>, BStr)
{
    const BStr text(L"fig");
    const TestType same(L"fig"), greater(L"plum");
    CHECK((text == same && same == text && text != greater && greater != text));
    CHECK((text < greater && greater > text && !(text < same) && !(same < text)));
    CHECK((text <= same && same >= text && (text <=> greater) < 0 && (greater <=> text) > 0));
    CHECK((std::less<>()(text, greater) && std::greater<>()(greater, text) && !std::less<>()(greater, text)));
    CHECK(std::hash<BStr>()(text) == std::hash<std::wstring_view>()(std::wstring_view(L"fig")));
}

TEST_CASE("BStr: the standard's containers and algorithms order it as text", "[com][bstr]")
{
    std::vector<BStr> fruit = {L"plum", L"fig", L"date", L"apple"};
    std::ranges::sort(fruit);
    CHECK((std::ranges::is_sorted(fruit) && fruit.front() == L"apple" && fruit.back() == L"plum"));
    CHECK((std::ranges::binary_search(fruit, L"fig") && !std::ranges::binary_search(fruit, BStr(L"kiwi"))));
    std::ranges::sort(fruit, std::ranges::greater(), &BStr::view);
    CHECK(fruit.front() == L"plum");
    std::map<BStr, int, std::less<>> map;
    std::unordered_map<BStr, int> table;
    for (const wchar_t* key : {L"a", L"b", L"a", L"c", L"b"})
        ++map[BStr(key)], ++table[BStr(key)];
    CHECK((map.size() == 3 && table.size() == 3 && map.find(L"a")->second == 2));
}

TEST_CASE("Variant: takes values with their automation type", "[com][variant]")
{
    CHECK((Variant(true).getType() == VT_BOOL && Variant(true).boolVal == VARIANT_TRUE));
    CHECK((Variant().getType() == VT_EMPTY && Variant(7).getType() == VT_I4 && Variant(7ull).getType() == VT_UI8));
    CHECK(Variant::missing().scode == DISP_E_PARAMNOTFOUND);
    Variant source("copied"), owner;
    VARIANT copy = {};
    REQUIRE(VariantCopy(&copy, &source) == S_OK);
    owner.attach(copy);
    CHECK(owner.toAString() == "copied");
}

TEST_CASE("Variant: converts between types or says why not", "[com][variant]")
{
    CHECK((Variant("42").toLong() == 42 && Variant("9000000000").toLongLong() == 9000000000));
    CHECK((Variant(42).toString() == L"42" && Variant(-1).toBool() && Variant(2.5f).toDouble() == 2.5));
    CHECK(Variant("1.5").convertedTo(VT_R8, english).dblVal == 1.5);
    CHECK(Variant::date(0).convertedTo(VT_R8).dblVal == 0);
    CHECK(failureOf([] { Variant(1e12).toLong(); }) == DISP_E_OVERFLOW);
    CHECK(failureOf([] { Variant(1).toSafeArray(); }) == DISP_E_TYPEMISMATCH);
    CHECK(failureOf([] { Variant::null().toLong(); }) == DISP_E_TYPEMISMATCH);
    support::expectError<tarn::COMError>([] { Variant("word").toDouble(); },
                                         "Can't convert variant: HRESULT value 80020005"s);
}

TEST_CASE("Variant: keeps the object that it holds alive", "[com][variant]")
{
    const unsigned before = tarn::IUnknownImpl::getInstanceCount();
    {
        tarn::COMInterfacePointer<IPersist> object(new support::Persistent(nullptr));
        Variant value(static_cast<IUnknown*>(object.get()));
        const Variant copy(value);
        object.reset();
        value = 1;
        CHECK(copy.toUnknown().as<IPersist>());
        CHECK(failureOf([&] { copy.toDispatch(); }) < 0);
    }
    CHECK(tarn::IUnknownImpl::getInstanceCount() == before);
}

TEST_CASE("SafeArray: elements convert to and from variants", "[com][safearray]")
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
    support::expectWindowsError([] { SafeArray().getType(); }, ERROR_INVALID_PARAMETER, "Can't get type of safe array");
}

TEST_CASE("SafeArray: elements in place, of the right type only, and locked meanwhile", "[com][safearray]")
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

TEST_CASE("SafeArray: records come and go whole", "[com][safearray]")
{
    const tarn::COMInterfacePointer<IRecordInfo> info(new Records);
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
    // Taken apart by hand, whatever the system does with the memory of a record that it clears.
    const tarn::COMInterfacePointer<IRecordInfo> owner(element.pRecInfo);
    owner->RecordDestroy(element.detach().pvRecord);
    owner.get()->Release();
}

TEST_CASE("SafeArray: copies are deep, also inside variants", "[com][safearray]")
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

// Whatever owns can be moved without a throw, so that containers move it.
template <class... Owners>
constexpr bool areMoved = (... &&
                           (std::is_nothrow_move_constructible_v<Owners> && std::is_nothrow_move_assignable_v<Owners>));
static_assert(areMoved<Atom, BStr, Variant, SafeArray, SafeArray::Access<long>, tarn::COMInterfacePointer<IUnknown>,
                       tarn::RegistryValue<char>, tarn::RegistryKey::KeyEnumeration<char>,
                       tarn::RegistryKey::ValueEnumeration<wchar_t>>);

TEMPLATE_TEST_CASE("Atom: an entry is counted in its own table and goes with its last owner", "[com][atom]", char,
                   wchar_t)
{
    const auto scope = GENERATE(Atom::local, Atom::global);
    const BasicString<TestType> text(("tarn test atom " + std::to_string(GetCurrentProcessId())).c_str());
    {
        const Atom atom(text.c_str(), scope);
        CHECK(ATOM(Atom(text.toUpper().c_str(), scope)) == ATOM(atom));
        CHECK(Atom::find(text.c_str(), scope) == atom);
        CHECK(Atom::find(text.c_str(), scope == Atom::local ? Atom::global : Atom::local) == 0);
        CHECK(atom.getNameW() == BasicString<wchar_t>(text.c_str()));
        CHECK(atom.getNameA() == BasicString<char>(text.c_str()));
    }
    CHECK(Atom::find(text.c_str(), scope) == 0);
}

TEST_CASE("Atom: moves hand over, free forgets, and failures are told", "[com][atom]")
{
    Atom atom("tarn test local atom"), moved(std::move(atom));
    CHECK((ATOM(atom) == 0 && Atom("#1234") == 1234));
    moved.free();
    CHECK(ATOM(moved) == 0);
    CHECK_NOTHROW(moved.free());
    using support::expectWindowsError;
    const std::string tooLong(256, 'x');
    expectWindowsError([&] { Atom a(tooLong.c_str()); }, ERROR_INVALID_PARAMETER, "Can't add atom \"" + tooLong + "\"");
    expectWindowsError([] { Atom(0xC123, Atom::local).getNameW(); }, ERROR_INVALID_HANDLE, "Can't get name of atom");
    expectWindowsError([] { Atom(0xC123, Atom::local).free(); }, ERROR_INVALID_HANDLE, "Can't delete atom");
}
