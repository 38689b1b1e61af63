#pragma once

#include <tarn/Windows.h>

#include <string>
#include <vector>

namespace support {
/// What the registry stores under one name, as the platform's own calls tell it.
struct StoredValue {
    unsigned long type = REG_NONE;
    std::vector<unsigned char> data;
    bool operator==(const StoredValue&) const = default;
};

/// A new key of the current user's, removed with everything in it at the end. Reads and writes with the
/// platform's own calls, so that tests can look past the classes that they test. What is made after it has to leave no
/// handle open.
class ScratchKey {
public:
    /// So many handles may stay nevertheless: beside a second thread Wine now and then keeps one, of the platform's
    /// calls alone, too, and however many they are.
    explicit ScratchKey(unsigned long spareHandles = 0);
    ScratchKey(const ScratchKey&) = delete;
    ScratchKey& operator=(const ScratchKey&) = delete;
    ~ScratchKey();

    operator HKEY() const { return key_; }
    HKEY key() const { return key_; }
    /// Below `HKEY_CURRENT_USER`.
    const std::wstring& path() const { return path_; }

    void makeKey(const wchar_t* subkey, const wchar_t* className = nullptr) const;
    bool hasKey(const wchar_t* subkey) const;
    std::wstring classOf(const wchar_t* subkey) const;

    /// The values of `subkey`, which is made when it is missing; an empty one is the scratch key itself.
    void store(const wchar_t* subkey, const wchar_t* name, unsigned long type,
               const std::vector<unsigned char>& data) const;
    void storeText(const wchar_t* subkey, const wchar_t* name, const wchar_t* text) const;
    bool hasValue(const wchar_t* subkey, const wchar_t* name) const;
    /// `REG_NONE` without data when there is none.
    StoredValue stored(const wchar_t* subkey, const wchar_t* name) const;

private:
    std::wstring path_;
    HKEY key_ = nullptr;
    int exceptions_;
    unsigned long handles_, spareHandles_;
};

/// The bytes of a text with its terminator.
std::vector<unsigned char> bytesOf(const std::wstring& text);
} // namespace support
