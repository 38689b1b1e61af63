#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>

#include "Expect.h"
#include "Handles.h"
#include "ScratchKey.h"
#include "TextOf.h"

using support::bytesOf;
using support::expectWindowsError;
using support::ScratchKey;
using support::StoredValue;
using tarn::RegistryKey;

TEST_CASE("RegistryKey: deleteAllValues deletes values of any name and keeps the subkeys", "[registry]")
{
    const ScratchKey scratch;
    scratch.storeText(L"", L"", L"default");
    scratch.storeText(L"", L"\x4E2D\x0441", L"no code page has this name");
    for (int i = 0; i < 20; ++i)
        scratch.storeText(L"", std::to_wstring(i).c_str(), L"text");
    scratch.storeText(L"sub", L"v", L"stays");
    const RegistryKey key(scratch, false);
    key.deleteAllValues();
    CHECK(key.getValueCount() == 0);
    CHECK(scratch.hasValue(L"sub", L"v"));
}

TEMPLATE_TEST_CASE("RegistryKey: deleteKeyRecursive deletes a subtree and nothing beside it", "[registry]", char,
                   wchar_t)
{
    const ScratchKey scratch;
    scratch.makeKey(L"a\\b\\c");
    scratch.makeKey(L"a\\d");
    scratch.storeText(L"a\\b", L"v", L"text");
    scratch.makeKey(L"ab");
    const RegistryKey key(scratch, false);
    const auto before = support::openHandles();
    key.deleteKeyRecursive(TEXT_OF("a"));
    CHECK_FALSE(scratch.hasKey(L"a"));
    CHECK(scratch.hasKey(L"ab"));
    CHECK(support::openHandles() == before);
    expectWindowsError([&] { key.deleteKeyRecursive(TEXT_OF("a")); }, ERROR_FILE_NOT_FOUND, "Registry key not found");
    expectWindowsError([&] { RegistryKey().deleteKeyRecursive(TEXT_OF("a")); }, ERROR_FILE_NOT_FOUND,
                       "Registry key not found");
}

TEMPLATE_TEST_CASE("RegistryKey: cleanEmptyTree judges a key by its subkeys, values and default value", "[registry]",
                   char, wchar_t)
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const auto isDeleted = [&] {
        key.cleanEmptyTree(TEXT_OF("k"));
        return !scratch.hasKey(L"k");
    };
    scratch.makeKey(L"k");
    SECTION("nothing in it: deleted") { CHECK(isDeleted()); }
    SECTION("a default value without data: deleted")
    {
        scratch.store(L"k", L"", REG_SZ, {});
        CHECK(isDeleted());
    }
    SECTION("a default value that is an empty text with terminator: kept")
    {
        scratch.storeText(L"k", L"", L"");
        CHECK_FALSE(isDeleted());
    }
    SECTION("one value with a name: deleted")
    {
        scratch.storeText(L"k", L"v", L"text");
        CHECK(isDeleted());
    }
    SECTION("two values with names: kept")
    {
        scratch.storeText(L"k", L"v", L"");
        scratch.storeText(L"k", L"w", L"");
        CHECK_FALSE(isDeleted());
    }
    SECTION("the tree below it all empty: deleted")
    {
        scratch.makeKey(L"k\\a\\b\\c");
        scratch.makeKey(L"k\\a\\d");
        CHECK(isDeleted());
    }
    SECTION("a key below it in use: kept, without the empty ones beside it")
    {
        scratch.makeKey(L"k\\a\\b");
        scratch.storeText(L"k\\used", L"", L"text");
        CHECK_FALSE(isDeleted());
        CHECK_FALSE(scratch.hasKey(L"k\\a"));
        CHECK(scratch.hasKey(L"k\\used"));
    }
}

TEMPLATE_TEST_CASE("RegistryKey: cleanEmptyTree of a missing key is an error and leaks nothing", "[registry]", char,
                   wchar_t)
{
    const ScratchKey scratch;
    scratch.makeKey(L"a\\b");
    scratch.storeText(L"a\\c", L"", L"text");
    const RegistryKey key(scratch, false);
    const auto before = support::openHandles();
    key.cleanEmptyTree(TEXT_OF("a"));
    CHECK(support::openHandles() == before);
    expectWindowsError([&] { key.cleanEmptyTree(TEXT_OF("b")); }, ERROR_FILE_NOT_FOUND, "Registry key not found");
}

