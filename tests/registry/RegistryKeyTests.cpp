#include "Test.h"

#include <tarn/ChangeList.h>
#include <tarn/RegistryKey.h>

#include "ScratchKey.h"
#include "TextOf.h"

#include <optional>

TEMPLATE_TEST_CASE("RegistryKey: owns the key that it opens, and tells a missing one", "", char, wchar_t)
{
    const ScratchKey scratch;
    scratch.makeKey(L"B");
    const auto before = openHandles();
    {
        RegistryKey key(scratch, TEXT_OF(""), KEY_READ);
        CHECK(key.ownsKey());
        CHECK(key.open(scratch, TEXT_OF("B"), KEY_READ));
        CHECK(openHandles() == before + 1);
        CHECK_FALSE(key.open(scratch, TEXT_OF("None"), KEY_READ));
        CHECK((!key.ownsKey() && key.isNull() && openHandles() == before));
        key.open(scratch, TEXT_OF("B"), KEY_READ);
        expectWindowsError([&] { key.open(nullptr, TEXT_OF("B"), KEY_READ); }, ERROR_INVALID_HANDLE, "");
        CHECK((!key.ownsKey() && key.isNull() && openHandles() == before));
        key.open(scratch, TEXT_OF("B"), KEY_READ);
    }
    CHECK(openHandles() == before);
    expectWindowsError([&] { RegistryKey(scratch, TEXT_OF("None"), KEY_READ); }, ERROR_FILE_NOT_FOUND,
                       "Registry key not found");
    expectWindowsError([&] { RegistryKey(nullptr, TEXT_OF("B"), KEY_READ); }, ERROR_INVALID_HANDLE, "");
}

TEMPLATE_TEST_CASE("RegistryKey: create leaves the key open and unowned", "", char, wchar_t)
{
    const ScratchKey scratch;
    const auto before = openHandles();
    HKEY created = nullptr;
    {
        RegistryKey key(scratch, TEXT_OF(""), KEY_READ); // Which is closed.
        key.create(scratch, TEXT_OF("New"), KEY_ALL_ACCESS);
        CHECK_FALSE(key.ownsKey());
        key.close();
        created = key;
    }
    CHECK(scratch.hasKey(L"New"));
    scratch.makeKey(L"New\\below"); // Which a volatile key would not take.
    CHECK(openHandles() == before + 1);
    RegistryKey(created, true).close();
    {
        const RegistryKey owned = RegistryKey::createOwned(scratch, TEXT_OF("Owned"), KEY_READ | KEY_WOW64_64KEY);
        CHECK((owned.ownsKey() && owned.getView() == KEY_WOW64_64KEY && scratch.hasKey(L"Owned")));
        scratch.makeKey(L"Owned\\below");
    }
    CHECK(openHandles() == before);
}

TEMPLATE_TEST_CASE("RegistryKey: create passes class and disposition on", "", char, wchar_t)
{
    const ScratchKey scratch;
    RegistryKey key;
    for (const unsigned long expected : {REG_CREATED_NEW_KEY, REG_OPENED_EXISTING_KEY}) {
        unsigned long disposition = 0;
        key.create(scratch, TEXT_OF("Deep\\Key"), TEXT_OF("A class"), REG_OPTION_NON_VOLATILE, KEY_READ, nullptr,
                   &disposition);
        RegCloseKey(key);
        CHECK(disposition == expected);
        CHECK(scratch.classOf(L"Deep\\Key") == L"A class");
    }
    expectWindowsError([&] { key.create(nullptr, TEXT_OF("Deep"), KEY_READ); }, ERROR_INVALID_HANDLE, "");
    CHECK(key.isNull());
}

TEST_CASE("RegistryKey: close keeps the handle's value, and a failing one the ownership")
{
    const ScratchKey scratch;
    RegistryKey key(scratch, L"", KEY_READ);
    key.close();
    CHECK_FALSE(key.ownsKey());
    CHECK(key.isOpen());
    CHECK_NOTHROW(key.close());

    key.open(scratch, L"", KEY_READ);
    RegCloseKey(key);
    expectWindowsError([&] { key.close(); }, ERROR_INVALID_HANDLE, "");
    CHECK(key.ownsKey());
    expectWindowsError([&] { key.attach(HKEY_CURRENT_USER, false); }, ERROR_INVALID_HANDLE, "");
    key.detach();
}

TEST_CASE("RegistryKey: keys move into and out of containers, and each is closed once")
{
    static_assert(std::is_nothrow_move_assignable_v<RegistryKey>);
    const ScratchKey scratch;
    const auto before = openHandles();
    {
        std::vector<RegistryKey> keys;
        for (const wchar_t* name : {L"a", L"b", L"c"})
            keys.push_back(RegistryKey::createOwned(scratch, name, KEY_ALL_ACCESS));
        keys.erase(keys.begin());
        std::swap(keys[0], keys[1]);
        keys[0].setValue(L"v", 1);
        CHECK(scratch.hasValue(L"c", L"v"));
        std::optional<RegistryKey> key = std::move(keys[1]);
        RegCloseKey(*key);
        keys[1] = std::move(*key); // What is owned and cannot be closed is no reason to throw.
        RegCloseKey(keys[0]);
        keys[0] = RegistryKey::createOwned(scratch, L"a", KEY_ALL_ACCESS);
        keys[1].detach();
    }
    CHECK(openHandles() == before);
}

