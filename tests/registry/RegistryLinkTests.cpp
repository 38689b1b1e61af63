#include "Test.h"

#include <tarn/RegistryKey.h>
#include <tarn/WindowsModule.h>

#include "ScratchKey.h"
#include "TextOf.h"

#include <winternl.h>

// What only the kernel's own calls make: links, and names with a zero in them.

namespace {
template <class... Arguments> void ntdll(const char* name, Arguments... arguments)
{
    const auto procedure = WindowsModule("ntdll.dll", false).getProcAddress(name, false);
    REQUIRE(reinterpret_cast<LONG(WINAPI*)(Arguments...)>(reinterpret_cast<void*>(procedure))(arguments...) == 0);
}

/// "\REGISTRY\USER\...": what links point to.
std::wstring kernelNameOf(HKEY key)
{
    struct {
        ULONG size;
        wchar_t text[600];
    } name = {};
    ULONG used = 0;
    ntdll("NtQueryKey", key, 3, &name, ULONG(sizeof name), &used);
    return std::wstring(name.text, name.size / sizeof(wchar_t));
}

void makeLink(const ScratchKey& scratch, const wchar_t* path, const wchar_t* targetPath)
{
    scratch.makeKey(targetPath);
    const std::wstring target = kernelNameOf(RegistryKey(scratch, targetPath, KEY_READ));
    HKEY opened = nullptr;
    REQUIRE(RegCreateKeyExW(scratch, path, 0, nullptr, REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS | KEY_CREATE_LINK,
                            nullptr, &opened, nullptr) == ERROR_SUCCESS);
    RegistryKey(opened, true)
        .setValue(L"SymbolicLinkValue", reinterpret_cast<const unsigned char*>(target.c_str()),
                  static_cast<unsigned long>(target.size() * sizeof(wchar_t)), REG_LINK);
}

bool isLink(const ScratchKey& scratch, const wchar_t* path)
{
    HKEY opened = nullptr;
    REQUIRE(RegOpenKeyExW(scratch, path, REG_OPTION_OPEN_LINK, KEY_READ, &opened) == ERROR_SUCCESS);
    return RegistryKey(opened, true).existsValue(L"SymbolicLinkValue");
}

UNICODE_STRING counted(std::wstring& name)
{
    const auto size = static_cast<USHORT>(name.size() * sizeof(wchar_t));
    return {size, size, name.data()};
}

std::wstring withZero(L"a\0b", 3);
} // namespace

TEMPLATE_TEST_CASE("RegistryKey: a link is deleted as a link, and its target stays, at every level", "", char, wchar_t)
{
    const ScratchKey scratch;
    scratch.storeText(L"other\\sub", L"v", L"text");
    scratch.makeKey(L"tree\\deep");
    makeLink(scratch, L"tree\\deep\\back", L"tree");
    makeLink(scratch, L"tree\\out", L"other");
    makeLink(scratch, L"top", L"other");
    const RegistryKey key(scratch, false);
    SECTION("deleteKeyRecursive")
    {
        key.deleteKeyRecursive(TEXT_OF("tree"));
        key.deleteKeyRecursive(TEXT_OF("top"));
    }
    SECTION("cleanEmptyTree")
    {
        key.cleanEmptyTree(TEXT_OF("tree"));
        key.cleanEmptyTree(TEXT_OF("top"));
    }
    SECTION("deleteKey")
    {
        for (const TestType* name : {TEXT_OF("tree\\deep\\back"), TEXT_OF("tree\\deep"), TEXT_OF("tree\\out"),
                                     TEXT_OF("tree"), TEXT_OF("top")})
            key.deleteKey(name);
    }
    CHECK_FALSE((scratch.hasKey(L"tree") || scratch.hasKey(L"top")));
    CHECK(scratch.hasValue(L"other\\sub", L"v"));
}

