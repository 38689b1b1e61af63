#include "Test.h"

#include "ScratchFolder.h"

#include <filesystem>
#include <locale.h>
#include <map>
#include <unordered_map>

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

TEST_CASE("String: wide text becomes narrow text in the ANSI code page")
{
    CHECK(String(static_cast<const wchar_t*>(nullptr)) == "");
    CHECK(String(L"Gr\xFC\xDF") == "Gr\xFC\xDF");
    CHECK(String(L"ab\0cd", 5) == std::string("ab\0cd", 5));
    CHECK(String(L"abcd", 2) == "ab");
    CHECK(String(L"abcd", 0) == "");
    CHECK(BasicString<char, char_traits_nc<char>>(L"ab\0cd", 5).size() == 5);
    CHECK(String(L"\x4E2D").size() == 1); // What the code page lacks is no error.
}

TEST_CASE("String: code pages are honoured where they are named")
{
    const auto utf8 = [](const std::wstring& s) { return w2a(s, CP_UTF8); };
    CHECK(utf8(L"\xFC\xD83D\xDE00") == "\xC3\xBC\xF0\x9F\x98\x80");
    CHECK(a2w("\xF0\x9F\x98\x80!", CP_UTF8) == L"\xD83D\xDE00!");
    CHECK(a2w("\x81", CP_OEMCP) == L"\xFC");
    CHECK(a2w("", CP_UTF8) == L"");

    SECTION("unpaired surrogates and invalid bytes become replacements, not errors")
    {
        CHECK(utf8(L"a\xD83Dz") == "a\xEF\xBF\xBDz");
        CHECK(a2w("a\xC3(\xFFz", CP_UTF8).endsWith(L"z"));
    }
    SECTION("an unknown code page and a length beyond counting fail with the text of the step")
    {
        const auto* const noSize = "Can't retrieve required buffer size for wchar_t -> char conversion";
        expectWindowsError([] { a2w("x", 64999); }, ERROR_INVALID_PARAMETER,
                           "Can't convert multi byte string to unicode");
        expectWindowsError([] { StringHelper<char>::convert(L"x", ~0u, 64999); }, ERROR_INVALID_PARAMETER, noSize);
        expectWindowsError([] { StringHelper<char>::convert(L"x", 0xFFFFFFFE); }, ERROR_INVALID_PARAMETER, noSize);
    }
}

TEST_CASE("String: narrow text becomes wide text in the runtime's locale")
{
    CHECK(WideString("plain") == L"plain");
    CHECK(WideString("") == L"");
    CHECK(WideString("abcd", 1) == L"a");
    CHECK(WideString("abcd", 0) == L"");
    CHECK(WideString("ab\0cd", 5) == L"ab"); // A zero ends text for the runtime library.
    const char unterminated[] = {'a', 'b', 'c'};
    CHECK(WideString(unterminated, 3) == L"abc");

    const std::string old = setlocale(LC_CTYPE, nullptr);
    if (setlocale(LC_CTYPE, ".932")) {
        const WideString cut("ab\x81"); // A lead byte without its trail byte ends the text.
        CHECK((cut == L"ab" || cut.empty()));
        CHECK(WideString("\x82\xA0\x82\xA2", 4) == L"\x3042\x3044");
    }
    setlocale(LC_CTYPE, old.c_str());
}

TEST_CASE("String: it is put together and assigned from either width")
{
    String s("abc");
    const std::string standard("z");
    CHECK(s + "x" + 'y' + standard + s + std::string("!") == "abcxyzabc!");
    CHECK("<" + s + '(' + (standard + s) + (std::string("y") + s) == "<abc(zabcyabc");
    CHECK('(' + s == "(abc");
    s = ConstString<char>("view of text", 4);
    CHECK(s == "view");
    s = L"wide";
    CHECK(s == "wide");
    const std::wstring wide(L"x\0y", 3);
    s = wide;
    CHECK(s == std::string("x\0y", 3));
    CHECK(String(WideString(L"Gr\xFC\xDF")) == "Gr\xFC\xDF");
    CHECK(WideString(standard) + String(std::wstring_view(wide)).c_str() == L"zx");
    String viewed;
    viewed = std::wstring_view(wide);
    CHECK(viewed == std::string_view("x\0y", 3));
}

