#pragma once

#include <string>
#include <string_view>

namespace planner {
/// Throws WindowsError, and Exception for a file that is too large to be of use here.
std::string readWholeFile(const std::wstring& file);

/// Puts the content in the place of the file, which need not exist: writes a new file in the same folder,
/// flushes it and renames it. Whatever fails throws WindowsError, leaves the old file as it was and
/// removes the new one.
void replaceFile(const std::wstring& file, std::string_view content);
} // namespace planner
