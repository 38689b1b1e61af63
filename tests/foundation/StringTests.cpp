#include <catch2/catch.hpp>

#include "Expect.h"

#include <tarn/BasicString.h>

#include <locale.h>

using tarn::BasicString;
using String = BasicString<char>;
using WideString = BasicString<wchar_t>;

static_assert(sizeof(String) == sizeof(std::string) && sizeof(WideString) == sizeof(std::wstring));

namespace {
// The same test text in either width.
template <class Ch> BasicString<Ch> text(const char* ascii)
{
    return BasicString<Ch>(ascii, std::char_traits<char>::length(ascii));
}
} // namespace

TEST_CASE("String: wide text becomes narrow text in the ANSI code page", "[foundation][string]")
{
    CHECK(String(L"") == "");
    CHECK(String(static_cast<const wchar_t*>(nullptr)) == "");
    CHECK(String(L"plain") == "plain");
    CHECK(String(L"Gr\xFC\xDF"
                 L"e") == "Gr\xFC\xDF"
                          "e");
    CHECK(String(L"ab\0cd", 5) == std::string("ab\0cd", 5));
    CHECK(String(L"abcd", 2) == "ab");
    CHECK(String(L"abcd", 0) == "");
    CHECK(BasicString<char, tarn::char_traits_nc<char>>(L"ab\0cd", 5).size() == 5);
    SECTION("a character that the code page lacks is no error") { CHECK(String(L"\x4E2D").size() == 1); }
}

TEST_CASE("String: code pages are honoured where they are named", "[foundation][string]")
{
    const auto utf8 = [](const wchar_t* s) { return tarn::StringHelper<char>::convert(s, ~0u, CP_UTF8); };
    CHECK(utf8(L"\xFC") == "\xC3\xBC");
    CHECK(utf8(L"\x41C\x43E") == "\xD0\x9C\xD0\xBE");
    CHECK(utf8(L"\xD83D\xDE00") == "\xF0\x9F\x98\x80");
    CHECK(tarn::a2w("\xF0\x9F\x98\x80!", CP_UTF8) == L"\xD83D\xDE00!");
    CHECK(tarn::a2w("\x81", CP_OEMCP) == L"\xFC");
    CHECK(tarn::a2w("", CP_UTF8) == L"");

    SECTION("unpaired surrogates and invalid bytes become replacements, not errors")
    {
        CHECK(utf8(L"a\xD83Dz") == "a\xEF\xBF\xBDz");
        const WideString wide = tarn::a2w("a\xC3(\xFFz", CP_UTF8);
        CHECK(wide.front() == L'a');
        CHECK(wide.back() == L'z');
    }
    SECTION("an unknown code page fails with the text of the step")
    {
        support::expectWindowsError([] { tarn::a2w("x", 64999); }, ERROR_INVALID_PARAMETER,
                                    "Can't convert multi byte string to unicode");
        support::expectWindowsError([] { tarn::StringHelper<char>::convert(L"x", ~0u, 64999); },
                                    ERROR_INVALID_PARAMETER,
                                    "Can't retrieve required buffer size for wchar_t -> char conversion");
        support::expectWindowsError([] { tarn::StringHelper<char>::convert(L"x", 0xFFFFFFFE); },
                                    ERROR_INVALID_PARAMETER,
                                    "Can't retrieve required buffer size for wchar_t -> char conversion");
    }
}

TEST_CASE("String: narrow text becomes wide text in the runtime's locale", "[foundation][string]")
{
    CHECK(WideString("plain") == L"plain");
    CHECK(WideString("") == L"");
    CHECK(WideString("abcd", 2) == L"ab");
    CHECK(WideString("abcd", 0) == L"");
    CHECK(WideString("ab\0cd", 5) == L"ab"); // A zero ends text for the runtime library.

    SECTION("a counted text is not read past its end")
    {
        const char unterminated[] = {'a', 'b', 'c'};
        CHECK(WideString(unterminated, 3) == L"abc");
    }
    SECTION("bytes that the locale cannot read end the text")
    {
        const std::string old = setlocale(LC_CTYPE, nullptr);
        if (setlocale(LC_CTYPE, ".932")) { // A lead byte without its trail byte.
            const WideString cut("ab\x81");
            CHECK((cut == L"ab" || cut.empty()));
            CHECK(WideString("\x82\xA0\x82\xA2", 4) == L"\x3042\x3044");
        }
        setlocale(LC_CTYPE, old.c_str());
    }
}

