#include "Test.h"

#include <tarn/RegistryKey.h>

#include "ScratchKey.h"
#include "TextOf.h"

TEST_CASE("RegistryKey: deleteAllValues deletes values of any name and keeps the subkeys")
{
    const ScratchKey scratch;
    scratch.storeText(L"", L"", L"default");
    scratch.storeText(L"", L"\x4E2D\x0441", L"no code page has this name");
    for (const wchar_t* name : {L"1", L"2", L"3", L"4"})
        scratch.storeText(L"", name, L"text");
    scratch.storeText(L"sub", L"v", L"stays");
    const RegistryKey key(scratch, false);
    key.deleteAllValues();
    CHECK(key.getValueCount() == 0);
    CHECK(scratch.hasValue(L"sub", L"v"));
}

TEMPLATE_TEST_CASE("RegistryKey: deleteKeyRecursive deletes a subtree only", "", char, wchar_t)
{
    const ScratchKey scratch;
    scratch.makeKey(L"a\\b\\c");
    scratch.makeKey(L"a\\\x4E2D\\no code page has this name");
    scratch.makeKey((L"a\\" + std::wstring(255, L'd')).c_str(), std::wstring(900, L'c').c_str());
    scratch.storeText(L"a\\b", L"v", L"text");
    scratch.makeKey(L"ab");
    const RegistryKey key(scratch, false);
    key.deleteKeyRecursive(TEXT_OF("a"));
    CHECK((!scratch.hasKey(L"a") && scratch.hasKey(L"ab")));
    expectWindowsError([&] { key.deleteKeyRecursive(TEXT_OF("a")); }, ERROR_FILE_NOT_FOUND, "Registry key not found");
    const TestType* const none = nullptr;
    expectWindowsError([&] { key.deleteKeyRecursive(none); }, ERROR_INVALID_PARAMETER, "");
    expectWindowsError([&] { key.cleanEmptyTree(none); }, ERROR_INVALID_PARAMETER, "");
    expectWindowsError([&] { key.deleteKey(none); }, ERROR_INVALID_PARAMETER, "");
    CHECK(scratch.hasKey(L"ab"));
}

TEMPLATE_TEST_CASE("RegistryKey: cleanEmptyTree judges a key by what is in it", "", char, wchar_t)
{
    const auto& [what, fill, isDeleted] = GENERATE(table<const char*, void (*)(const ScratchKey&), bool>({
        {"nothing", [](const ScratchKey&) {}, true},
        {"a default value without data", [](const ScratchKey& s) { s.store(L"k", L"", REG_SZ, {}); }, true},
        {"a default value of a byte", [](const ScratchKey& s) { s.store(L"k", L"", REG_BINARY, {1}); }, false},
        {"an empty default text", [](const ScratchKey& s) { s.storeText(L"k", L"", L""); }, false},
        {"one value", [](const ScratchKey& s) { s.storeText(L"k", L"v", L"text"); }, true},
        {"two values", [](const ScratchKey& s) { s.storeText(L"k", L"v", L""), s.storeText(L"k", L"w", L""); }, false},
        {"empty keys", [](const ScratchKey& s) { s.makeKey(L"k\\a\\b\\c"), s.makeKey(L"k\\a\\d"); }, true},
        {"a used key", [](const ScratchKey& s) { s.makeKey(L"k\\a\\b"), s.storeText(L"k\\c", L"", L""); }, false},
    }));
    CAPTURE(what);
    const ScratchKey scratch;
    scratch.makeKey(L"k");
    fill(scratch);
    const RegistryKey key(scratch, false);
    key.cleanEmptyTree(TEXT_OF("k")); // And leaves no handle open, as ScratchKey sees.
    CHECK(scratch.hasKey(L"k") != isDeleted);
    CHECK_FALSE(scratch.hasKey(L"k\\a"));
    expectWindowsError([&] { key.cleanEmptyTree(TEXT_OF("none")); }, ERROR_FILE_NOT_FOUND, "Registry key not found");
}

