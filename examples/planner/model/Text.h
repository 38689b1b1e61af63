#pragma once

#include <cstddef>
#include <string>

namespace planner {
/// For texts of errors, which are narrow.
std::string narrow(const std::wstring& text);
/// The text of an error, or an argument of the program, for a window.
std::wstring widened(const std::string& text);

std::string toUTF8(const std::wstring& text);
/// Throws Exception "The text is not UTF-8".
std::wstring fromUTF8(const std::string& text);

std::wstring trimmed(const std::wstring& text);
/// With dots in the place of what is beyond so many characters: messages show parts of files.
std::wstring shortened(const std::wstring& text, std::size_t length);
} // namespace planner
