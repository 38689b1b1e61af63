#include "Test.h"

#include <tarn/RegistryKey.h>

#include "ScratchKey.h"
#include "TextOf.h"

#include <map>
#include <tuple>

TEMPLATE_TEST_CASE("KeyEnumeration: names, classes and times in the platform's order", "", char, wchar_t)
{
    using Text = BasicString<TestType>;
    const ScratchKey scratch;
    const std::wstring longName(255, L'k');
    scratch.makeKey(L"b", L"class of b");
    scratch.makeKey(L"a");
    scratch.makeKey(longName.c_str());
    const RegistryKey::KeyEnumeration<TestType> keys(scratch);
    REQUIRE(keys.size() == 3);
    const std::pair<Text, Text> expected[] = {
        {TEXT_OF("a"), TEXT_OF("")}, {TEXT_OF("b"), TEXT_OF("class of b")}, {Text(longName), TEXT_OF("")}};
    for (std::size_t i = 0; i < 3; ++i) {
        CHECK(keys.begin()[i].name == expected[i].first);
        CHECK(keys.begin()[i].className == expected[i].second);
        const FILETIME time = RegistryKey(scratch, expected[i].first, KEY_READ).GetLastWriteTime();
        CHECK(time.dwHighDateTime != 0);
        CHECK(CompareFileTime(&keys.begin()[i].lastWriteTime, &time) == 0);
    }
    auto copy = keys; // Which outlives the keys.
    for (const auto& entry : copy)
        RegistryKey(scratch, false).deleteKey(entry.name);
    CHECK((keys.size() == 3 && copy.begin()->name == TEXT_OF("a")));
    copy = RegistryKey::KeyEnumeration<TestType>(scratch);
    CHECK((copy.empty() && copy.begin() == copy.end()));
    expectWindowsError([] { RegistryKey::KeyEnumeration<TestType>(nullptr); }, ERROR_INVALID_HANDLE, "");
}

TEMPLATE_TEST_CASE("ValueEnumeration: names, types and sizes, however long the names", "", char, wchar_t)
{
    using Text = BasicString<TestType>;
    const ScratchKey scratch;
    CHECK(RegistryKey::ValueEnumeration<TestType>(scratch).empty());
    const std::wstring longName(16383, L'v');
    scratch.storeText(L"", L"", L"default");
    scratch.store(L"", L"number", REG_DWORD, {1, 2, 3, 4});
    scratch.store(L"", longName.c_str(), 0x77, {1, 2, 3});
    std::map<Text, std::pair<unsigned long, unsigned long>> found;
    for (const auto& entry : RegistryKey::ValueEnumeration<TestType>(scratch))
        found[entry.name] = {entry.type, entry.size};
    CHECK(found.size() == 3);
    CHECK(found[Text()] ==
          std::pair(DWORD(REG_SZ), 8 * static_cast<unsigned long>(sizeof(TestType)))); // In the width's bytes.
    CHECK(found[TEXT_OF("number")] == std::pair(DWORD(REG_DWORD), 4ul));
    CHECK(found[Text(longName)] == std::pair(0x77ul, 3ul));
    expectWindowsError([] { RegistryKey::ValueEnumeration<TestType>(nullptr); }, ERROR_INVALID_HANDLE, "");
}

TEMPLATE_TEST_CASE("RegistryKey: getInfo fills in what is asked for and nothing else", "", char, wchar_t)
{
    using Info = RegistryKey::Info<TestType>;
    const ScratchKey scratch;
    scratch.store(L"K", L"value1", REG_BINARY, {1, 2, 3});
    scratch.makeKey(L"K", L"my class");
    scratch.makeKey(L"K\\abc", L"seven c");
    scratch.makeKey(L"K\\defgh");
    const RegistryKey key(scratch, L"K", KEY_ALL_ACCESS);
    const std::tuple<unsigned short, unsigned long Info::*, unsigned long> parts[] = {
        {0x002, &Info::subkeyCount, 2}, {0x004, &Info::maxSubkeyLength, 5},    {0x008, &Info::maxClassLength, 7},
        {0x010, &Info::valueCount, 1},  {0x020, &Info::maxValueNameLength, 6}, {0x040, &Info::maxValueDataSize, 3}};
    for (const unsigned short asked : std::vector<unsigned short>{0, 0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x181}) {
        CAPTURE(asked);
        Info info;
        key.getInfo(info, asked);
        for (const auto& [flag, member, value] : parts)
            CHECK(info.*member == (flag == asked ? value : 0));
        CHECK(info.className == (asked == 0x181 ? TEXT_OF("my class") : TEXT_OF("")));
        CHECK((info.lastWriteTime.dwHighDateTime != 0) == (asked == 0x181));
    }
    CHECK((key.hasSubkeys() && key.getSubkeyCount() == 2 && key.getValueCount() == 1));
    CHECK_FALSE(RegistryKey(key, L"abc", KEY_READ).hasSubkeys());
    expectWindowsError(
        [] {
            Info info;
            RegistryKey().getInfo(info, 0);
        },
        ERROR_INVALID_HANDLE, "");
}
