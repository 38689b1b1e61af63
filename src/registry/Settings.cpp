#include <tarn/Settings.h>

#include <tarn/Exception.h>

#include "../foundation/Quoted.h"
#include "../foundation/Throw.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <optional>
#include <string>
#include <utility>

namespace tarn {
namespace {
constexpr const wchar_t* versionName = L"Version";

std::optional<long long> numberIn(const BasicString<wchar_t>& text)
{
    wchar_t* end = nullptr;
    errno = 0;
    const long long number = std::wcstoll(text.c_str(), &end, 10);
    const bool isNumber = !text.empty() && end == text.c_str() + text.size() && errno == 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

BasicString<wchar_t> textOf(long long number) { return BasicString<wchar_t>(std::to_wstring(number)); }
BasicString<wchar_t> textOf(bool flag) { return flag ? L"1" : L"0"; }
} // namespace

Settings::Settings(std::unique_ptr<SettingsStore> store, long long version, Migration migration)
    : store_(std::move(store)), version_(version), migration_(std::move(migration))
{
}

bool Settings::fits(const Setting& setting, const BasicString<wchar_t>& value)
{
    if (setting.type == text)
        return true;
    const std::optional<long long> found = numberIn(value);
    return found && *found >= setting.least && *found <= setting.most;
}

void Settings::declare(const wchar_t* name, Setting setting)
{
    const bool isTaken = BasicString<wchar_t>(name) == versionName || BasicString<wchar_t>(name) == L"Current" ||
                         BasicString<wchar_t>(name) == L"End";
    if (isTaken || !fits(setting, setting.defaultValue))
        throwError(Exception("Not in the range of setting " + quoted(name)));
    setting.value = setting.defaultValue;
    settings_[name] = std::move(setting);
}

void Settings::declareNumber(const wchar_t* name, long long defaultValue, long long least, long long most)
{
    declare(name, {number, textOf(defaultValue), {}, least, most});
}
void Settings::declareFlag(const wchar_t* name, bool defaultValue)
{
    declare(name, {flag, textOf(defaultValue), {}, 0, 1});
}
void Settings::declareText(const wchar_t* name, const wchar_t* defaultValue)
{
    declare(name, {text, defaultValue, {}, 0, 0});
}

const Settings::Setting& Settings::find(const wchar_t* name, Type type) const
{
    const auto found = settings_.find(name);
    if (found == settings_.end() || found->second.type != type)
        throwError(Exception("No setting " + quoted(name) + " of this type"));
    return found->second;
}

Settings::Setting& Settings::find(const wchar_t* name, Type type)
{
    return const_cast<Setting&>(std::as_const(*this).find(name, type));
}

long long Settings::getNumber(const wchar_t* name) const { return *numberIn(find(name, number).value); }
bool Settings::getFlag(const wchar_t* name) const { return find(name, flag).value == L"1"; }
BasicString<wchar_t> Settings::getText(const wchar_t* name) const { return find(name, text).value; }

void Settings::change(const wchar_t* name, Setting& setting, const BasicString<wchar_t>& value)
{
    if (!fits(setting, value))
        throwError(Exception("Not in the range of setting " + quoted(name)));
    if (std::exchange(setting.value, value) != value && handler_)
        handler_(name);
}

void Settings::setNumber(const wchar_t* name, long long value) { change(name, find(name, number), textOf(value)); }
void Settings::setFlag(const wchar_t* name, bool value) { change(name, find(name, flag), textOf(value)); }
void Settings::setText(const wchar_t* name, const wchar_t* value) { change(name, find(name, text), value); }

void Settings::reset(const wchar_t* name)
{
    const auto found = settings_.find(name);
    if (found == settings_.end())
        throwError(Exception("No setting " + quoted(name) + " of this type"));
    change(name, found->second, found->second.defaultValue);
}

void Settings::load()
{
    SettingsStore::Values values = store_->load();
    storedVersion_ = numberIn(values[versionName]).value_or(0);
    values.erase(versionName);
    if (storedVersion_ < version_ && migration_ && !values.empty())
        migration_(values, storedVersion_);
    std::map<BasicString<wchar_t>, BasicString<wchar_t>> changes;
    for (const auto& [name, setting] : settings_) {
        const auto found = values.find(name);
        const bool usable = found != values.end() && fits(setting, found->second);
        changes[name] = usable ? found->second : setting.defaultValue;
        values.erase(name);
    }
    others_ = std::move(values);
    for (const auto& [name, value] : changes)
        change(name, settings_[name], value);
}

void Settings::save()
{
    SettingsStore::Values values = others_;
    for (const auto& [name, setting] : settings_)
        values[name] = setting.value;
    values[versionName] = textOf(std::max(version_, storedVersion_)); // What is newer stays newer.
    store_->save(values);
}
} // namespace tarn