TEST_CASE("String: it behaves like the standard string it extends", "[foundation][string]")
{
    String s("abc");
    CHECK(s[0] == 'a');
    s[2] = 'C';
    CHECK(s == "abC");
    CHECK((s + "x" + 'y' + std::string("z") + s) == "abCxyzabC");
    CHECK(std::string("<") + s + ">" == "<abC>");
    CHECK(String(3, 'x') == "xxx");
    CHECK(String(static_cast<const char*>(nullptr)).empty());
    const char* characters = s;
    CHECK(characters == s.c_str());
    s.assign(tarn::ConstString<char>("view of text", 4));
    CHECK(s == "view");
    s = L"wide";
    CHECK(s == "wide");
    WideString w;
    w = tarn::ConstString<wchar_t>(L"whole");
    CHECK(w == L"whole");
}

TEMPLATE_TEST_CASE("String: parts of a text", "[foundation][string]", char, wchar_t)
{
    using S = BasicString<TestType>;
    const S s = text<TestType>("a,b,,c");
    const S comma = text<TestType>(","), none;
    CHECK(s.left(3) == text<TestType>("a,b"));
    CHECK(s.right(3) == text<TestType>(",,c"));
    CHECK(s.right(99) == s);
    CHECK(s.mid(2, 1) == text<TestType>("b"));
    CHECK_THROWS_AS(s.mid(7, 1), std::out_of_range);

    const char* pieces[] = {"a", "b", "", "c", ""};
    for (int i = 0; i < 5; ++i)
        CHECK(s.substring(comma, i) == text<TestType>(pieces[i]));
    CHECK(s.substring(comma, -1) == text<TestType>("a"));
    CHECK(text<TestType>("a--b").substring(text<TestType>("--"), 1) == text<TestType>("b"));

    CHECK(s.findOneOf(text<TestType>("cb"), 0) == 2);
    CHECK(s.findOneOf(text<TestType>("xyz"), 0) == S::npos);
    CHECK(s.contains(text<TestType>(",,")));
    CHECK_FALSE(s.contains(text<TestType>("B")));
    CHECK(s.startsWith(text<TestType>("a,")));
    CHECK(s.endsWith(text<TestType>(",c")));
    CHECK_FALSE(s.endsWith(text<TestType>("a,b,,c,")));
}

TEMPLATE_TEST_CASE("String: replaceAll goes on behind what it put in", "[foundation][string]", char, wchar_t)
{
    const auto replaced = [](const char* s, const char* from, const char* to) {
        return text<TestType>(s).replaceAll(text<TestType>(from), text<TestType>(to));
    };
    CHECK(replaced("aaa", "a", "aa") == text<TestType>("aaaaaa"));
    CHECK(replaced("aaa", "aa", "b") == text<TestType>("ba"));
    CHECK(replaced("abc", "", "x") == text<TestType>("abc"));
    CHECK(replaced("abc", "b", "") == text<TestType>("ac"));
    CHECK(replaced("", "b", "x") == text<TestType>(""));
}

TEMPLATE_TEST_CASE("String: trimming and case", "[foundation][string]", char, wchar_t)
{
    const BasicString<TestType> s = text<TestType>(" \t\r\n x y\v\f ");
    CHECK(s.trimLeft() == text<TestType>("x y\v\f "));
    CHECK(s.trimRight() == text<TestType>(" \t\r\n x y"));
    CHECK(s.trim() == text<TestType>("x y"));
    CHECK(text<TestType>(" \n ").trim().empty());
    CHECK(text<TestType>("aBc1").toUpper() == text<TestType>("ABC1"));
    BasicString<TestType> lower = text<TestType>("ABC");
    CHECK(lower.makeLower() == text<TestType>("abc"));
    CHECK(lower == text<TestType>("abc"));
}