TEST_CASE("String: a null text is the empty one")
{
    const char* const none = nullptr;
    CHECK(String(none).empty());
    CHECK(String(ConstString<char>(none, 5)).empty());
    String s("abc");
    CHECK(s + none == "abc");
    s += none;
    CHECK(none + s == "abc");
    CHECK((s.contains(none) && s.startsWith(none) && s.endsWith(none)));
    CHECK(s.replaceAll("b", none).replaceAll(none, "x") == "ac");
    CHECK(s.substring(none, 1000000000).empty());
    CHECK(s > none);
    s = none;
    CHECK(s == none);
    s = static_cast<const wchar_t*>(nullptr);
    CHECK(w2a(nullptr, CP_UTF8) == s);
}

TEST_CASE("String: a count and a character repeat it, whatever their types")
{
    CHECK(WideString(3, ' ') == L"   ");
    CHECK(String(3u, L'x') == "xxx");
    CHECK(String(std::size_t(2), L'\xFC') == "\xFC\xFC"); // As the conversion of the width has it.
}

namespace {
template <class A, class B> void checkPair(const A& less, const B& more)
{
    CHECK((less < more && less <= more && less != more && more > less && more >= less));
    CHECK_FALSE((more < less || more <= less || more == less || less > more || less >= more));
    CHECK(((less <=> more) < 0 && (more <=> less) > 0));
    CHECK((std::less<>()(less, more) && std::greater<>()(more, less) && std::ranges::less()(less, more)));
    CHECK((std::less_equal<>()(less, more) && std::greater_equal<>()(more, less)));
    static_assert(std::totally_ordered_with<A, B> && std::three_way_comparable_with<A, B>);
}

// Of `text` with every kind of text, in both orders.
template <class Ch> void checkOrder(const BasicString<Ch>& less, const BasicString<Ch>& more)
{
    checkPair(less, more);
    checkPair(less, more.c_str());
    checkPair(less.c_str(), more);
    checkPair(less, std::basic_string<Ch>(more));
    checkPair(std::basic_string<Ch>(less), more);
    checkPair(less, std::basic_string_view<Ch>(more));
    checkPair(std::basic_string_view<Ch>(less), more);
}
} // namespace

TEMPLATE_TEST_CASE("String: comparisons compare texts, whoever asks", "", char, wchar_t)
{
    using Text = BasicString<TestType>;
    const auto t = &text<TestType>;
    // Made in both orders, because comparing addresses is right every other time.
    const Text b1 = t("b"), a = t("a"), b2 = t("b");
    checkOrder(a, b1);
    checkOrder(a, b2);
    CHECK((b1 == b2 && b1 == b2.c_str() && std::basic_string_view<TestType>(b1) == b2));

    std::vector<Text> fruits{t("date"), t("plum"), t("fig")};
    std::ranges::sort(fruits, {}, [](const Text& fruit) { return fruit.right(1); });
    CHECK(fruits == std::vector<Text>{t("date"), t("fig"), t("plum")});
    CHECK(std::ranges::binary_search(fruits, t("fig").c_str()));

    std::map<Text, int, std::less<>> ordered;
    std::unordered_map<Text, int, std::hash<Text>, std::equal_to<>> hashed;
    for (const char* name : {"y", "x", "y", "z", "x"}) {
        ++ordered[t(name)];
        ++hashed[t(name)];
    }
    CHECK((ordered.size() == 3 && ordered.find(t("y").c_str())->second == 2));
    CHECK((hashed.size() == 3 && hashed.find(std::basic_string_view<TestType>(t("x")))->second == 2));
}

