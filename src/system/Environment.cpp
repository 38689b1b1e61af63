#include <tarn/Environment.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "../foundation/ZeroSeparated.h"

#include <memory>
#include <string_view>

namespace tarn {
namespace {
struct FreeBlock {
    void operator()(wchar_t* block) const { FreeEnvironmentStringsW(block); }
};
} // namespace

bool Environment::Less::operator()(const BasicString<wchar_t>& a, const BasicString<wchar_t>& b) const
{
    return CompareStringOrdinal(a.c_str(), static_cast<int>(a.size()), b.c_str(), static_cast<int>(b.size()), TRUE) ==
           CSTR_LESS_THAN;
}

Environment Environment::current()
{
    Environment environment;
    const std::unique_ptr<wchar_t, FreeBlock> block(ensure(GetEnvironmentStringsW(), "Can't read the environment"));
    for (const std::wstring_view text : textsAt(block.get()))
        // The first character belongs to the name: the current folders of drives are called "=C:".
        if (const std::size_t end = text.find(L'=', 1); end != text.npos)
            environment.variables_[BasicString<wchar_t>(text.substr(0, end))] = text.substr(end + 1);
    return environment;
}

void Environment::set(const wchar_t* name, const wchar_t* value)
{
    const BasicString<wchar_t> key(name);
    if (key.empty() || key.find(L'=', 1) != key.npos)
        throwError(WindowsError(ERROR_INVALID_NAME, "No environment variable is named " + quoted(name)));
    variables_[key] = value;
}

void Environment::remove(const wchar_t* name) { variables_.erase(BasicString<wchar_t>(name)); }

std::optional<BasicString<wchar_t>> Environment::find(const wchar_t* name) const
{
    const auto found = variables_.find(BasicString<wchar_t>(name));
    return found == variables_.end() ? std::nullopt : std::optional(found->second);
}

BasicString<wchar_t> Environment::getBlock() const
{
    BasicString<wchar_t> block;
    for (const auto& [name, value] : variables_)
        block.append(name).append(L"=").append(value).append(1, L'\0');
    if (block.empty())
        block.append(1, L'\0'); // Also a block without entries ends with two zeros.
    return block.append(1, L'\0');
}
} // namespace tarn