TEST_CASE("RegistryKey: AddContentFrom copies all types, class names and subkeys, and merges", "[registry]")
{
    const ScratchKey scratch;
    scratch.store(L"from", L"", REG_SZ, {'a', 0});
    scratch.store(L"from", L"odd", 0x12345, {1, 2, 3});
    scratch.store(L"from", L"none", REG_NONE, {});
    scratch.store(L"from", L"\x4E2D", REG_MULTI_SZ, {'a', 0});
    scratch.store(L"from", L"same", REG_DWORD, {1, 2, 3, 4});
    scratch.makeKey(L"from\\sub\\\x0441\\deeper", L"a class");
    scratch.storeText(L"to", L"same", L"replaced");
    scratch.storeText(L"to\\sub", L"other", L"stays");
    scratch.makeKey(L"from\\kept", L"new class");
    scratch.makeKey(L"to\\kept", L"old class");

    const auto before = support::openHandles();
    RegistryKey target(scratch, L"to", KEY_ALL_ACCESS);
    target += RegistryKey(scratch, L"from", KEY_READ);
    CHECK(support::openHandles() == before + 1);
    for (const wchar_t* name : {L"", L"odd", L"none", L"\x4E2D", L"same"}) {
        CHECK(scratch.hasValue(L"to", name));
        CHECK(scratch.stored(L"to", name) == scratch.stored(L"from", name));
    }
    CHECK(scratch.classOf(L"to\\sub\\\x0441\\deeper") == L"a class");
    CHECK(scratch.classOf(L"to\\kept") == L"old class");
    CHECK(scratch.stored(L"to\\sub", L"other") == StoredValue{REG_SZ, bytesOf(L"stays")});
}

TEST_CASE("RegistryKey: a key copied into its own subtree, or out of it, gives what was there before", "[registry]")
{
    const ScratchKey scratch;
    scratch.storeText(L"", L"v", L"top");
    scratch.storeText(L"b", L"v", L"b");
    scratch.storeText(L"t", L"v", L"t");
    scratch.storeText(L"t\\b", L"v", L"tb");
    const RegistryKey whole(scratch, false);
    const auto text = [&](const wchar_t* subkey) {
        return RegistryKey(scratch, subkey, KEY_READ).getStringValue(L"v");
    };
    SECTION("into a subkey")
    {
        RegistryKey(scratch, L"t", KEY_ALL_ACCESS).AddContentFrom(whole);
        CHECK(text(L"t") == L"top");
        CHECK(text(L"t\\b") == L"b");
        CHECK(text(L"t\\t") == L"t");
        CHECK(text(L"t\\t\\b") == L"tb");
        CHECK_FALSE(scratch.hasKey(L"t\\t\\t"));
    }
    SECTION("from a subkey")
    {
        whole.AddContentFrom(RegistryKey(scratch, L"t", KEY_READ));
        CHECK(text(L"") == L"t");
        CHECK(text(L"b") == L"tb");
        CHECK(text(L"t") == L"t");
        CHECK(text(L"t\\b") == L"tb");
    }
    SECTION("into itself")
    {
        whole.AddContentFrom(whole);
        CHECK(text(L"t\\b") == L"tb");
        CHECK(whole.getSubkeyCount() == 2);
    }
}

TEST_CASE("RegistryKey: AddContentFrom reports a source or target that does not allow it", "[registry]")
{
    const ScratchKey scratch;
    scratch.storeText(L"from", L"v", L"text");
    const RegistryKey source(scratch, L"from", KEY_READ);
    expectWindowsError([&] { RegistryKey().AddContentFrom(source); }, ERROR_INVALID_HANDLE, "");
    expectWindowsError([&] { RegistryKey(scratch, false).AddContentFrom(RegistryKey()); }, ERROR_INVALID_HANDLE, "");
    const RegistryKey readOnly(scratch, L"", KEY_READ);
    expectWindowsError([&] { readOnly.AddContentFrom(source); }, ERROR_ACCESS_DENIED, "");
}