TEST_CASE("String: it makes a path of the file system")
{
    CHECK(std::filesystem::path(String("Gr\xFC\xDF")).wstring() == L"Gr\xFC\xDF");
    const WideString name(L"\x4E2D.txt");
    CHECK(WideString(std::filesystem::path(name)) == name);
}

TEMPLATE_TEST_CASE("String: parts of a text", "", char, wchar_t)
{
    const auto t = &text<TestType>;
    const BasicString<TestType> s = t("a,b,,c");
    CHECK(s.left(3) == t("a,b"));
    CHECK(s.right(3) == t(",,c"));
    CHECK(s.right(99) == s);
    CHECK(s.mid(2, 1) == t("b"));
    CHECK_THROWS_AS(s.mid(7, 1), std::out_of_range);

    const char* pieces[] = {"a", "b", "", "c", ""};
    for (int i = 0; i < 5; ++i)
        CHECK(s.substring(t(","), i) == t(pieces[i]));
    CHECK(s.substring(t(","), -1) == t("a"));
    CHECK(t("a--b").substring(t("--"), 1) == t("b"));

    CHECK(s.findOneOf(t("cb"), 0) == 2);
    CHECK(t("a,b").substring(t(""), 0).empty()); // An empty delimiter is found at once.
    using Plain = std::basic_string<TestType>;
    CHECK((s.contains(t(",,")) && s.contains(t(",,").c_str()) && s.contains(TestType('c')) && s.contains(Plain(s))));
    CHECK_FALSE((s.contains(t("B")) || s.contains(TestType('B'))));
    CHECK((s.startsWith(t("a,")) && s.startsWith(TestType('a')) && s.startsWith(std::basic_string_view<TestType>(s))));
    CHECK((s.endsWith(t(",c")) && s.endsWith(TestType('c')) && s.endsWith(Plain(t(",c")))));
}

TEMPLATE_TEST_CASE("String: replacing, trimming and case", "", char, wchar_t)
{
    const auto t = &text<TestType>;
    CHECK(t("aaa").replaceAll(t("a"), t("aa")) == t("aaaaaa")); // It goes on behind what it put in.
    CHECK(t("aaa").replaceAll(t("aa"), t("b")) == t("ba"));
    CHECK(t("abc").replaceAll(t(""), t("x")) == t("abc"));
    CHECK(t("abc").replaceAll(std::basic_string<TestType>(t("b")), t("x").c_str()) == t("axc"));

    const BasicString<TestType> s = t(" \t\r\n x y\v\f ");
    CHECK(s.trimLeft() == t("x y\v\f "));
    CHECK(s.trimRight() == t(" \t\r\n x y"));
    CHECK(s.trim() == t("x y"));
    CHECK(t(" \n ").trim().empty());
    CHECK(t("aBc1").toUpper() == t("ABC1"));
    BasicString<TestType> lower = t("ABC");
    CHECK(lower.makeLower() == t("abc"));
    CHECK(lower == t("abc"));
}

TEST_CASE("String: characters above 127 pass through trimming and case")
{
    std::string all;
    for (int c = 128; c < 256; ++c)
        all += static_cast<char>(c);
    CHECK(String(all).toLower().toUpper().trim() == all);
}

TEST_CASE("String: numbers and the clock")
{
    CHECK(String(-255, 10) == "-255");
    CHECK(WideString(-1, 16) == L"ffffffff");
    CHECK(String::fromInt(INT_MIN, 2) == "1" + std::string(31, '0'));
    CHECK(String(4000000000u, 16) == "ee6b2800");
    CHECK(WideString::fromInt(UINT64_MAX) == L"18446744073709551615");
    CHECK(String(INT64_MIN, 10) == "-9223372036854775808");
    CHECK(String(short(-1), 36u) == String(65535, 36)); // Two's complement of its own width.
    CHECK_THROWS_AS(String(1u, 37), std::invalid_argument);
    CHECK_THROWS_AS(String(1, 1), std::invalid_argument);
    CHECK(String(" 42x").toInt() == 42);
    CHECK(WideString(L"x").toInt() == 0);
    CHECK(String::Time()[2] == ':');
    CHECK(WideString::Date()[5] == L'/');
}

