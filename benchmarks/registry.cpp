#include <catch2/catch.hpp>

#include <tarn/RegistryKey.h>

#include "Growth.h"
#include "Ratios.h"
#include "ScratchKey.h"

#include <map>
#include <string>
#include <vector>

namespace {
constexpr int count = 10000;
constexpr double limit = 1.1;

/// 10,000 subkeys and 10,000 values below one key.
class Filled {
public:
    Filled()
    {
        for (int i = 0; i < count; ++i) {
            const std::wstring number = std::to_wstring(i);
            HKEY key = nullptr;
            RegCreateKeyW(keys_, (L"subkey " + number).c_str(), &key);
            RegCloseKey(key);
            values_.storeText(L"", (L"value " + number).c_str(), L"data");
        }
    }

    HKEY keys() const { return keys_; }
    HKEY values() const { return values_; }

private:
    support::ScratchKey keys_;
    support::ScratchKey values_;
};

template <class Ch> std::size_t snapshotKeys(HKEY key) { return tarn::RegistryKey::KeyEnumeration<Ch>(key).size(); }
template <class Ch> std::size_t snapshotValues(HKEY key) { return tarn::RegistryKey::ValueEnumeration<Ch>(key).size(); }

// What a user writes by hand: the platform's loop, keeping the same fields of each entry.
template <class Ch> struct RawKey {
    std::basic_string<Ch> name;
    std::basic_string<Ch> className;
    FILETIME lastWriteTime;
};
template <class Ch> struct RawValue {
    std::basic_string<Ch> name;
    DWORD type;
    DWORD size;
};

template <class Ch, class Enumerate> std::size_t rawKeys(HKEY key, Enumerate enumerate)
{
    std::vector<RawKey<Ch>> keys;
    Ch name[256];
    Ch className[256];
    FILETIME time;
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = 256, classLength = 256;
        if (enumerate(key, index, name, &nameLength, nullptr, className, &classLength, &time) != ERROR_SUCCESS)
            return keys.size();
        keys.push_back({{name, nameLength}, {className, classLength}, time});
    }
}

template <class Ch, class Enumerate> std::size_t rawValues(HKEY key, Enumerate enumerate)
{
    std::vector<RawValue<Ch>> values;
    Ch name[256];
    for (DWORD index = 0;; ++index) {
        DWORD nameLength = 256, type = 0, size = 0;
        if (enumerate(key, index, name, &nameLength, nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
            return values.size();
        values.push_back({{name, nameLength}, type, size});
    }
}
} // namespace

TEST_CASE("Registry: snapshots against the platform's enumeration loop")
{
    const Filled filled;
    CHECK(snapshotKeys<wchar_t>(filled.keys()) == count);
    CHECK(rawKeys<wchar_t>(filled.keys(), RegEnumKeyExW) == count);
    CHECK(snapshotValues<char>(filled.values()) == count);
    CHECK(rawValues<char>(filled.values(), RegEnumValueA) == count);

    bench::Ratios ratios("Snapshots of 10,000 entries, against the raw loop that keeps the same");
    ratios.row(
        "subkeys, wide", limit, [&] { bench::keep(snapshotKeys<wchar_t>(filled.keys())); },
        [&] { bench::keep(rawKeys<wchar_t>(filled.keys(), RegEnumKeyExW)); }, bench::Clock::wall);
    ratios.row(
        "subkeys, narrow", limit, [&] { bench::keep(snapshotKeys<char>(filled.keys())); },
        [&] { bench::keep(rawKeys<char>(filled.keys(), RegEnumKeyExA)); }, bench::Clock::wall);
    ratios.row(
        "values, wide", limit, [&] { bench::keep(snapshotValues<wchar_t>(filled.values())); },
        [&] { bench::keep(rawValues<wchar_t>(filled.values(), RegEnumValueW)); }, bench::Clock::wall);
    ratios.row(
        "values, narrow", limit, [&] { bench::keep(snapshotValues<char>(filled.values())); },
        [&] { bench::keep(rawValues<char>(filled.values(), RegEnumValueA)); }, bench::Clock::wall);
}

TEST_CASE("Registry: growth", "[.growth]")
{
    const bench::Growth growth("A snapshot of the values of a key", "values", bench::Clock::wall);
    std::map<unsigned, support::ScratchKey> filled; // Making the last one takes longer than all that is measured.
    const std::vector<unsigned> sizes = bench::tens(2, 5);
    for (const unsigned size : sizes)
        for (unsigned i = 0; i < size; ++i)
            filled[size].storeText(L"", std::to_wstring(i).c_str(), L"data");
    growth.line("library", sizes,
                [&](unsigned size) { return [&key = filled[size]] { bench::keep(snapshotValues<wchar_t>(key)); }; });
    growth.line("loop by hand", sizes, [&](unsigned size) {
        return [&key = filled[size]] { bench::keep(rawValues<wchar_t>(key, RegEnumValueW)); };
    });
}
