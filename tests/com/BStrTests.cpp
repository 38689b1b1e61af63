#include "Test.h"

#include <tarn/BStr.h>
#include <tarn/SafeArray.h>
#include <tarn/Variant.h>

#include <map>
#include <unordered_map>

using namespace std::string_literals;

TEST_CASE("BStr: owns counted text of both widths, zeros included")
{
    const BStr withZero(BasicString<char>("a\0b"s)), null;
    const std::string size = "Gr\xF6\xDF\x65 \x80"; // No locale has the last one there.
    CHECK(BStr(size.c_str()).toString() == a2w(size.c_str(), CP_ACP));
    CHECK((withZero.toString() == L"a\0b"s && withZero.toAString() == "a\0b"s));
    CHECK((withZero == BStr(L"a\0b", 3) && !(withZero == BStr(L"a"))));
    CHECK((null.get() == nullptr && BStr(L"").get() != nullptr));
    CHECK((null == BStr(L"") && null.toAString().empty()));
}

TEST_CASE("BStr: copies are its own, moves and put hand over")
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

TEMPLATE_TEST_CASE("BStr: compares as text with any wide text, in both orders", "", const wchar_t*, std::wstring,
                   std::wstring_view, BasicString<wchar_t>, BStr)
{
    const BStr text(L"fig");
    const TestType same(L"fig"), greater(L"plum");
    CHECK((text == same && same == text && text != greater && greater != text));
    CHECK((text < greater && greater > text && !(text < same) && !(same < text)));
    CHECK((text <= same && same >= text && (text <=> greater) < 0 && (greater <=> text) > 0));
    CHECK((std::less<>()(text, greater) && std::greater<>()(greater, text) && !std::less<>()(greater, text)));
    CHECK(std::hash<BStr>()(text) == std::hash<std::wstring_view>()(std::wstring_view(L"fig")));
}

TEST_CASE("BStr: the standard's containers and algorithms order it as text")
{
    std::vector<BStr> fruit = {L"plum", L"fig", L"date"};
    std::ranges::sort(fruit);
    CHECK((fruit.front() == L"date" && std::ranges::binary_search(fruit, L"fig")));
    std::ranges::sort(fruit, std::ranges::greater(), &BStr::view);
    CHECK(fruit.front() == L"plum");
    const std::map<BStr, int, std::less<>> map = {{L"a", 1}, {L"b", 2}, {L"a", 3}};
    const std::unordered_map<BStr, int> table(map.begin(), map.end());
    CHECK((map.find(L"b")->second == 2 && table.size() == 2 && table.at(L"a") == 1));
}

TEST_CASE("BStr: text is added at its end, its own, too")
{
    BStr text;
    text += L"";
    CHECK(text.get() != nullptr);
    text += L"ab";
    text += text;
    text += BasicString<wchar_t>();
    text += static_cast<const wchar_t*>(nullptr);
    text.append(std::wstring_view(L"\0c", 2));
    CHECK(text.view() == std::wstring_view(L"abab\0c", 6));
}

TEST_CASE("BStr, Variant, SafeArray: whatever takes the place of a text frees it")
{
    const std::wstring text(100'000, L'x'); // Not kept by the system for the next one.
    const auto allocated = [&] { return SysAllocString(text.c_str()); };
    const auto useAll = [&] {
        BStr owner(text.c_str()), other(text.c_str());
        *owner.put() = allocated();
        owner.attach(allocated());
        owner.attach(owner.get());
        owner = other;
        owner = std::move(other);
        owner += L"y";
        Variant value(owner), copy(value);
        *value.put() = Variant(owner).detach();
        value.attach(Variant(owner).detach());
        value = copy;
        CHECK((value.toString().size() == 100'001 && value.toAString().size() == 100'001));
        CHECK_THROWS_AS(value.toLong(), COMError);
        SafeArray array = SafeArray::of(std::vector{value, copy});
        array.setElement(1, array.getElement(0));
        array.attach(SafeArray(array).detach());
        *array.put() = SafeArray(VT_VARIANT, 1).detach();
        array = SafeArray::of(std::vector{value});
        CHECK(array.toVector<Variant>().front() == copy);
    };
    useAll();
    const std::size_t before = usedBytes();
    useAll();
    CHECK(usedBytes() < before + text.size());
}
