#include "Test.h"

#include "FailureOf.h"
#include "Persistent.h"

#include <tarn/Atom.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryValue.h>
#include <tarn/SafeArray.h>
#include <tarn/TimeText.h>
#include <tarn/Variant.h>

using namespace std::string_literals;

// Whatever owns can be moved without a throw, so that containers move it.
template <class... Owners>
constexpr bool areMoved = (... &&
                           (std::is_nothrow_move_constructible_v<Owners> && std::is_nothrow_move_assignable_v<Owners>));
static_assert(areMoved<Atom, BStr, Variant, SafeArray, SafeArray::Access<long>, COMInterfacePointer<IUnknown>,
                       RegistryValue<char>, RegistryKey::KeyEnumeration<char>, RegistryKey::ValueEnumeration<wchar_t>>);

TEST_CASE("Variant: takes values with their automation type")
{
    CHECK((Variant(true).getType() == VT_BOOL && Variant(true).boolVal == VARIANT_TRUE));
    CHECK((Variant().getType() == VT_EMPTY && Variant(7).getType() == VT_I4 && Variant(7ull).getType() == VT_UI8));
    CHECK(Variant::missing().scode == DISP_E_PARAMNOTFOUND);
    const Variant small(static_cast<unsigned char>(200)), word(static_cast<short>(-2)), number(~0ul);
    CHECK((small.getType() == VT_UI1 && word.getType() == VT_I2 && number.getType() == VT_UI4));
    CHECK((small.toLong() == 200 && word.toLong() == -2 && number.toULongLong() == ~0u));
    Variant source("copied"), owner;
    VARIANT copy = {};
    REQUIRE(VariantCopy(&copy, &source) == S_OK);
    owner.attach(copy);
    CHECK(owner.toAString() == "copied");
}

TEST_CASE("Variant: converts between types or says why not")
{
    CHECK((Variant("42").toLong() == 42 && Variant("9000000000").toLongLong() == 9000000000));
    CHECK((Variant(42).toString() == L"42" && Variant(-1).toBool() && Variant(2.5f).toDouble() == 2.5));
    CHECK((Variant(~0ull).toULongLong() == ~0ull && failureOf([] { Variant(-1).toULongLong(); }) == DISP_E_OVERFLOW));
    const CY money = Variant(1.25).toCurrency();
    CHECK((money.int64 == 12500 && Variant(money).getType() == VT_CY && Variant(money).toDouble() == 1.25));
    const DECIMAL decimal = Variant(-7).toDecimal();
    CHECK((Variant(decimal).getType() == VT_DECIMAL && Variant(decimal).toLong() == -7));
    constexpr LCID english = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
    CHECK(Variant("1.5").convertedTo(VT_R8, english).dblVal == 1.5);
    CHECK(Variant::date(0).convertedTo(VT_R8).dblVal == 0);
    CHECK(failureOf([] { Variant(1e12).toLong(); }) == DISP_E_OVERFLOW);
    CHECK(failureOf([] { Variant(1).toSafeArray(); }) == DISP_E_TYPEMISMATCH);
    CHECK(failureOf([] { Variant::null().toLong(); }) == DISP_E_TYPEMISMATCH);
    expectError<COMError>([] { Variant("word").toDouble(); }, "Can't convert variant: HRESULT value 80020005"s);
}

