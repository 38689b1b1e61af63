#include "Tree.h"

#include <tarn/Exception.h>
#include <tarn/LocalMemory.h>
#include <tarn/RegistryValue.h>
#include <tarn/StringHelper.h>
#include <tarn/Windows.h>

#include <shellapi.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ostream>

using tarn::BasicString;
using tarn::RegistryKey;
using Value = tarn::RegistryValue<wchar_t>;

namespace {
std::string typeName(unsigned long type)
{
    static const char* const names[] = {"REG_NONE",
                                        "REG_SZ",
                                        "REG_EXPAND_SZ",
                                        "REG_BINARY",
                                        "REG_DWORD",
                                        "REG_DWORD_BIG_ENDIAN",
                                        "REG_LINK",
                                        "REG_MULTI_SZ",
                                        "REG_RESOURCE_LIST",
                                        "REG_FULL_RESOURCE_DESCRIPTOR",
                                        "REG_RESOURCE_REQUIREMENTS_LIST",
                                        "REG_QWORD"};
    return type < std::size(names) ? names[type] : "type " + std::to_string(type);
}

std::string quoted(const BasicString<wchar_t>& text)
{
    // A line break in a value must not look like the end of it.
    return '"' + regdump::narrow(text.replaceAll(L"\r", L"\\r").replaceAll(L"\n", L"\\n")) + '"';
}

std::string hexOf(const Value& value)
{
    constexpr unsigned long shown = 24;
    std::string text;
    char digits[4];
    for (unsigned long i = 0; i < std::min(value.getSize(), shown); ++i) {
        std::snprintf(digits, sizeof digits, "%02x ", value.getData()[i]);
        text += digits;
    }
    return value.getSize() > shown ? text + "... (" + std::to_string(value.getSize()) + " bytes)" : text;
}

std::string listOf(const Value& value)
{
    std::string text;
    for (const BasicString<wchar_t>& string : value.getStrings())
        text += (text.empty() ? "" : ", ") + quoted(string);
    return text;
}

/// A number of as many bytes as its type wants; what else is stored under the type is shown as bytes.
std::string numberOf(const Value& value, unsigned long size)
{
    if (value.getSize() != size)
        return hexOf(value);
    unsigned long long number = 0;
    std::memcpy(&number, value.getData(), size);
    char text[64];
    std::snprintf(text, sizeof text, "0x%0*llx (%llu)", static_cast<int>(size * 2), number, number);
    return text;
}

std::string dataOf(const Value& value)
{
    switch (value.getType()) {
    case REG_SZ:
    case REG_EXPAND_SZ:
        return quoted(value.getString());
    case REG_MULTI_SZ:
        return listOf(value);
    case REG_DWORD:
        return numberOf(value, 4);
    case REG_QWORD:
        return numberOf(value, 8);
    default:
        return hexOf(value);
    }
}

void printValues(std::ostream& out, const RegistryKey& key, const std::string& indent)
{
    for (const auto& entry : RegistryKey::ValueEnumeration<wchar_t>(key)) {
        Value value;
        if (!key.getValue(entry.name, value))
            continue; // Deleted in the meantime.
        out << indent << (entry.name.empty() ? "(default)" : regdump::narrow(entry.name)) << " = "
            << typeName(value.getType()) << ' ' << dataOf(value) << '\n';
    }
}

void printBelow(std::ostream& out, const RegistryKey& key, const std::string& indent)
{
    const RegistryKey::KeyEnumeration<wchar_t> subkeys(key);
    // Values stand beside the line that leads down to the subkeys, if there are any.
    printValues(out, key, indent + (subkeys.empty() ? "    " : "|   "));
    for (auto subkey = subkeys.begin(); subkey != subkeys.end(); ++subkey) {
        const bool last = subkey + 1 == subkeys.end();
        out << indent << (last ? "`-- " : "|-- ") << regdump::narrow(subkey->name);
        if (!subkey->className.empty())
            out << "  <" << regdump::narrow(subkey->className) << '>';
        out << '\n';
        const std::string deeper = indent + (last ? "    " : "|   ");
        try {
            printBelow(out, RegistryKey(key, subkey->name, KEY_READ), deeper);
        } catch (const tarn::WindowsError& e) { // Keys that may not be read do not end the listing.
            out << deeper << "(" << e.what() << ")\n";
        }
    }
}
} // namespace

void regdump::printTree(std::ostream& out, const RegistryKey& key) { printBelow(out, key, ""); }

std::string regdump::narrow(const BasicString<wchar_t>& text)
{
    return tarn::StringHelper<char>::convert(text, static_cast<unsigned>(text.size()), CP_UTF8);
}

std::vector<BasicString<wchar_t>> regdump::commandLine()
{
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!words)
        throw tarn::WindowsError("Can't read the command line");
    const tarn::LocalMemory owner(words, false);
    return std::vector<BasicString<wchar_t>>(words + std::min(count, 1), words + count);
}
