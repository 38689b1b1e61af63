#pragma once

#include <tarn/BasicString.h>
#include <tarn/RegistryKey.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace regdump {
/// Prints the values of a key and, indented below it, its subkeys.
void printTree(std::ostream& out, const tarn::RegistryKey& key);

/// The text as UTF-8, for the output.
std::string narrow(const tarn::BasicString<wchar_t>& text);

/// The program's arguments, wide, so that keys of any name can be given.
std::vector<tarn::BasicString<wchar_t>> commandLine();
} // namespace regdump
