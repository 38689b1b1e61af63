#include "Tour.h"

#include <tarn/BasicString.h>
#include <tarn/ChangeList.h>
#include <tarn/Exception.h>
#include <tarn/IniString.h>
#include <tarn/RegistryKey.h>
#include <tarn/RegistryWatch.h>

#include <iostream>
#include <list>

namespace {
using tarn::BasicString;
using tarn::RegistryKey;

void showValues(const RegistryKey& user)
{
    const RegistryKey key = RegistryKey::createOwned(user, "Tarn++ Tour\\Window", KEY_ALL_ACCESS);
    key.setValue("Width", 1280);
    key.setValue("Title", "A first look");
    key.setValue("Recent", std::list<BasicString<char>>{"C:\\notes.txt", "C:\\plan.txt"});

    std::cout << "written and read back: " << key.getDWordValue("Width") << ", \"" << key.getStringValue("Title")
              << "\"\n";
    for (const auto& value : RegistryKey::ValueEnumeration<char>(key))
        std::cout << "  " << value.name << ": type " << value.type << ", " << value.size << " bytes\n";
    unsigned long height = 720;
    std::cout << "a missing value leaves the default: " << std::boolalpha << key.getValue("Height", height) << ", "
              << height << '\n';
    tarn::RegistryWatch watch(key);
    key.setValue("Width", 1024);
    std::cout << "a change was noticed: " << watch.waitForChange(60'000) << '\n';
}

void showTrees(const RegistryKey& user)
{
    const RegistryKey tour(user, "Tarn++ Tour", KEY_ALL_ACCESS);
    RegistryKey::createOwned(tour, "Backup", KEY_ALL_ACCESS) +=
        tour; // Into its own subtree: the copy is of what was there before.
    RegistryKey::createOwned(tour, "Old\\Settings\\Of\\Nobody", KEY_ALL_ACCESS);
    const auto print = [&](const char* when) {
        std::cout << when << ':';
        for (const auto& subkey : RegistryKey::KeyEnumeration<char>(tour))
            std::cout << ' ' << subkey.name;
        std::cout << '\n';
    };
    print("keys");
    tour.cleanEmptyTree("Old");
    print("without the empty ones");
    std::cout << "the backup's title: " << RegistryKey(tour, "Backup\\Window", KEY_READ).getStringValue("Title")
              << '\n';
}

void showChanges(const RegistryKey& user)
{
    tarn::ChangeList changes;
    changes.setValue(user, L"Tarn++ Tour\\Window", L"Title", tarn::RegistryValue<wchar_t>(L"Another title"));
    changes.add(
        L"Fail", [] { throw tarn::Exception("the last step fails"); }, [] {});
    try {
        changes.apply();
    } catch (const tarn::Exception& e) {
        std::cout << "all or nothing: " << e.what() << ", and so the title is still "
                  << RegistryKey(user, "Tarn++ Tour\\Window", KEY_READ).getStringValue("Title") << '\n';
    }
}

void showErrors(const RegistryKey& user)
{
    try {
        RegistryKey(user, "Tarn++ Tour\\Window", KEY_READ).getStringValue("Width");
    } catch (const std::exception& e) {
        std::cout << "a number is no text: " << e.what() << '\n';
    }
}

void showIniStrings()
{
    char folder[MAX_PATH + 1];
    GetTempPathA(sizeof folder, folder);
    const BasicString<char> file = BasicString<char>(folder) + "tarn-tour.ini";
    tarn::setIniString(file, "window", "title", "A first look");
    std::cout << "from an INI file: " << tarn::getIniString(file, "window", "title", "") << '\n';
    DeleteFileA(file);
}

void show()
{
    const RegistryKey user(HKEY_CURRENT_USER, "Software", KEY_ALL_ACCESS);
    showValues(user);
    showTrees(user);
    showChanges(user);
    showErrors(user);
    user.deleteKeyRecursive("Tarn++ Tour");
    std::cout << "gone again: " << !user.existsKey("Tarn++ Tour") << '\n';
    showIniStrings();
}

const tour::Section section(70, "Registry and INI files", show);
} // namespace
