#pragma once

#include <tarn/BasicString.h>

namespace tarn {
inline constexpr const wchar_t* longPathPrefix = L"\\\\?\\";
inline constexpr const wchar_t* longSharePrefix = L"\\\\?\\UNC\\";

/// The absolute path of `name` with the prefix that lets it be longer than 260 characters. Throws as
/// WindowsFile::getFullPath() does.
BasicString<wchar_t> longPath(const wchar_t* name);
/// Without a separator at its end, so that one with a name can follow.
BasicString<wchar_t> withoutSeparator(BasicString<wchar_t> path);
/// The same path without the prefix, for people to read.
BasicString<wchar_t> withoutPrefix(const BasicString<wchar_t>& path);
} // namespace tarn
