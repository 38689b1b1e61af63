#include "Test.h"

#include <tarn/ChangeList.h>
#include <tarn/FileSystem.h>
#include <tarn/RegistryKey.h>
#include <tarn/WindowsFile.h>

#include <map>

#include "ScratchFolder.h"
#include "ScratchKey.h"

namespace {
/// Something of each kind to change.
struct Place {
    Place()
    {
        folder.write("file", "old");
        folder.write("file.before", "of others");
        FileSystem::createFolder(path(L"tree\\inside"));
        folder.write("tree\\inside\\leaf", "leaf");
        FileSystem::setAttributes(path(L"tree\\inside\\leaf"), FILE_ATTRIBUTE_READONLY);
        key.storeText(L"a", L"text", L"old");
        key.storeText(L"b\\below", L"text", L"below");
        key.storeText(L"b.before", L"text", L"of others");
    }

    BasicString<wchar_t> path(const wchar_t* name) const { return folder.file(name); }

    /// All there is, by name: contents and attributes of files, values of keys.
    std::map<std::wstring, std::string> state() const
    {
        std::map<std::wstring, std::string> all;
        for (const FolderEntry& entry : FolderWalk(folder.path().c_str(), {.recursive = true})) {
            if (entry.path.startsWith(elsewhere))
                continue;
            const bool isReadOnly = (entry.attributes & FILE_ATTRIBUTE_READONLY) != 0;
            const std::string name = std::filesystem::relative(entry.path.c_str(), folder.path()).string();
            all[entry.path] = (entry.isFolder() ? "" : folder.read(name)) + (isReadOnly ? "!" : "");
        }
        if (FileSystem::exists(elsewhere))
            all[L"elsewhere"] = FileSystem::isFile(elsewhere + L"\\inside\\leaf") ? "leaf" : "";
        note(all, {});
        return all;
    }
    void note(std::map<std::wstring, std::string>& all, const std::wstring& name) const
    {
        const RegistryKey opened(key, name.c_str(), KEY_READ);
        for (const auto& value : RegistryKey::ValueEnumeration<wchar_t>(opened))
            all[name + L"|" + value.name] = BasicString<char>(opened.getStringValue(value.name));
        for (const auto& subkey : RegistryKey::KeyEnumeration<wchar_t>(opened)) {
            all[name + L"\\" + subkey.name] = "key";
            note(all, name.empty() ? std::wstring(subkey.name) : name + L'\\' + subkey.name);
        }
    }

    /// A step of each kind, the first `count` of them.
    void addSteps(ChangeList& changes, std::size_t count) const
    {
        const RegistryValue<wchar_t> value(L"new");
        const std::function<void()> steps[] = {[&] { changes.createFolder(path(L"new\\folder")); },
                                               [&] { changes.writeFile(path(L"new\\folder\\file"), "new", 3); },
                                               [&] { changes.writeFile(path(L"file"), "newer", 5); },
                                               [&] { changes.copy(path(L"tree"), path(L"copy")); },
                                               [&] { changes.move(path(L"file"), path(L"moved")); },
                                               [&] { changes.remove(path(L"tree")); },
                                               [&] { changes.move(path(L"copy"), elsewhere); },
                                               [&] { changes.createKey(key, L"new\\key"); },
                                               [&] { changes.setValue(key, L"a", L"text", value); },
                                               [&] { changes.setValue(key, L"c\\d", L"text", value); },
                                               [&] { changes.deleteValue(key, L"a", L"text"); },
                                               [&] { changes.deleteValue(key, L"a", L"text"); },
                                               [&] { changes.deleteValue(key, L"none", L"text"); },
                                               [&] { changes.deleteKey(key, L"b"); },
                                               [&] { changes.deleteKey(key, L"none"); }};
        for (std::size_t i = 0; i < std::min(count, std::size(steps)); ++i)
            steps[i]();
    }

    ScratchFolder folder;
    BasicString<wchar_t> otherDrive = folder.onOtherDrive(),
                         elsewhere = otherDrive.empty() ? folder.file(L"elsewhere") : otherDrive;
    ScratchKey key;
};
} // namespace

