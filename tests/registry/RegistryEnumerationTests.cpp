#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>

#include "Expect.h"
#include "ScratchKey.h"
#include "TextOf.h"

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
    scratch.makeKey(L"K\\abc", L"seven c");
    scratch.makeKey(L"K\\defgh");
    scratch.store(L"K", L"value", REG_BINARY, {1, 2, 3});
    scratch.makeKey(L"C", L"my class");
    const RegistryKey key(scratch, L"K", KEY_ALL_ACCESS);

    using Info = RegistryKey::Info<TestType>;
    const auto untouched = [] {
        Info info;
        info.className = TEXT_OF("x");
        info.subkeyCount = info.maxSubkeyLength = info.maxClassLength = info.valueCount = info.maxValueNameLength =
            info.maxValueDataSize = info.securityDescriptorSize = 99;
        return info;
    };
    Info info = untouched();
    key.getInfo(info, 0x1FF);
    CHECK(info.className.empty());
    CHECK(info.subkeyCount == 2);
    CHECK(info.maxSubkeyLength == 5);
    CHECK(info.maxClassLength == 7);
    CHECK(info.valueCount == 1);
    CHECK(info.maxValueNameLength == 5);
    CHECK(info.maxValueDataSize == 3);
    CHECK(info.lastWriteTime.dwHighDateTime != 0);

    const unsigned long Info::*const counts[] = {&Info::subkeyCount,        &Info::maxSubkeyLength,
                                                 &Info::maxClassLength,     &Info::valueCount,
                                                 &Info::maxValueNameLength, &Info::maxValueDataSize};
    const unsigned short bits[] = {0x002, 0x004, 0x008, 0x010, 0x020, 0x040};
    for (std::size_t asked = 0; asked < 6; ++asked) {
        Info single = untouched();
        key.getInfo(single, bits[asked]);
        for (std::size_t i = 0; i < 6; ++i)
            CHECK(single.*counts[i] == (i == asked ? info.*counts[i] : 99));
        CHECK(single.className == TEXT_OF("x"));
        CHECK(single.lastWriteTime.dwHighDateTime == 0);
        CHECK(single.securityDescriptorSize == 99);
    }

    Info none = untouched();
    key.getInfo(none, 0);
    CHECK(none.subkeyCount == 99);
    RegistryKey(scratch, L"C", KEY_READ).getInfo(none, RegistryKey::infoClassName);
    CHECK(none.className == TEXT_OF("my class"));
    expectWindowsError([&] { RegistryKey().getInfo(none, 0); }, ERROR_INVALID_HANDLE, "");
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
