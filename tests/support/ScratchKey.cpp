#include "ScratchKey.h"

#include "Handles.h"

#include <catch2/catch.hpp>

#include <exception>
#include <stdexcept>

namespace support {
namespace {
void require(LSTATUS code, const char* what)
{
    if (code != ERROR_SUCCESS)
        throw std::runtime_error(what + (" failed with code " + std::to_string(code)));
}

/// A key opened by the platform's own calls.
class RawKey {
public:
    RawKey(HKEY parent, const wchar_t* subkey) : open_(RegOpenKeyExW(parent, subkey, 0, KEY_READ, &key_) == 0) {}
    RawKey(HKEY parent, const wchar_t* subkey, const wchar_t* className)
    {
        require(RegCreateKeyExW(parent, subkey, 0, const_cast<wchar_t*>(className), 0, KEY_ALL_ACCESS, nullptr, &key_,
                                nullptr),
                "RegCreateKeyExW");
        open_ = true;
    }
    RawKey(const RawKey&) = delete;
    RawKey& operator=(const RawKey&) = delete;
    ~RawKey()
    {
        if (open_)
            RegCloseKey(key_);
    }

    bool isOpen() const { return open_; }
    operator HKEY() const { return key_; }

private:
    HKEY key_ = nullptr;
    bool open_ = false;
};
} // namespace

ScratchKey::ScratchKey(unsigned long spareHandles) : spareHandles_(spareHandles)
{
    static int count = 0;
    path_ = L"Software\\tarn-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
    require(RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_, nullptr),
            "RegCreateKeyExW");
    exceptions_ = std::uncaught_exceptions(); // Before the handles are counted: its first call on a thread opens two.
    handles_ = openHandles();
}

ScratchKey::~ScratchKey()
{
    if (std::uncaught_exceptions() == exceptions_)
        CHECK(openHandles() - handles_ <= spareHandles_);
    RegDeleteTreeW(key_, nullptr);
    RegCloseKey(key_);
    RegDeleteKeyW(HKEY_CURRENT_USER, path_.c_str());
}

void ScratchKey::makeKey(const wchar_t* subkey, const wchar_t* className) const { RawKey(key_, subkey, className); }

bool ScratchKey::hasKey(const wchar_t* subkey) const { return RawKey(key_, subkey).isOpen(); }

std::wstring ScratchKey::classOf(const wchar_t* subkey) const
{
    wchar_t text[1000];
    DWORD length = 1000;
    require(RegQueryInfoKeyW(RawKey(key_, subkey), text, &length, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr),
            "RegQueryInfoKeyW");
    return std::wstring(text, length);
}

void ScratchKey::store(const wchar_t* subkey, const wchar_t* name, unsigned long type,
                       const std::vector<unsigned char>& data) const
{
    require(RegSetValueExW(RawKey(key_, subkey, nullptr), name, 0, type, data.data(), static_cast<DWORD>(data.size())),
            "RegSetValueExW");
}

void ScratchKey::storeText(const wchar_t* subkey, const wchar_t* name, const wchar_t* text) const
{
    store(subkey, name, REG_SZ, bytesOf(text));
}

bool ScratchKey::hasValue(const wchar_t* subkey, const wchar_t* name) const
{
    return RegQueryValueExW(RawKey(key_, subkey), name, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

StoredValue ScratchKey::stored(const wchar_t* subkey, const wchar_t* name) const
{
    const RawKey key(key_, subkey);
    StoredValue value;
    DWORD size = 0;
    if (RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS)
        return StoredValue();
    value.data.resize(size + 1);
    require(RegQueryValueExW(key, name, nullptr, nullptr, value.data.data(), &size), "RegQueryValueExW");
    value.data.resize(size);
    return value;
}

std::vector<unsigned char> bytesOf(const std::wstring& text)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.c_str());
    return std::vector<unsigned char>(bytes, bytes + (text.size() + 1) * sizeof(wchar_t));
}
} // namespace support
