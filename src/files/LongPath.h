#pragma once

#include <tarn/BasicString.h>

namespace tarn {
inline constexpr const wchar_t* longPathPrefix = L"\\\\?\\";
inline constexpr const wchar_t* longSharePrefix = L"\\\\?\\UNC\\";

/// The absolute path of `name` with the prefix that lets it be longer than 260 characters. Throws as
/// WindowsFile::getFullPath() does.
BasicString<wchar_t> longPath(const wchar_t* name);
} // namespace tarn