TEST_CASE("RegistryKey: a copy of an owned key stands alone, a copy of a borrowed one borrows")
{
    const ScratchKey scratch;
    scratch.makeKey(L"Sub");
    const auto before = openHandles();
    {
        RegistryKey copy;
        {
            const RegistryKey key(scratch, L"Sub", KEY_READ);
            copy = key;
            copy = key; // Lets go of the first copy.
            CHECK(copy.getKey() != key.getKey());
        }
        copy = std::as_const(copy);
        CHECK(copy.ownsKey());

        const RegistryKey moved = std::move(copy);
        CHECK(moved.getValueCount() == 0);
        CHECK(copy.isNull());
    }
    CHECK(openHandles() == before);

    const RegistryKey root(HKEY_CURRENT_USER, false), borrowed = root;
    CHECK(borrowed.getKey() == HKEY_CURRENT_USER);
    CHECK_FALSE(borrowed.ownsKey());
    const RegistryKey owned(HKEY_CURRENT_USER, true), copied = owned;
    CHECK((copied.getKey() == HKEY_CURRENT_USER && copied.existsKey(L"Software")));
}

TEST_CASE("RegistryKey: keeps the view that it was opened in, as long as it has the key")
{
    const ScratchKey scratch;
    RegistryKey key(scratch, L"", KEY_READ | KEY_WOW64_64KEY);
    CHECK((key.getView() == KEY_WOW64_64KEY && RegistryKey(key).getView() == KEY_WOW64_64KEY));
    RegistryKey moved(std::move(key));
    CHECK((moved.getView() == KEY_WOW64_64KEY && key.getView() == 0));
    key = std::move(moved);
    CHECK((key.getView() == KEY_WOW64_64KEY && moved.getView() == 0));
    CHECK((!key.open(scratch, L"none", KEY_READ | KEY_WOW64_64KEY) && key.getView() == 0));
    key.open(scratch, "", KEY_READ | KEY_WOW64_32KEY);
    CHECK(key.getView() == KEY_WOW64_32KEY);
    scratch.makeKey(L"sub");
    CHECK(RegistryKey(key, L"sub", KEY_READ).getView() == KEY_WOW64_32KEY);
    CHECK(RegistryKey::createOwned(key, "sub", KEY_READ | KEY_WOW64_64KEY).getView() == KEY_WOW64_64KEY);
    RegistryKey inner;
    CHECK((inner.open(key, "sub", KEY_READ) && inner.getView() == KEY_WOW64_32KEY));
    const HKEY detached = key.detach();
    CHECK(key.getView() == 0);
    moved.open(scratch, L"", KEY_READ | KEY_WOW64_64KEY);
    moved.attach(detached, true);
    CHECK(moved.getView() == 0);
}

TEMPLATE_TEST_CASE("RegistryKey: a key is there until it is deleted", "", char, wchar_t)
{
    const ScratchKey scratch;
    scratch.makeKey(L"Sub\\Inner");
    const RegistryKey key(scratch, false);
    const auto before = openHandles();
    CHECK(key.existsKey(TEXT_OF("Sub")));
    CHECK(RegistryKey::existsKey(scratch, TEXT_OF("Sub\\Inner")));
    CHECK_FALSE(key.existsKey(TEXT_OF("None")));
    CHECK_FALSE(RegistryKey::existsKey(nullptr, TEXT_OF("Sub")));
    CHECK(openHandles() == before);

    expectWindowsError([&] { key.deleteKey(TEXT_OF("Sub")); }, ERROR_ACCESS_DENIED, "");
    key.deleteKey(TEXT_OF("Sub\\Inner"));
    CHECK_FALSE(scratch.hasKey(L"Sub\\Inner"));
    expectWindowsError([&] { key.deleteKey(TEXT_OF("None")); }, ERROR_FILE_NOT_FOUND, "");
}

TEST_CASE("RegistryKey: what is below a key is made, found and deleted in the view of that key")
{
    constexpr unsigned long otherView = sizeof(void*) == 4 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
    const RegistryKey other(HKEY_LOCAL_MACHINE, L"", KEY_ALL_ACCESS | otherView);
    const ScratchKey scratch;
    scratch.makeKey(L"Software\\TarnTestView");
    ChangeList changes(otherView);
    changes.createKey(HKEY_LOCAL_MACHINE, L"Software\\TarnTestView");
    const std::function<void()> deletions[] = {[&] { other.deleteKey("Software\\TarnTestView"); },
                                               [&] { other.deleteKey(L"Software\\TarnTestView"); },
                                               [&] { other.deleteKeyRecursive("Software\\TarnTestView"); },
                                               [&] { other.deleteKeyRecursive(L"Software\\TarnTestView"); },
                                               [&] { other.cleanEmptyTree("Software\\TarnTestView"); },
                                               [&] { other.cleanEmptyTree(L"Software\\TarnTestView"); }};
    for (const auto& remove : deletions) {
        &remove == deletions ? changes.apply() : other.AddContentFrom(RegistryKey(scratch, false));
        CHECK((other.existsKey("Software\\TarnTestView") && other.existsKey(L"Software\\TarnTestView")));
        CHECK(RegistryKey::existsKey(HKEY_LOCAL_MACHINE, L"Software\\TarnTestView", otherView));
        CHECK_FALSE(RegistryKey::existsKey(HKEY_LOCAL_MACHINE, L"Software\\TarnTestView"));
        remove();
        CHECK_FALSE(other.existsKey(L"Software\\TarnTestView"));
    }
}
