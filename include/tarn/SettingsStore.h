#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <map>

namespace tarn {
/// Where Settings are kept: texts by their names. All of them are saved or none, also when the program is ended
/// meanwhile.
///
/// One program at a time uses a store: who reads while another saves may be refused.
class TARN_API SettingsStore {
public:
    /// By their names.
    using Values = std::map<BasicString<wchar_t>, BasicString<wchar_t>>;

    /// Neither copied nor moved.
    ///@{
    SettingsStore() = default;
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;
    ///@}
    virtual ~SettingsStore() = default;

    /// What was saved last. When that is damaged, what was saved before; when there is neither, nothing.
    virtual Values load() const = 0;
    /// These and no others. Throws the errors of what it is kept in.
    virtual void save(const Values& values) = 0;
};

/// A file of their own, in UTF-8 with a check sum. What was saved before is in "NAME.last".
class TARN_API FileSettingsStore : public SettingsStore {
public:
    /// The file is made by save().
    explicit FileSettingsStore(const wchar_t* path) : path_(path) {}
    /// As the base says.
    ///@{
    Values load() const override;
    void save(const Values& values) override;
    ///@}

private:
    const BasicString<wchar_t> path_;
};

/// A section of an INI file, which people may edit and other sections share. An entry "End" behind all others shows
/// that it is whole; what was saved before is in "NAME.last". A file that is made is UTF-16, so that it keeps every
/// character.
class TARN_API IniSettingsStore : public SettingsStore {
public:
    /// The file is made by save(). Throws as WindowsFile::getFullPath().
    IniSettingsStore(const wchar_t* path, const wchar_t* section);
    /// As the base says.
    ///@{
    Values load() const override;
    void save(const Values& values) override;
    ///@}

private:
    const BasicString<wchar_t> path_, section_;
};

/// A key of the registry, with a subkey for what was saved last and one for what was saved before; its value "Current"
/// says which is which.
class TARN_API RegistrySettingsStore : public SettingsStore {
public:
    /// The key is made by save().
    RegistrySettingsStore(HKEY parent, const wchar_t* subkey) : parent_(parent), subkey_(subkey) {}
    /// As the base says.
    ///@{
    Values load() const override;
    void save(const Values& values) override;
    ///@}

private:
    const HKEY parent_;
    const BasicString<wchar_t> subkey_;
};
} // namespace tarn