TEST_CASE("String: fromFormat cuts at 2000 characters")
{
    for (unsigned length : {0u, 1999u, 2000u, 2001u, 2500u}) {
        const std::string source(length, 'x');
        CHECK(String::fromFormat("%s", source.c_str()) == source.substr(0, 2000));
        CHECK(WideString::fromFormat(L"%s", std::wstring(length, L'x').c_str()) ==
              std::wstring(std::min(length, 2000u), L'x'));
    }
    CHECK(String::fromFormat("%d %s %c", 7, "a", 0) == std::string("7 a \0", 5));
    errno = EDOM;
    CHECK(String::fromFormat("%c%2500d", 0, 1).size() == 2000);
    CHECK(errno == EDOM);
}

TEST_CASE("String: string-table entries come in both widths, missing ones empty")
{
    const HMODULE resources = LoadLibraryA("resources.dll");
    REQUIRE(resources);
    CHECK(String::fromResource(1, resources) == "Short");
    CHECK(WideString::fromResource(2, resources).endsWith(L", \x41C\x43E\x441\x43A\x432\x430"));
    CHECK(String::fromResource(99, resources).empty());
    CHECK(WideString::fromResource(1, nullptr).empty());
    FreeLibrary(resources);
}

TEMPLATE_TEST_CASE("String: path elements count from either end", "", char, wchar_t)
{
    const struct {
        const char* path;
        std::vector<const char*> elements;
    } rows[] = {
        {"C:\\dir\\file.txt", {"C:\\", "dir", "file.txt"}},
        {"C:\\dir\\", {"C:\\", "dir"}},
        {"\\", {"\\"}},
        {"\\dir\\file", {"\\", "dir", "file"}},
        {"a\\b\\c\\", {"a", "b", "c"}},
        {"", {""}},
        {"file", {"file"}},
        {"C:", {"C:\\"}},
    };
    for (const auto& [path, elements] : rows) {
        CAPTURE(path);
        const BasicString<TestType> tested = text<TestType>(path), separator = text<TestType>("\\");
        const int count = static_cast<int>(elements.size());
        for (int i = 0; i < count; ++i) {
            const BasicString<TestType> element = text<TestType>(elements[static_cast<unsigned>(i)]);
            CHECK(tested.getPathElement(i) == element);
            // From the back nothing is left before a leading separator.
            CHECK(tested.getPathElement(i - count) == (element == separator ? text<TestType>("") : element));
        }
        CHECK(tested.getPathElement(count).empty());
        CHECK(tested.getPathElement(-9) == tested.getPathElement(-count));
    }
    CHECK(text<TestType>("C:\\file.txt").getDirectory() == text<TestType>("C:"));
    CHECK(text<TestType>("C:\\dir\\sub\\").getDirectory() == text<TestType>("C:\\dir"));
    CHECK(text<TestType>("file").getDirectory() == text<TestType>(""));
}

TEMPLATE_TEST_CASE("String: mergePath resolves a path against a folder", "", char, wchar_t)
{
    const char* rows[][3] = {
        {"C:\\a\\b", "x", "C:\\a\\b\\x"},
        {"C:\\a\\b\\", "..\\x", "C:\\a\\x"},
        {"C:\\a", "..\\..\\..\\x", "C:\\x"},
        {"C:", "x", "C:\\x"},
        {"a\\b", "..\\x\\..\\y", "a\\x\\..\\y"},
        {"a", "..\\..\\x", "..\\x"},
        {"C:\\a", "..x", "C:\\a\\..x"},
        {"", "x", "x"},
        {"C:\\a", "", "C:\\a"},
        {"C:\\a\\b", ".\\..\\.\\x\\", "C:\\a\\x\\"},
        {"C:\\a", ".", "C:\\a"},
        {"C:\\a", "..", "C:\\"},
        {"C:\\a", "\\x", "\\x"},
        {"C:\\a", "D:x", "D:x"},
    };
    for (const auto& [base, relative, merged] : rows) {
        CAPTURE(base, relative);
        CHECK(BasicString<TestType>::mergePath(text<TestType>(base), text<TestType>(relative)) ==
              text<TestType>(merged));
    }
}