TEST_CASE("RegistryKey: AddContentFrom copies a link as a link, also one that leads back")
{
    const ScratchKey scratch;
    scratch.storeText(L"from", L"v", L"text");
    scratch.makeKey(L"to");
    makeLink(scratch, L"from\\link", L"from");
    const RegistryKey from(scratch, L"from", KEY_READ), to(scratch, L"to", KEY_ALL_ACCESS);
    to.AddContentFrom(from);
    CHECK((isLink(scratch, L"to\\link") && scratch.hasValue(L"to\\link", L"v")));
    CHECK_NOTHROW(to.AddContentFrom(from));
    RegistryKey(scratch, false).deleteKeyRecursive(L"from");
    to.deleteKey(L"link");
}

TEST_CASE("RegistryKey: AddContentFrom does not write through a link, nor over a key a link")
{
    const ScratchKey scratch;
    scratch.storeText(L"from\\sub", L"v", L"text");
    scratch.storeText(L"other", L"kept", L"text");
    makeLink(scratch, L"to\\sub", L"other");
    RegistryKey(scratch, L"to", KEY_ALL_ACCESS).AddContentFrom(RegistryKey(scratch, L"from", KEY_READ));
    CHECK((scratch.hasValue(L"to\\sub", L"v") && !scratch.hasValue(L"to\\sub", L"kept")));
    CHECK((scratch.hasValue(L"other", L"kept") && !scratch.hasValue(L"other", L"v")));

    makeLink(scratch, L"links\\sub", L"other");
    expectWindowsError(
        [&] { RegistryKey(scratch, L"to", KEY_ALL_ACCESS).AddContentFrom(RegistryKey(scratch, L"links", KEY_READ)); },
        ERROR_ALREADY_EXISTS, "Can't replace a registry key by a link");
    CHECK(scratch.hasValue(L"to\\sub", L"v"));
    RegistryKey(scratch, false).deleteKeyRecursive(L"links");
}

TEST_CASE("RegistryKey: names with a zero are copied and deleted like others")
{
    const ScratchKey scratch;
    scratch.makeKey(L"to");
    scratch.storeText(L"from", L"a", L"another");
    scratch.storeText(L"from\\a", L"v", L"text");
    const RegistryKey from(scratch, L"from", KEY_ALL_ACCESS), to(scratch, L"to", KEY_ALL_ACCESS);
    UNICODE_STRING name = counted(withZero);
    HKEY subkey = nullptr;
    OBJECT_ATTRIBUTES place;
    InitializeObjectAttributes(&place, &name, 0, from.getKey(), nullptr);
    ntdll("NtCreateKey", &subkey, ULONG(KEY_ALL_ACCESS), &place, 0ul, nullptr, 0ul, nullptr);
    const std::string data(1000, 'd'); // More than the first buffer holds.
    for (HKEY key : {from.getKey(), subkey})
        ntdll("NtSetValueKey", key, &name, 0ul, ULONG(REG_BINARY), data.data(), 1000ul);
    RegCloseKey(subkey);

    to.AddContentFrom(from);
    struct {
        ULONG index, type, size;
        char data[1000];
    } copied{};
    ULONG size = 0;
    ntdll("NtQueryValueKey", to.getKey(), &name, 2, &copied, ULONG(sizeof copied), &size);
    CHECK((copied.type == REG_BINARY && copied.size == 1000 && std::string(copied.data, 1000) == data));
    CHECK(RegistryKey::ValueEnumeration<wchar_t>(to).begin()[1].name == withZero);
    CHECK((to.getSubkeyCount() == 2 && scratch.hasValue(L"to\\a", L"v")));
    to.deleteAllValues();
    CHECK(to.getValueCount() == 0);
    RegistryKey(scratch, false).deleteKeyRecursive(L"to");
    CHECK_FALSE(scratch.hasKey(L"to"));
    RegistryKey(scratch, false).deleteKeyRecursive(L"from");
}