TEST_CASE("RegistryKey: AddContentFrom copies all types, class names and subkeys, and merges")
{
    const ScratchKey scratch;
    scratch.store(L"from", L"", REG_SZ, {'a', 0});
    scratch.store(L"from", L"odd", 0x12345, {1, 2, 3});
    scratch.store(L"from", L"none", REG_NONE, {});
    scratch.store(L"from", L"\x4E2D", REG_MULTI_SZ, {'a', 0});
    scratch.store(L"from", L"same", REG_DWORD, {1, 2, 3, 4});
    const std::wstring className(900, L'c');
    scratch.makeKey(L"from\\sub\\\x0441\\deeper", className.c_str());
    scratch.storeText(L"to", L"same", L"replaced");
    scratch.storeText(L"to\\sub", L"other", L"stays");
    scratch.makeKey(L"from\\kept", L"new class");
    scratch.makeKey(L"to\\kept", L"old class");

    scratch.storeText(L"from\\like a link", L"SymbolicLinkValue", L"");
    scratch.store(L"from\\like a link, too", L"SymbolicLinkValue", REG_LINK, {});
    scratch.storeText(L"from\\like a link, too", L"v", L"");

    RegistryKey target(scratch, L"to", KEY_ALL_ACCESS);
    target += RegistryKey(scratch, L"from", KEY_READ);
    CHECK((scratch.hasValue(L"to\\like a link", L"SymbolicLinkValue") &&
           scratch.hasValue(L"to\\like a link, too", L"v")));
    for (const wchar_t* name : {L"", L"odd", L"none", L"\x4E2D", L"same"}) {
        CHECK(scratch.hasValue(L"to", name));
        CHECK(scratch.stored(L"to", name) == scratch.stored(L"from", name));
    }
    CHECK(scratch.classOf(L"to\\sub\\\x0441\\deeper") == className);
    CHECK(scratch.classOf(L"to\\kept") == L"old class");
    CHECK(scratch.hasValue(L"to\\sub", L"other"));
}

TEST_CASE("RegistryKey: a key copied into its own subtree, or out of it, gives what was there before")
{
    struct Row {
        const wchar_t *from, *to;
        std::vector<std::pair<const wchar_t*, const wchar_t*>> texts;
    };
    const auto row = GENERATE(values<Row>({
        {L"", L"t", {{L"", L"top"}, {L"t", L"top"}, {L"t\\b", L"b"}, {L"t\\t", L"t"}, {L"t\\t\\b", L"tb"}}},
        {L"t", L"", {{L"", L"t"}, {L"b", L"tb"}, {L"t", L"t"}, {L"t\\b", L"tb"}}},
        {L"", L"", {{L"", L"top"}, {L"b", L"b"}, {L"t", L"t"}, {L"t\\b", L"tb"}}},
    }));
    const ScratchKey scratch;
    scratch.storeText(L"", L"v", L"top");
    scratch.storeText(L"b", L"v", L"b");
    scratch.storeText(L"t", L"v", L"t");
    scratch.storeText(L"t\\b", L"v", L"tb");
    RegistryKey(scratch, row.to, KEY_ALL_ACCESS).AddContentFrom(RegistryKey(scratch, row.from, KEY_READ));
    for (const auto& [subkey, text] : row.texts)
        CHECK(RegistryKey(scratch, subkey, KEY_READ).getStringValue(L"v") == text);
    CHECK_FALSE(scratch.hasKey(L"t\\t\\t"));
}

TEST_CASE("RegistryKey: trees as deep as the registry allows are copied and deleted")
{
    const ScratchKey scratch;
    RegistryKey inner(scratch, L"", KEY_ALL_ACCESS);
    for (int level = 0; level < 500; ++level)
        inner = RegistryKey::createOwned(inner, L"k", KEY_ALL_ACCESS);
    const RegistryKey key(scratch, false);
    // A volatile key has volatile subkeys only.
    const RegistryKey copy =
        RegistryKey::createOwned(scratch, L"copy", nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, nullptr);
    copy.AddContentFrom(RegistryKey(scratch, L"k", KEY_READ));
    key.deleteKeyRecursive(L"k");
    key.cleanEmptyTree(L"copy");
    CHECK_FALSE(key.hasSubkeys());
}

TEST_CASE("RegistryKey: AddContentFrom reports a source or target that does not allow it")
{
    const ScratchKey scratch;
    scratch.storeText(L"from", L"v", L"text");
    const RegistryKey source(scratch, L"from", KEY_READ);
    expectWindowsError([&] { RegistryKey().AddContentFrom(source); }, ERROR_INVALID_HANDLE, "");
    expectWindowsError([&] { RegistryKey(scratch, false).AddContentFrom(RegistryKey()); }, ERROR_INVALID_HANDLE, "");
    const RegistryKey readOnly(scratch, L"", KEY_READ);
    expectWindowsError([&] { readOnly.AddContentFrom(source); }, ERROR_ACCESS_DENIED, "");
}