TEST_CASE("String: format fills in its arguments")
{
    CHECK(String("a%1b%2c%%d%0e%").format("X", nullptr) == "aXbc%d%0e%");
    CHECK(String("%9%8%1%1").format("1", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "8", "9") == "9811");
    CHECK(WideString(L"<%1>").format(L"%2", L"no") == L"<%2>");
    CHECK(String("%1%2%3").format(std::string("a"), String("b"), nullptr) == "ab");
}

TEST_CASE("char_traits_nc: only A to Z are folded")
{
    using Traits = char_traits_nc<char>;
    using NoCase = std::basic_string<char, Traits>;
    CHECK(NoCase("Hello") == NoCase("hELLO"));
    CHECK(NoCase("a") < NoCase("B"));
    CHECK(NoCase("Z") > NoCase("a"));
    CHECK_FALSE(Traits::eq('\xC4', '\xE4'));
    CHECK_FALSE(Traits::eq('@', '`'));
    CHECK((Traits::eq_int_type('A', 'a') && !Traits::eq_int_type(Traits::eof(), 0xFF)));
    static_assert(std::is_same_v<decltype(NoCase("a") <=> NoCase("A")), std::weak_ordering>);
    const char data[] = "xyZ";
    CHECK(Traits::find(data, 3, 'z') == data + 2);
    CHECK(Traits::find(data, 2, 'z') == nullptr);
}

TEMPLATE_TEST_CASE("StringHelper: the runtime's functions take and give texts of their width", "", char, wchar_t)
{
    using Helper = StringHelper<TestType>;
    using Text = BasicString<TestType>;
    const Text upper = text<TestType>("ABC"), lower = text<TestType>("abd");
    CHECK((Helper::convert(upper.c_str()).data() == upper.c_str() && Helper::convert(upper.c_str(), 2).length() == 2));
    CHECK(Helper::convert(static_cast<const TestType*>(nullptr)).storedLength() == 0);
    CHECK((Helper::icmp(upper, text<TestType>("abc")) == 0 && Helper::icmp(upper, lower) < 0));
    CHECK((Helper::nicmp(upper, lower, 2) == 0 && Helper::nicmp(upper, lower, 3) < 0));
    TestType buffer[L_tmpnam + 10] = {'a', 'B', 0};
    CHECK(Text(Helper::lwr(buffer)) == text<TestType>("ab"));
    CHECK(Text(Helper::upr(buffer)) == text<TestType>("AB"));
    CHECK((Text(Helper::itos(-7, buffer, 10)) == text<TestType>("-7") &&
           Text(Helper::ltos(255, buffer, 16)) == text<TestType>("ff")));
    const Text date = Helper::date(buffer), time = Helper::time(buffer);
    CHECK((date.size() == 8 && date[2] == '/' && time.size() == 8 && time[2] == ':'));
    CHECK(!Text(Helper::tmpnam(buffer)).empty());
    const Text prefix = text<TestType>("pre");
    const std::unique_ptr<TestType, decltype(&free)> name(Helper::tempnam(nullptr, prefix.c_str()), free);
    CHECK(Text(name.get()).find(prefix) != Text::npos);
    const ScratchFolder folder;
    const std::filesystem::path made = folder.path() / "made";
    const auto path = made.string<TestType>();
    CHECK((Helper::mkdir(path.c_str()) == 0 && is_directory(made) && Helper::mkdir(path.c_str()) != 0));
}