TEST_CASE("ChangeList: a failure at any step leaves all as it was, and without one all is done")
{
    const Place place;
    const auto before = place.state();
    for (std::size_t count = 0; count <= 15; ++count) {
        ChangeList changes;
        bool undone = false;
        changes.add(
            L"Own step", [] {}, [&] { undone = true; });
        place.addSteps(changes, count);
        changes.add(
            L"Failing step", [] { throw Exception("planted"); }, [] { FAIL("nothing was done"); });
        CHECK(place.state() == before);
        CAPTURE(count);
        expectError<Exception>([&] { changes.apply(); }, "planted");
        CHECK(place.state() == before);
        CHECK((undone && changes.getNotUndone().empty()));
    }

    ChangeList changes;
    place.addSteps(changes, 15);
    CHECK(changes.getSteps()[2] == L"Write file \"" + place.path(L"file") + L"\", 5 bytes");
    CHECK(changes.getSteps().size() == 15);
    changes.apply();
    const std::map<std::wstring, std::string> after{{L"elsewhere", "leaf"},
                                                    {place.path(L"file.before"), "of others"},
                                                    {place.path(L"moved"), "newer"},
                                                    {place.path(L"new"), ""},
                                                    {place.path(L"new\\folder"), ""},
                                                    {place.path(L"new\\folder\\file"), "new"},
                                                    {L"\\a", "key"},
                                                    {L"\\b.before", "key"},
                                                    {L"b.before|text", "of others"},
                                                    {L"\\c", "key"},
                                                    {L"c\\d|text", "new"},
                                                    {L"c\\d", "key"},
                                                    {L"\\new", "key"},
                                                    {L"new\\key", "key"}};
    CHECK(place.state() == after);
}

TEST_CASE("ChangeList: the steps in the registry name their root, as far as it has a name")
{
    const RegistryValue<wchar_t> value(1ul);
    ChangeList changes;
    changes.createKey(HKEY_CLASSES_ROOT, L"k");
    changes.deleteKey(HKEY_CURRENT_USER, L"k");
    changes.setValue(HKEY_LOCAL_MACHINE, L"k", L"n", value);
    changes.deleteValue(HKEY_USERS, L"k", L"n");
    changes.createKey(HKEY_PERFORMANCE_DATA, L"k");
    CHECK(changes.getSteps() == std::vector<BasicString<wchar_t>>{
                                    L"Make key \"HKEY_CLASSES_ROOT\\k\"", L"Delete key \"HKEY_CURRENT_USER\\k\"",
                                    L"Set value \"n\" of key \"HKEY_LOCAL_MACHINE\\k\"",
                                    L"Delete value \"n\" of key \"HKEY_USERS\\k\"", L"Make key \"k\""});
}

TEST_CASE("ChangeList: a step that fails by itself harms nothing that was there")
{
    const Place place;
    const auto before = place.state();
    const auto path = [&](const wchar_t* name) { return place.path(name); };
    const std::pair<const char*, std::function<void(ChangeList&)>> failing[] = {
        {"Can't replace ", [&](ChangeList& changes) { changes.writeFile(path(L"tree"), "", 0); }},
        {"Can't create folder ", [&](ChangeList& changes) { changes.createFolder(path(L"file\\folder")); }},
        {"Can't copy ", [&](ChangeList& changes) { changes.copy(path(L"file"), path(L"tree\\inside\\leaf")); }},
        {"Can't move ", [&](ChangeList& changes) { changes.move(path(L"file"), path(L"tree")); }},
        {"Can't move ", [&](ChangeList& changes) { changes.move(path(L"none"), path(L"file")); }},
        {"Can't move ", [&](ChangeList& changes) { changes.remove(path(L"tree\\inside\\leaf")); }},
        {"", [&](ChangeList& changes) { changes.createKey(nullptr, L"a"); }}};
    const WindowsFile open(path(L"tree\\inside\\leaf"), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0,
                           nullptr);
    for (const auto& [what, add] : failing) {
        ChangeList changes;
        add(changes);
        CAPTURE(changes.getSteps()[0]);
        const std::string description = thrownBy<WindowsError>([&] { changes.apply(); }).getDescription();
        CHECK((*what ? description.starts_with(what) : description.empty()));
        CHECK(place.state() == before);
        CHECK(changes.getNotUndone().empty());
    }
}

TEST_CASE("ChangeList: what cannot be undone is told")
{
    const Place place;
    ChangeList changes;
    changes.createFolder(place.path(L"new"));
    changes.add(
        L"", [&] { place.folder.write("new\\foreign", "x"); }, [] { throw 1; });
    changes.createKey(place.key, L"made");
    changes.add(
        L"", [&] { place.key.storeText(L"made", L"foreign", L"x"); }, [] { throw Exception("stuck"); });
    changes.remove(place.path(L"file"));
    changes.add(
        L"", [] { throw Exception("planted"); }, [] {});
    CHECK_THROWS_WITH(changes.apply(), "planted");
    CHECK(place.key.hasValue(L"made", L"foreign")); // What others have put there stays.
    CHECK(place.folder.read("file") == "old");
    REQUIRE(changes.getNotUndone().size() == 3);
    CHECK((changes.getNotUndone()[0] == L"stuck" && changes.getNotUndone()[1] == L"No std::exception"));
    CHECK(changes.getNotUndone()[2].startsWith(L"Can't remove \"" + place.path(L"new") + L"\": "));
    CHECK_THROWS_WITH(changes.apply(), "planted"); // Now the folder is there before.
    CHECK(changes.getNotUndone().size() == 2);
}