TEST_CASE("Variant: is equal to what has the same type and value")
{
    const std::vector<Variant> values = {{},
                                         Variant::null(),
                                         true,
                                         1,
                                         1.0,
                                         -0.5f,
                                         1ll,
                                         "1",
                                         L"1\x4E2D",
                                         Variant::date(1),
                                         Variant::missing(),
                                         Variant(1).convertedTo(VT_CY),
                                         Variant(1).convertedTo(VT_DECIMAL),
                                         Variant(2).convertedTo(VT_DECIMAL),
                                         SafeArray::of(std::vector{1, 2}),
                                         SafeArray::of(std::vector{1, 3}),
                                         SafeArray::of(std::vector{1, 2}, {{2, 1}}),
                                         SafeArray::of(std::vector{1, 2}, {{2, 0}, {1, 0}}),
                                         SafeArray::of(std::vector<Variant>{1, "x"})};
    for (std::size_t a = 0; a < values.size(); ++a)
        for (std::size_t b = 0; b < values.size(); ++b)
            CHECK((Variant(values[a]) == values[b]) == (a == b));
    CHECK((Variant(5) == 5 && Variant("x") != "y"));
    for (const VARTYPE type :
         {VT_EMPTY, VT_UI1, VT_I2, VT_BOOL, VT_I4, VT_ERROR}) { // The rest of the bytes is nothing.
        Variant value, other;
        value.llVal = 1, other.llVal = type == VT_EMPTY                    ? 2
                                       : type == VT_UI1                    ? 0x101
                                       : type == VT_I4 || type == VT_ERROR ? 0x1'0000'0001
                                                                           : 0x10001;
        value.vt = other.vt = type;
        CHECK(value == other);
    }
    CHECK((Variant(1).compare(1.5) < 0 && Variant("a").compare("B") < 0 && Variant(2).compare("2") < 0));
    CHECK((Variant(3).compare(Variant::null()) == std::partial_ordering::unordered));
    CHECK(failureOf([] { Variant(1).compare(SafeArray(VT_I4, 1)); }) < 0);
}

TEST_CASE("Variant: what is passed by reference is copied, and not referred to any more")
{
    long number = 7;
    Variant text("text");
    VARIANT reference{}, ofVariant{};
    reference.vt = VT_I4 | VT_BYREF;
    reference.plVal = &number;
    ofVariant.vt = VT_VARIANT | VT_BYREF;
    ofVariant.pvarVal = &text;
    const Variant copy(reference), copyOfVariant(ofVariant);
    number = 8;
    text = 9;
    CHECK((copy == 7 && copyOfVariant == "text"));
    VARIANT twice = ofVariant; // A reference to a reference is none that automation has.
    twice.pvarVal = &ofVariant;
    expectWindowsError([&] { Variant{twice}; }, ERROR_INVALID_PARAMETER, "Can't copy variant");
}

TEST_CASE("Variant: an instant is the date that clocks show, and comes back")
{
    TimeZone zone;
    zone.SetStandardOffset(3600000);
    zone.SetDSTOffset(3600000);
    zone.SetStartRuleByWeekday(GregorianCalendarBase::March, -1, GregorianCalendarBase::Sunday, 7200000);
    zone.SetEndRuleByWeekday(GregorianCalendarBase::October, -1, GregorianCalendarBase::Sunday, 7200000);
    const std::pair<const char*, double> rows[] = {{"1899-12-29T23:00Z", 0},         {"1899-12-29T05:00Z", -1.25},
                                                   {"2026-07-01T10:00Z", 46204.5},   {"2026-01-01T11:00Z", 46023.5},
                                                   {"0099-12-31T23:00Z", -657434.0}, {"9999-12-31T16:59:59.999Z", 0}};
    for (const auto& [text, days] : rows) {
        const Time time = parseISOTime(text);
        const Variant date = Variant::date(time, zone);
        CHECK(date.getType() == VT_DATE);
        CHECK(date.toTime(zone) == time);
        if (days != 0)
            CHECK(static_cast<const VARIANT&>(date).date == days);
    }
    CHECK(failureOf([] { Variant::date(2958466).toTime(TimeZone()); }) == DISP_E_OVERFLOW);
    CHECK(Variant(0.25).toTime(TimeZone()) == Variant(-0.25).toTime(TimeZone()));
    for (const char* const text : {"0099-12-31T22:59:59.999Z", "9999-12-31T23:00Z", "+292278994-08-17T07:12:55.807Z"})
        CHECK(failureOf([&] { Variant::date(parseISOTime(text), zone); }) == DISP_E_OVERFLOW);
}

TEST_CASE("Variant: keeps the object that it holds alive")
{
    const unsigned before = IUnknownImpl::getInstanceCount();
    {
        COMInterfacePointer<IPersist> object(new Persistent(nullptr));
        Variant value(static_cast<IUnknown*>(object.get()));
        const Variant copy(value);
        CHECK((copy == value && copy != Variant(static_cast<IUnknown*>(new Persistent(nullptr)))));
        object.reset();
        value = 1;
        CHECK(copy.toUnknown().as<IPersist>());
        CHECK(failureOf([&] { copy.toDispatch(); }) < 0);
    }
    CHECK(IUnknownImpl::getInstanceCount() == before);
}