TEST_CASE("String: characters above 127 pass through trimming and case", "[foundation][string]")
{
    std::string all;
    for (int c = 128; c < 256; ++c)
        all += static_cast<char>(c);
    CHECK(String(all).toLower() == all);
    CHECK(String(all).toUpper() == all);
    CHECK(String(all).trim() == all);
}

TEST_CASE("String: numbers", "[foundation][string]")
{
    CHECK(String(-255, 10) == "-255");
    CHECK(String(-1, 16) == "ffffffff");
    CHECK(String::fromInt(INT_MIN, 2) == "1" + std::string(31, '0'));
    CHECK(WideString(-5, 10) == L"-5");
    CHECK_THROWS_AS(String(1, 1), std::invalid_argument);
    CHECK(String(" 42x").toInt() == 42);
    CHECK(WideString(L"x").toInt() == 0);
    CHECK(String::Time().size() == 8);
    CHECK(String::Time()[2] == ':');
    CHECK(WideString::Date()[5] == L'/');
}

TEST_CASE("String: fromFormat cuts at 2000 characters", "[foundation][string]")
{
    for (unsigned length : {0u, 1u, 1999u, 2000u, 2001u, 2500u}) {
        const std::string source(length, 'x');
        CHECK(String::fromFormat("%s", source.c_str()) == source.substr(0, 2000));
        CHECK(WideString::fromFormat(L"%s", std::wstring(length, L'x').c_str()) ==
              std::wstring(std::min(length, 2000u), L'x'));
    }
    CHECK(String::fromFormat("%d %s %c", 7, "a", 0) == std::string("7 a \0", 5));
    CHECK(String::fromFormat("%c%2500d", 0, 1).size() == 2000);
}

TEST_CASE("String: string-table entries come in both widths, missing ones empty", "[foundation][string]")
{
    const HMODULE resources = LoadLibraryA("resources.dll");
    REQUIRE(resources);
    CHECK(String::fromResource(1, resources) == "Short");
    CHECK(WideString::fromResource(2, resources) == L"Gr\xFC\xDF"
                                                    L"e, \x41C\x43E\x441\x43A\x432\x430");
    CHECK(String::fromResource(99, resources).empty());
    CHECK(WideString::fromResource(1, nullptr).empty());
    FreeLibrary(resources);
}

TEMPLATE_TEST_CASE("String: path elements count from either end", "[foundation][string]", char, wchar_t)
{
    struct Row {
        const char* path;
        int index;
        const char* element;
    };
    const Row rows[] = {
        {"C:\\dir\\file.txt", 0, "C:\\"},
        {"C:\\dir\\file.txt", 1, "dir"},
        {"C:\\dir\\file.txt", 2, "file.txt"},
        {"C:\\dir\\file.txt", 3, ""},
        {"C:\\dir\\file.txt", -1, "file.txt"},
        {"C:\\dir\\file.txt", -2, "dir"},
        {"C:\\dir\\file.txt", -3, "C:\\"},
        {"C:\\dir\\file.txt", -9, "C:\\"},
        {"C:\\dir\\", -1, "dir"},
        {"\\dir\\file", 0, "\\"},
        {"\\dir\\file", 1, "dir"},
        {"\\dir\\file", 2, "file"},
        {"file", 0, "file"},
        {"file", -1, "file"},
        {"file", 1, ""},
        {"C:", 0, "C:\\"},
        {"C:\\", -1, "C:\\"},
        {"", 0, ""},
        {"", -1, ""},
        {"\\", 0, "\\"},
        {"a\\b\\c\\", 2, "c"},
    };
    for (const Row& row : rows) {
        CAPTURE(row.path, row.index);
        CHECK(text<TestType>(row.path).getPathElement(row.index) == text<TestType>(row.element));
    }
    CHECK(text<TestType>("C:\\file.txt").getDirectory() == text<TestType>("C:"));
    CHECK(text<TestType>("C:\\dir\\sub\\").getDirectory() == text<TestType>("C:\\dir"));
    CHECK(text<TestType>("file").getDirectory() == text<TestType>(""));
}

