#pragma once

#include <string>
#include <string_view>

namespace planner {
/// Throws WindowsError, and Exception for a file of more than 64 MiB.
std::string readWholeFile(const std::wstring& file);

/// Puts the content in the place of the file, which need not exist. Whatever fails throws WindowsError (Exception for
/// more content than readWholeFile() reads), and leaves the old file as it was.
void replaceFile(const std::wstring& file, std::string_view content);
} // namespace planner
