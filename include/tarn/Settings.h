#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/SettingsStore.h>

#include <functional>
#include <limits>
#include <map>
#include <memory>

namespace tarn {
/// The settings of a program: each with a name, a type, a default and perhaps a range, kept in a store of your choice.
///
///     Settings settings(std::make_unique<FileSettingsStore>(L"settings.txt"));
///     settings.declareNumber(L"Width", 640, 320, 10'000);
///     settings.declareText(L"Title", L"Untitled");
///     settings.load();
///     settings.setNumber(L"Width", 800);
///     settings.save();
///
/// What the store has and does not fit (no number, out of range) counts as the default, so that a damaged store is no
/// failure; names that were not declared are kept as they are. One thread at a time. Throws Exception for what the
/// program does wrong: "No setting "NAME" of this type", "Not in the range of setting "NAME"".
class TARN_API Settings {
public:
    /// Makes of the values of an older version those of the present one.
    using Migration = std::function<void(SettingsStore::Values& values, long long storedVersion)>;

    /// `version` is that of the names and meanings, which are stored with it. What was stored without one has the
    /// version 0. Call load() when all is declared; until then all is at its default.
    explicit Settings(std::unique_ptr<SettingsStore> store, long long version = 1, Migration migration = {});

    /// Again with the same name it replaces the former declaration, and the value is the default. `least` and `most`
    /// are both allowed. The default has to be in the range. The names "Version", "Current" and "End" are taken.
    ///@{
    void declareNumber(const wchar_t* name, long long defaultValue,
                       long long least = std::numeric_limits<long long>::min(),
                       long long most = std::numeric_limits<long long>::max());
    void declareFlag(const wchar_t* name, bool defaultValue);
    void declareText(const wchar_t* name, const wchar_t* defaultValue);
    ///@}

    /// The present value.
    ///@{
    long long getNumber(const wchar_t* name) const;
    bool getFlag(const wchar_t* name) const;
    BasicString<wchar_t> getText(const wchar_t* name) const;
    ///@}
    /// In memory, until save().
    ///@{
    void setNumber(const wchar_t* name, long long value);
    void setFlag(const wchar_t* name, bool value);
    void setText(const wchar_t* name, const wchar_t* value);
    /// To the default.
    void reset(const wchar_t* name);
    ///@}

    /// From the store, migrated if need be. Names that a newer version has stored are kept. Throws as the store does.
    void load();
    /// All or nothing. Throws as the store does.
    void save();

    /// Called with the name, after a value has changed, by a set or by load(). What it throws is passed on; the value
    /// has changed then.
    void onChange(std::function<void(const wchar_t* name)> handler) { handler_ = std::move(handler); }

private:
    enum Type { number, flag, text };
    struct Setting {
        Type type = text;
        BasicString<wchar_t> defaultValue, value;
        long long least = 0, most = 0;
    };

    void declare(const wchar_t* name, Setting setting);
    const Setting& find(const wchar_t* name, Type type) const;
    Setting& find(const wchar_t* name, Type type);
    void change(const wchar_t* name, Setting& setting, const BasicString<wchar_t>& value);
    static bool fits(const Setting& setting, const BasicString<wchar_t>& value);

    const std::unique_ptr<SettingsStore> store_;
    const long long version_;
    const Migration migration_;
    long long storedVersion_ = 0;
    std::map<BasicString<wchar_t>, Setting> settings_;
    SettingsStore::Values others_; // Of the store, and not declared.
    std::function<void(const wchar_t*)> handler_;
};
} // namespace tarn
