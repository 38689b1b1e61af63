#include <tarn/SettingsStore.h>

#include <tarn/AtomicFile.h>
#include <tarn/FileSystem.h>
#include <tarn/IniString.h>
#include <tarn/RegistryKey.h>
#include <tarn/StandardStreams.h>
#include <tarn/WindowsFile.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "../foundation/ZeroSeparated.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {
namespace {
using Text = BasicString<wchar_t>;
using Values = SettingsStore::Values;

// A line break would end a value, and blanks at its ends would be lost in an INI file.
Text escaped(const Text& value)
{
    const Text line = value.replaceAll(L"\\", L"\\\\").replaceAll(L"\r", L"\\r").replaceAll(L"\n", L"\\n");
    return line.empty() || (line.front() > L' ' && line.back() > L' ' && line.front() != L'"' && line.front() != L'\'')
               ? line
               : L'"' + line + L'"';
}

Text unescaped(const Text& line)
{
    Text value;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isEscape = line[i] == L'\\' && i + 1 < line.size();
        const wchar_t c = isEscape ? line[++i] : line[i];
        value += !isEscape ? c : c == L'n' ? L'\n' : c == L'r' ? L'\r' : c;
    }
    return value;
}

Text withoutQuotes(const Text& line)
{
    const bool isQuoted = line.size() > 1 && line.front() == L'"' && line.back() == L'"';
    return isQuoted ? Text(line.substr(1, line.size() - 2)) : line;
}

Text lastOf(const Text& path) { return path + L".last"; }

// FNV-1a.
std::uint32_t checkSumOf(std::string_view data)
{
    std::uint32_t sum = 2166136261u;
    for (const char c : data)
        sum = (sum ^ static_cast<unsigned char>(c)) * 16777619u;
    return sum;
}

std::string contentOf(const Text& path)
{
    if (!FileSystem::isFile(path))
        return {};
    WindowsFile file = WindowsFile::openToRead(path.c_str());
    return readAll(file);
}

void write(const Text& path, const std::string& content)
{
    AtomicFile::save(path, content.data(), static_cast<unsigned>(content.size()));
}

/// Nothing when the file is damaged, or not there.
std::optional<Values> valuesIn(const std::string& content)
{
    const std::size_t end = content.find('\n');
    if (end == content.npos || content.substr(0, end) != std::to_string(checkSumOf(content.substr(end + 1))))
        return std::nullopt;
    Values values;
    for (std::string_view rest = std::string_view(content).substr(end + 1); !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::size_t equals = line.find('=');
        if (equals != line.npos)
            values[a2w(std::string(line.substr(0, equals)), CP_UTF8)] =
                unescaped(withoutQuotes(a2w(std::string(line.substr(equals + 1)), CP_UTF8)));
    }
    return values;
}
} // namespace

Values FileSettingsStore::load() const
{
    if (const auto values = valuesIn(contentOf(path_)))
        return *values;
    return valuesIn(contentOf(lastOf(path_))).value_or(Values());
}

void FileSettingsStore::save(const Values& values)
{
    std::string lines;
    for (const auto& [name, value] : values)
        lines += w2a(name + L'=' + escaped(value) + L'\n', CP_UTF8);
    if (const std::string former = contentOf(path_); valuesIn(former))
        write(lastOf(path_), former);
    write(path_, std::to_string(checkSumOf(lines)) + "\n" + lines);
}

namespace {
constexpr const wchar_t* endMark = L"End";

bool isWhole(const Text& file, const Text& section) { return getIniString(file, section, endMark, L"") == L"1"; }

Values valuesIn(const Text& file, const Text& section)
{
    Values values;
    const Text names = getIniString(file, section, static_cast<const wchar_t*>(nullptr), L"");
    for (const std::wstring_view entry : textsIn<wchar_t>(names))
        if (const Text name(entry); name != endMark)
            values[name] = unescaped(getIniString(file, section, name, L""));
    return values;
}
} // namespace

IniSettingsStore::IniSettingsStore(const wchar_t* path, const wchar_t* section)
    : path_(WindowsFile::getFullPath(path)), section_(section)
{
}

Values IniSettingsStore::load() const
{
    const bool usesLast = !isWhole(path_, section_) && isWhole(lastOf(path_), section_);
    return valuesIn(usesLast ? lastOf(path_) : path_, section_);
}

void IniSettingsStore::save(const Values& values)
{
    // Written beside the file, which then takes its place in one step.
    const Text next = path_ + L".next";
    const std::string former = contentOf(path_);
    if (isWhole(path_, section_))
        write(lastOf(path_), former);
    write(next, former.empty() ? std::string("\xFF\xFE", 2) : former);
    setIniString(next, section_, static_cast<const wchar_t*>(nullptr), static_cast<const wchar_t*>(nullptr));
    for (const auto& [name, value] : values)
        setIniString(next, section_, name, escaped(value));
    setIniString(next, section_, endMark, L"1");
    write(path_, contentOf(next));
    FileSystem::remove(next);
}

namespace {
constexpr const wchar_t* currentName = L"Current";
constexpr const wchar_t* halves[] = {L"A", L"B"};

// Whoever has made something else of the value has not saved.
unsigned long currentHalf(const RegistryKey& key, unsigned long without)
{
    try {
        return key.getDWordValue(currentName, without) % 2;
    } catch (const std::exception&) {
        return without;
    }
}
} // namespace

Values RegistrySettingsStore::load() const
{
    Values values;
    RegistryKey key, half;
    if (!key.open(parent_, subkey_, KEY_READ))
        return values;
    const unsigned long current = currentHalf(key, 0);
    if (!half.open(key, halves[current], KEY_READ) && !half.open(key, halves[1 - current], KEY_READ))
        return values;
    for (const auto& value : RegistryKey::ValueEnumeration<wchar_t>(half))
        if (value.type == REG_SZ)
            values[value.name] = half.getStringValue(value.name);
    return values;
}

void RegistrySettingsStore::save(const Values& values)
{
    const RegistryKey key = RegistryKey::createOwned(parent_, subkey_, KEY_ALL_ACCESS);
    const unsigned long next = 1 - currentHalf(key, 1);
    const RegistryKey half = RegistryKey::createOwned(key, halves[next], KEY_ALL_ACCESS);
    half.deleteAllValues();
    for (const auto& [name, value] : values)
        half.setValue(name, value);
    ensureCode(RegFlushKey(half.getKey()), "Can't save settings");
    key.setValue(currentName, static_cast<int>(next)); // From here on it counts.
}
} // namespace tarn
