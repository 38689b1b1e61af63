#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>
#include <tarn/WindowsModule.h>

#include "ScratchKey.h"

using support::ScratchKey;
using tarn::RegistryKey;

namespace {
template <class... Arguments> LONG ntdll(const char* name, Arguments... arguments)
{
    const auto procedure = tarn::WindowsModule("ntdll.dll", false).getProcAddress(name, false);
    return reinterpret_cast<LONG(WINAPI*)(Arguments...)>(reinterpret_cast<void*>(procedure))(arguments...);
}

/// "\REGISTRY\USER\...": what links point to.
std::wstring kernelNameOf(HKEY key)
{
    struct {
        ULONG size;
        wchar_t text[600];
    } name = {};
    ULONG used = 0;
    REQUIRE(ntdll("NtQueryKey", key, 3, &name, ULONG(sizeof name), &used) == 0);
    return std::wstring(name.text, name.size / sizeof(wchar_t));
}

/// A link, made new when it gets a target. Goes before the tree that it stands in is deleted: the platform's
/// calls follow it.
class Link {
public:
    Link(HKEY parent, const std::wstring& target)
    {
        const auto bytes = reinterpret_cast<const BYTE*>(target.c_str());
        const auto size = static_cast<DWORD>(target.size() * sizeof(wchar_t));
        REQUIRE(RegCreateKeyExW(parent, L"link", 0, nullptr, REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS | KEY_CREATE_LINK,
                                nullptr, &key_, nullptr) == ERROR_SUCCESS);
        REQUIRE(RegSetValueExW(key_, L"SymbolicLinkValue", 0, REG_LINK, bytes, size) == ERROR_SUCCESS);
    }
    explicit Link(HKEY parent)
    {
        REQUIRE(RegOpenKeyExW(parent, L"link", REG_OPTION_OPEN_LINK, KEY_ALL_ACCESS, &key_) == ERROR_SUCCESS);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link()
    {
        ntdll("NtDeleteKey", key_);
        RegCloseKey(key_);
    }

    HKEY key() const { return key_; }

private:
    HKEY key_ = nullptr;
};
} // namespace

TEST_CASE("RegistryKey: AddContentFrom copies a link as a link, also one that leads back", "[registry]")
{
    const ScratchKey scratch;
    scratch.storeText(L"from", L"v", L"text");
    scratch.makeKey(L"to");
    const RegistryKey from(scratch, L"from", KEY_ALL_ACCESS);
    const RegistryKey to(scratch, L"to", KEY_ALL_ACCESS);
    const Link link(from, kernelNameOf(from));
    REQUIRE(scratch.hasKey(L"from\\link\\link"));

    to.AddContentFrom(from);
    const Link copy(to);
    CHECK_FALSE(RegistryKey(copy.key(), false).hasSubkeys());
    CHECK(RegistryKey(copy.key(), false).GetValueType(L"SymbolicLinkValue") == REG_LINK);
    CHECK(scratch.hasValue(L"to\\link", L"v"));
    CHECK_NOTHROW(to.AddContentFrom(from));
}
