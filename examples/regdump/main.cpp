// Prints a subtree of the registry as a tree with types and values, prunes its empty keys, or copies it.

#include <tarn/BasicString.h>
#include <tarn/RegistryKey.h>

#include "Tree.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace {
using tarn::BasicString;
using tarn::RegistryKey;

const char usage[] = "regdump KEY             prints the key as a tree\n"
                     "regdump --clean KEY     deletes the empty keys in it, then prints what is left\n"
                     "regdump --copy KEY NEW  adds the content of KEY to NEW, then prints that\n"
                     "\n"
                     "A key without subkeys is empty when it has no value, or a single one with a name.\n"
                     "KEY begins with HKCU, HKLM, HKCR, HKU or HKCC, or with the long name:\n"
                     "regdump HKCU\\Environment\n";

struct Root {
    const wchar_t* name;
    const wchar_t* longName;
    HKEY key;
};
const Root roots[] = {
    {L"HKCU", L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},     {L"HKLM", L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
    {L"HKCR", L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},     {L"HKU", L"HKEY_USERS", HKEY_USERS},
    {L"HKCC", L"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
};

/// A key as it is named on the command line, taken apart.
struct Place {
    HKEY root;
    BasicString<wchar_t> path; ///< Below the root; empty for the root itself.
};

Place parsePlace(const BasicString<wchar_t>& name)
{
    const std::size_t end = std::min(name.find(L'\\'), name.size());
    const auto rootName = BasicString<wchar_t>(name.substr(0, end)).toUpper();
    for (const Root& root : roots)
        if (rootName == root.name || rootName == root.longName)
            return {root.key, name.substr(std::min(end + 1, name.size()))};
    throw std::invalid_argument(BasicString<char>(rootName) + " is no root of the registry");
}

void print(const BasicString<wchar_t>& name)
{
    const Place place = parsePlace(name);
    std::cout << regdump::narrow(name) << '\n';
    regdump::printTree(std::cout, RegistryKey(place.root, place.path, KEY_READ));
}

void clean(const BasicString<wchar_t>& name)
{
    const Place place = parsePlace(name);
    if (place.path.empty())
        throw std::invalid_argument("a whole root is not cleaned: name a key below it");
    RegistryKey(place.root, false).cleanEmptyTree(place.path);
    if (RegistryKey::existsKey(place.root, place.path))
        print(name);
    else
        std::cout << regdump::narrow(name) << " was empty and is gone\n";
}

void copy(const BasicString<wchar_t>& from, const BasicString<wchar_t>& to)
{
    const Place source = parsePlace(from);
    const Place place = parsePlace(to);
    const RegistryKey sourceKey(source.root, source.path, KEY_READ);
    RegistryKey target = RegistryKey::createOwned(place.root, place.path, KEY_ALL_ACCESS);
    target += sourceKey;
    print(to);
}

int run(const std::vector<BasicString<wchar_t>>& words)
{
    if (words.size() == 1 && !words[0].startsWith(L"-"))
        print(words[0]);
    else if (words.size() == 2 && words[0] == L"--clean")
        clean(words[1]);
    else if (words.size() == 3 && words[0] == L"--copy")
        copy(words[1], words[2]);
    else {
        std::cerr << usage;
        return 2;
    }
    return 0;
}
} // namespace

int main()
{
    try {
        return run(regdump::commandLine());
    } catch (const std::exception& e) {
        std::cerr << "regdump: " << e.what() << '\n';
        return 1;
    }
}
