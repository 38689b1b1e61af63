#include "Test.h"

#include <tarn/BStr.h>

#include <map>
#include <unordered_map>

using namespace std::string_literals;

TEST_CASE("BStr: owns counted text of both widths, zeros included")
{
    const BStr withZero(BasicString<char>("a\0b"s)), null;
    const std::string size = "Gr\xF6\xDF\x65";
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
