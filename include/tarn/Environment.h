#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <map>
#include <optional>

namespace tarn {
/// The variables that a child process starts with: a copy of this process's own to change, or a set made from nothing.
///
///     ProcessOptions options;
///     options.environment = Environment::current();
///     options.environment->set(L"LANG", L"C");
///
/// A value; changing one changes no process. Names are the same whatever the case of their letters.
class TARN_API Environment {
public:
    /// No variables. Many programs need SystemRoot and PATH.
    Environment() = default;
    /// Those of this process at this moment. Throws WindowsError "Can't read the environment".
    static Environment current();

    /// Throws WindowsError "No environment variable is named "NAME"" for an empty name and one with an equals sign
    /// behind its first character.
    void set(const wchar_t* name, const wchar_t* value);
    /// Does nothing when there is none.
    void remove(const wchar_t* name);
    /// Nothing when there is none; one may be empty.
    std::optional<BasicString<wchar_t>> find(const wchar_t* name) const;

    /// As the platform takes it: texts NAME=VALUE, each with its zero, in the order of their names, and one more zero.
    BasicString<wchar_t> getBlock() const;

private:
    struct Less {
        bool operator()(const BasicString<wchar_t>& a, const BasicString<wchar_t>& b) const;
    };

    std::map<BasicString<wchar_t>, BasicString<wchar_t>, Less> variables_;
};
} // namespace tarn