TEMPLATE_TEST_CASE("String: mergePath resolves a path against a folder", "[foundation][string]", char, wchar_t)
{
    const char* rows[][3] = {
        {"C:\\a\\b", "x", "C:\\a\\b\\x"},
        {"C:\\a\\b", "..\\x", "C:\\a\\x"},
        {"C:\\a\\b\\", "..\\x", "C:\\a\\x"},
        {"C:\\a\\b", "..\\..\\x", "C:\\x"},
        {"C:\\a", "..\\..\\..\\x", "C:\\x"},
        {"C:", "x", "C:\\x"},
        {"C:\\", "..\\x", "C:\\x"},
        {"a\\b", "..\\x\\..\\y", "a\\x\\..\\y"},
        {"a", "..\\x", "x"},
        {"a", "..\\..\\x", "..\\x"},
        {"C:\\a\\b", "..", "C:\\a"},
        {"C:\\a", "..x", "C:\\a\\..x"},
        {"", "x", "x"},
        {"C:\\a", "", "C:\\a"},
        {"C:\\a", "\\x", "\\x"},
        {"C:\\a\\b", ".\\..\\.\\x\\", "C:\\a\\x\\"},
        {"C:\\a", ".", "C:\\a"},
        {"C:\\a", "..", "C:\\"},
        {"C:\\a", "D:x", "D:x"},
        {"C:\\a", "D:\\x", "D:\\x"},
    };
    for (const auto& [base, relative, merged] : rows) {
        CAPTURE(base, relative);
        CHECK(BasicString<TestType>::mergePath(text<TestType>(base), text<TestType>(relative)) ==
              text<TestType>(merged));
    }
}

TEST_CASE("String: format fills in its arguments", "[foundation][string]")
{
    CHECK(String("a%1b%2c%%d%0e%").format("X", nullptr) == "aXbc%d%0e%");
    CHECK(String("%9%8%1%1").format("1", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "8", "9") == "9811");
    CHECK(String("%1").format("%2", "no") == "%2");
    CHECK(String("").format("x") == "");
    CHECK(WideString(L"<%1>").format(L"w") == L"<w>");
}

TEST_CASE("char_traits_nc: only A to Z are folded", "[foundation][string]")
{
    using Traits = tarn::char_traits_nc<char>;
    using NoCase = std::basic_string<char, Traits>;
    CHECK(NoCase("Hello") == NoCase("hELLO"));
    CHECK(NoCase("a") < NoCase("B"));
    CHECK(NoCase("Z") > NoCase("a"));
    CHECK_FALSE(Traits::eq('\xC4', '\xE4'));
    CHECK_FALSE(Traits::eq('@', '`'));
    const char data[] = "xyZ";
    CHECK(Traits::find(data, 3, 'z') == data + 2);
    CHECK(Traits::find(data, 0, 'x') == nullptr);
    CHECK(Traits::find(data, 3, 'a') == nullptr);
}

TEST_CASE("StringHelper: convert of the own width is a view of the same text", "[foundation][string]")
{
    const char* s = "text";
    const auto view = tarn::StringHelper<char>::convert(s);
    CHECK(view.data() == s);
    CHECK(view.storedLength() == ~0u);
    CHECK(view.length() == 4);
    CHECK(tarn::StringHelper<char>::convert(static_cast<const char*>(nullptr)).storedLength() == 0);
    CHECK(tarn::StringHelper<wchar_t>::convert(L"text", 2).length() == 2);
    CHECK(String(tarn::ConstString<char>(nullptr, 5)).empty());
}

TEST_CASE("StringHelper: members forward to the runtime library", "[foundation][string]")
{
    using Narrow = tarn::StringHelper<char>;
    using Wide = tarn::StringHelper<wchar_t>;
    CHECK(Narrow::icmp("ABC", "abc") == 0);
    CHECK(Narrow::nicmp("abcX", "ABCY", 3) == 0);
    CHECK(Wide::nicmp(L"abcX", L"ABCY", 4) != 0);
    wchar_t digits[16];
    CHECK(std::wstring(Wide::ltos(-10, digits, 10)) == L"-10");
    const auto print = [](unsigned count, ...) {
        char buffer[8];
        va_list args;
        va_start(args, count);
        const int written = Narrow::vsnprintf(buffer, count, "%d", args);
        va_end(args);
        return written;
    };
    CHECK(print(8, 123) == 3);
    CHECK(print(2, 123) < 0);
}
