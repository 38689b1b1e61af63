#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>

#include "Expect.h"
#include "ScratchKey.h"
#include "TextOf.h"

#include <utility>

using support::bytesOf;
using support::expectWindowsError;
using support::ScratchKey;
using tarn::BasicString;
using tarn::RegistryKey;

TEMPLATE_TEST_CASE("KeyEnumeration: names, classes and times of the subkeys, in the platform's order", "[registry]",
                   char, wchar_t)
{
    const ScratchKey scratch;
    const std::wstring longName(255, L'k');
    scratch.makeKey(L"b", L"class of b");
    scratch.makeKey(L"a");
    scratch.makeKey(longName.c_str());
    const RegistryKey::KeyEnumeration<TestType> keys(scratch);
    REQUIRE(keys.size() == 3);
    DWORD index = 0;
    for (const auto& entry : keys) {
        wchar_t name[256];
        wchar_t className[256];
        DWORD nameLength = 256, classLength = 256;
        FILETIME time;
        REQUIRE(RegEnumKeyExW(scratch, index++, name, &nameLength, nullptr, className, &classLength, &time) == 0);
        CHECK(entry.name == BasicString<TestType>(name));
        CHECK(entry.className == BasicString<TestType>(className));
        CHECK(CompareFileTime(&entry.lastWriteTime, &time) == 0);
    }
    CHECK(keys.begin()[1].className == TEXT_OF("class of b"));
    CHECK(RegistryKey::KeyEnumeration<TestType>(RegistryKey(scratch, TEXT_OF("a"), KEY_READ)).empty());
    expectWindowsError([] { RegistryKey::KeyEnumeration<TestType>(nullptr); }, ERROR_INVALID_HANDLE, "");
}

TEMPLATE_TEST_CASE("KeyEnumeration: is a copy that outlives the keys", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    scratch.makeKey(L"a");
    scratch.makeKey(L"b");
    RegistryKey::KeyEnumeration<TestType> keys(scratch);
    const RegistryKey::KeyEnumeration<TestType> copy = keys;
    const RegistryKey key(scratch, false);
    for (const auto& entry : keys)
        key.deleteKey(entry.name);
    keys = RegistryKey::KeyEnumeration<TestType>(scratch);
    CHECK(keys.begin() == keys.end());
    CHECK(copy.size() == 2);
    CHECK(copy.begin()->name == TEXT_OF("a"));
}

TEMPLATE_TEST_CASE("ValueEnumeration: names, types and sizes of the values, however long the names", "[registry]", char,
                   wchar_t)
{
    const ScratchKey scratch;
    CHECK(RegistryKey::ValueEnumeration<TestType>(scratch).empty());
    const std::wstring longName(16383, L'v');
    scratch.storeText(L"", L"", L"default");
    scratch.store(L"", L"number", REG_DWORD, {1, 2, 3, 4});
    scratch.store(L"", longName.c_str(), 0x77, {1, 2, 3});
    const RegistryKey::ValueEnumeration<TestType> values(scratch);
    REQUIRE(values.size() == 3);
    for (const auto& entry : values) {
        if (entry.name.empty()) {
            CHECK(entry.type == REG_SZ);
        } else if (entry.name == TEXT_OF("number")) {
            CHECK(entry.type == REG_DWORD);
            CHECK(entry.size == 4);
        } else {
            CHECK(entry.name == BasicString<TestType>(longName.c_str()));
            CHECK(entry.type == 0x77);
            CHECK(entry.size == 3);
        }
    }
    expectWindowsError([] { RegistryKey::ValueEnumeration<TestType>(nullptr); }, ERROR_INVALID_HANDLE, "");
}

TEST_CASE("ValueEnumeration: texts are counted in the bytes of the width", "[registry]")
{
    const ScratchKey scratch;
    scratch.storeText(L"", L"v", L"text");
    CHECK(RegistryKey::ValueEnumeration<char>(scratch).begin()->size == 5);
    CHECK(RegistryKey::ValueEnumeration<wchar_t>(scratch).begin()->size == 10);
}

TEMPLATE_TEST_CASE("RegistryKey: getInfo fills in what is asked for and nothing else", "[registry]", char, wchar_t)
{
    const ScratchKey scratch;
    scratch.store(L"K", L"value1", REG_BINARY, {1, 2, 3});
    scratch.makeKey(L"K", L"my class");
    scratch.makeKey(L"K\\abc", L"seven c");
    scratch.makeKey(L"K\\defgh");
    const RegistryKey key(scratch, L"K", KEY_ALL_ACCESS);

    RegistryKey::Info<TestType> info;
    key.getInfo(info, 0);
    CHECK(info.subkeyCount + info.valueCount + info.maxSubkeyLength + info.lastWriteTime.dwHighDateTime == 0);
    const std::pair<unsigned short, unsigned long> expected[] = {{0x002, 2}, {0x004, 5}, {0x008, 7},
                                                                 {0x010, 1}, {0x020, 6}, {0x040, 3}};
    for (const auto& [asked, result] : expected) {
        RegistryKey::Info<TestType> single;
        key.getInfo(single, asked);
        const unsigned long counts[] = {single.subkeyCount, single.maxSubkeyLength,    single.maxClassLength,
                                        single.valueCount,  single.maxValueNameLength, single.maxValueDataSize};
        for (std::size_t i = 0; i < 6; ++i)
            CHECK(counts[i] == (expected[i].first == asked ? result : 0));
        CHECK(single.lastWriteTime.dwHighDateTime == 0);
    }
    key.getInfo(info, 0x181);
    CHECK(info.className == TEXT_OF("my class"));
    CHECK(info.lastWriteTime.dwHighDateTime != 0);
    CHECK(info.subkeyCount == 0);
    expectWindowsError([&] { RegistryKey().getInfo(info, 0); }, ERROR_INVALID_HANDLE, "");
}

TEST_CASE("RegistryKey: counts and the time of the last write", "[registry]")
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    CHECK_FALSE(key.hasSubkeys());
    CHECK(key.getValueCount() == 0);
    scratch.makeKey(L"a");
    scratch.storeText(L"", L"v", L"");
    scratch.storeText(L"", L"w", L"");
    CHECK(key.hasSubkeys());
    CHECK(key.getSubkeyCount() == 1);
    CHECK(key.getValueCount() == 2);

    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const auto ticks = [](FILETIME time) { return (INT64(time.dwHighDateTime) << 32) + time.dwLowDateTime; };
    const INT64 age = ticks(now) - ticks(key.GetLastWriteTime());
    CHECK(age < INT64(10000000) * 600);
    CHECK(age > INT64(10000000) * -600);
}
