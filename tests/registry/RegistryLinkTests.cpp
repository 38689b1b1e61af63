#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>
#include <tarn/WindowsModule.h>

#include "ScratchKey.h"

using support::ScratchKey;
using tarn::RegistryKey;

namespace {
template <class Procedure> Procedure kernelProcedure(const char* name)
{
    return reinterpret_cast<Procedure>(
        reinterpret_cast<void*>(tarn::WindowsModule("ntdll.dll", false).getProcAddress(name, false)));
}

/// "\REGISTRY\USER\...": what links point to.
std::wstring kernelNameOf(HKEY key)
{
    struct {
        ULONG size;
        wchar_t text[600];
    } name = {};
    ULONG used = 0;
    const auto query = kernelProcedure<LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*)>("NtQueryKey");
    REQUIRE(query(key, 3, &name, sizeof name, &used) == 0);
    return std::wstring(name.text, name.size / sizeof(wchar_t));
}

/// A link that goes before the tree that it stands in is deleted: the platform's calls follow it.
class Link {
public:
    explicit Link(HKEY key) : key_(key, true) {}
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() { kernelProcedure<LONG(WINAPI*)(HANDLE)>("NtDeleteKey")(key_); }

    const RegistryKey& key() const { return key_; }

private:
    RegistryKey key_;
};

HKEY makeLink(HKEY parent, const wchar_t* name, const std::wstring& target)
{
    HKEY key = nullptr;
    REQUIRE(RegCreateKeyExW(parent, name, 0, nullptr, REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS | KEY_CREATE_LINK, nullptr,
                            &key, nullptr) == ERROR_SUCCESS);
    REQUIRE(RegSetValueExW(key, L"SymbolicLinkValue", 0, REG_LINK, reinterpret_cast<const BYTE*>(target.c_str()),
                           static_cast<DWORD>(target.size() * sizeof(wchar_t))) == ERROR_SUCCESS);
    return key;
}

HKEY openLink(HKEY parent, const wchar_t* name)
{
    HKEY key = nullptr;
    REQUIRE(RegOpenKeyExW(parent, name, REG_OPTION_OPEN_LINK, KEY_ALL_ACCESS, &key) == ERROR_SUCCESS);
    return key;
}
} // namespace

TEST_CASE("RegistryKey: AddContentFrom copies a link as a link, also one that leads back", "[registry]")
{
    const ScratchKey scratch;
    scratch.storeText(L"from", L"v", L"text");
    scratch.makeKey(L"to");
    const RegistryKey from(scratch, L"from", KEY_ALL_ACCESS);
    const RegistryKey to(scratch, L"to", KEY_ALL_ACCESS);
    const Link link(makeLink(from, L"link", kernelNameOf(from)));
    REQUIRE(scratch.hasKey(L"from\\link\\link"));

    to.AddContentFrom(from);
    const Link copy(openLink(to, L"link"));
    CHECK(copy.key().getSubkeyCount() == 0);
    CHECK(copy.key().GetValueType(L"SymbolicLinkValue") == REG_LINK);
    CHECK(scratch.hasValue(L"to\\link", L"v"));
    CHECK_NOTHROW(to.AddContentFrom(from));
}
