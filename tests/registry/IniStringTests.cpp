#include "Test.h"

#include <tarn/IniString.h>

#include "ScratchFolder.h"
#include "TextOf.h"

TEMPLATE_TEST_CASE("getIniString: an entry, or the default when there is none", "", char, wchar_t)
{
    const ScratchFolder folder;
    folder.write("a.ini", "[one]\r\nname= \"some text\" \r\nempty=\r\n");
    folder.write("empty.ini", "");
    const auto& [file, section, key, expected] =
        GENERATE(table<const char*, const char*, const char*, const char*>({{"a.ini", "one", "name", "some text"},
                                                                            {"a.ini", "one", "empty", ""},
                                                                            {"a.ini", "one", "none", "no"},
                                                                            {"a.ini", "two", "name", "no"},
                                                                            {"empty.ini", "one", "name", "no"},
                                                                            {"missing.ini", "one", "name", "no"}}));
    using Text = BasicString<TestType>;
    CAPTURE(file, section, key);
    CHECK(getIniString(Text(folder.file(file).c_str()), Text(section).c_str(), Text(key).c_str(), TEXT_OF("no")) ==
          Text(expected));
}

TEMPLATE_TEST_CASE("getIniString: values round the first buffer's size come whole", "", char, wchar_t)
{
    const ScratchFolder folder;
    const std::size_t length = GENERATE(998u, 999u, 1000u, 2000u, 30000u);
    const std::string value(length, 'x');
    const BasicString<TestType> file(folder.write("long.ini", "[s]\r\nk=" + value + "\r\n"));
    CHECK(
        (getIniString(file, TEXT_OF("s"), TEXT_OF("k"), TEXT_OF("")) == BasicString<TestType>(length, TestType('x'))));
}

TEMPLATE_TEST_CASE("getIniString: without a key or section it lists all the names", "", char, wchar_t)
{
    const ScratchFolder folder;
    // 200 names of 9 characters and a zero: more than the first buffer holds.
    std::string text = "[first]\r\n";
    std::string expected;
    for (int i = 0; i < 200; ++i) {
        const std::string name = "name-" + std::to_string(1000 + i);
        text += name + "=1\r\n";
        expected += name + '\0';
    }
    const BasicString<TestType> file(folder.write("names.ini", text + "[second]\r\n"));
    const auto keys = getIniString(file, TEXT_OF("first"), nullptr, TEXT_OF(""));
    CHECK(keys == BasicString<TestType>(expected.begin(), expected.end()));
    const std::string sections("first\0second\0", 13);
    CHECK(getIniString(file, nullptr, nullptr, TEXT_OF("")) == BasicString<TestType>(sections.begin(), sections.end()));
}

TEMPLATE_TEST_CASE("setIniString: writes, replaces and deletes entries", "", char, wchar_t)
{
    const ScratchFolder folder;
    const BasicString<TestType> file(folder.file("new.ini"));
    setIniString(file, TEXT_OF("s"), TEXT_OF("a"), TEXT_OF("1"));
    setIniString(file, TEXT_OF("s"), TEXT_OF("b"), TEXT_OF("2"));
    setIniString(file, TEXT_OF("s"), TEXT_OF("a"), TEXT_OF("3"));
    CHECK(folder.read("new.ini") == "[s]\r\na=3\r\nb=2\r\n");
    setIniString(file, TEXT_OF("s"), TEXT_OF("a"), nullptr);
    CHECK(folder.read("new.ini") == "[s]\r\nb=2\r\n");
}

TEMPLATE_TEST_CASE("setIniString: a failure names file, section, key and value", "", char, wchar_t)
{
    const ScratchFolder folder;
    const auto path = folder.file("none\\a.ini");
    const BasicString<TestType> file(path);
    expectWindowsError([&] { setIniString(file, TEXT_OF("s"), TEXT_OF("k"), TEXT_OF("v")); }, ERROR_PATH_NOT_FOUND,
                       "Can't write private profile string \"" + path + "\" : [s] k=\"v\"");
    expectWindowsError([&] { setIniString(file, TEXT_OF("s"), nullptr, nullptr); }, ERROR_PATH_NOT_FOUND,
                       "Can't write private profile string \"" + path + "\" : [s] =\"\"");
    if (isWine()) // A file that takes nothing.
        expectWindowsError([] { setIniString("Z:\\dev\\full", "s", "k", "v"); }, ERROR_DISK_FULL,
                           "Can't write private profile string \"Z:\\dev\\full\" : [s] k=\"v\"");
}

TEMPLATE_TEST_CASE("setIniString: a line break is refused, and writes no other entry", "", char, wchar_t)
{
    const ScratchFolder folder;
    const auto path = folder.write("a.ini", "[s]\r\nk=v\r\n");
    const BasicString<TestType> file(path);
    expectWindowsError([&] { setIniString(file, TEXT_OF("s"), TEXT_OF("k"), TEXT_OF("x\n[admin]\nyes=1")); },
                       ERROR_INVALID_PARAMETER,
                       "Can't write private profile string \"" + path + "\" : [s] k=\"x\n[admin]\nyes=1\"");
    CHECK_THROWS_AS(setIniString(file, TEXT_OF("s"), TEXT_OF("k\r"), TEXT_OF("x")), WindowsError);
    CHECK_THROWS_AS(setIniString(file, TEXT_OF("s"), TEXT_OF("k"), TEXT_OF("x\r")), WindowsError);
    for (const TestType* section : {TEXT_OF("s]\n[t"), TEXT_OF("s\r")})
        CHECK_THROWS_AS(setIniString(file, section, TEXT_OF("k"), nullptr), WindowsError);
    CHECK(folder.read("a.ini") == "[s]\r\nk=v\r\n");
    CHECK_NOTHROW(setIniString(file, TEXT_OF("s]t"), TEXT_OF("k"), TEXT_OF("v"))); // Nor can these be read again.
    for (const TestType* const key : {TEXT_OF(";k"), TEXT_OF("[k"), TEXT_OF("a=b")})
        CHECK_NOTHROW(setIniString(file, TEXT_OF("s"), key, TEXT_OF("v")));
    for (const char* const value : {"", " \"a b\" ", "'", ";"})
        CHECK_NOTHROW(setIniString(file, TEXT_OF("s"), TEXT_OF("k"), BasicString<TestType>(value)));
}

TEST_CASE("Profile strings: a UTF-16 file keeps texts that no code page has")
{
    const ScratchFolder folder;
    const std::string text("\xFF\xFE[\0s\0]\0\r\0\n\0k\0=\0\x40\x04\r\0\n\0", 22);
    const BasicString<wchar_t> file = folder.file(L"wide.ini");
    folder.write("wide.ini", text);
    CHECK(getIniString(file, L"s", L"k", L"") == L"\x0440");
    setIniString(file, L"s", L"k", L"\x0441\x4E2D");
    CHECK(getIniString(file, L"s", L"k", L"") == L"\x0441\x4E2D");
    CHECK(folder.read("wide.ini") == std::string("\xFF\xFE[\0s\0]\0\r\0\n\0k\0=\0\x41\x04\x2D\x4E\r\0\n\0", 24));
}
