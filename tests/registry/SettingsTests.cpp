#include "Test.h"

#include <tarn/CommandLine.h>
#include <tarn/Event.h>
#include <tarn/FileSystem.h>
#include <tarn/IniString.h>
#include <tarn/Process.h>
#include <tarn/RegistryKey.h>
#include <tarn/Settings.h>
#include <tarn/WindowsFile.h>

#include <random>

#include "ScratchFolder.h"
#include "ScratchKey.h"

namespace {
using Values = SettingsStore::Values;
enum Kind { file, ini, registry };
constexpr const wchar_t* begunName = L"Local\\TarnTestSaving";

/// A store below the current folder or key, as the child of the last test makes it, too.
std::unique_ptr<SettingsStore> storeOf(Kind kind, const std::wstring& path, const std::wstring& key)
{
    switch (kind) {
    case file:
        return std::make_unique<FileSettingsStore>(path.c_str());
    case ini:
        return std::make_unique<IniSettingsStore>(path.c_str(), L"Settings");
    default:
        return std::make_unique<RegistrySettingsStore>(HKEY_CURRENT_USER, key.c_str());
    }
}

/// Fifty times the same number, as the child of the last test saves it; -1 for anything else.
int savedNumber(const Values& values)
{
    for (const auto& [name, value] : values)
        if (value != values.begin()->second)
            return -1;
    return values.size() == 50 ? std::stoi(values.begin()->second) : -1;
}

struct Stores {
    std::unique_ptr<SettingsStore> of(Kind kind) const
    {
        return storeOf(kind, folder.file(L"\x0416.txt"), key.path() + L"\\Settings");
    }
    /// The platform keeps some handles open from the first use of a file on.
    static bool use(const ScratchFolder& folder)
    {
        for (const Kind kind : {file, ini})
            storeOf(kind, folder.file(L"first"), {})->save({{L"a", L"b"}});
        return true;
    }
    ScratchFolder folder;
    bool isUsed = use(folder);
    ScratchKey key;
};
} // namespace

TEST_CASE("SettingsStore: all that was saved comes back, and nothing else")
{
    const Stores stores;
    const Kind kind = GENERATE(file, ini, registry);
    CAPTURE(kind);
    CHECK(stores.of(kind)->load().empty());
    const Values values{{L"a", L""},
                        {L"b", L" \"x\\n\" \r\n=;"},
                        {L"\x0416", L"\x4E2D"},
                        {L"q", L"'a'"},
                        {L"w", L"\"a\""},
                        {L"x", L"\""},
                        {L"y", L"a "}};
    stores.of(kind)->save({{L"old", L"1"}});
    stores.of(kind)->save(values);
    CHECK(stores.of(kind)->load() == values);
    stores.of(kind)->save(values);
    CHECK(stores.of(kind)->load() == values);
}

TEST_CASE("SettingsStore: the bytes of a file, of an INI file and of a key")
{
    const Stores stores;
    const Values values{{L"a", L" 1"}, {L"b", L"x\n"}, {L"\x0416", L"2"}};
    stores.of(file)->save(values);
    const auto path = stores.folder.file(L"\x0416.txt");
    FileSystem::move(path, stores.folder.file(L"copy"));
    CHECK(stores.folder.read("copy") == "4239863374\na=\" 1\"\nb=x\\n\n\xD0\x96=2\n");
    stores.of(ini)->save({{L"a", L" 1"}});
    FileSystem::move(path, stores.folder.file(L"copy"), {.replace = true});
    const std::string bytes = stores.folder.read("copy");
    CHECK(bytes.starts_with("\xFF\xFE"));
    std::string text;
    for (std::size_t i = 2; i < bytes.size(); i += 2)
        text += bytes[i];
    CHECK(text == "[Settings]\r\na=\" 1\"\r\nEnd=1\r\n");
    stores.of(registry)->save(values);
    CHECK(stores.key.stored(L"Settings\\A", L"a").data == bytesOf(L" 1"));
    CHECK(stores.key.stored(L"Settings", L"Current").data == std::vector<unsigned char>{0, 0, 0, 0});
}

TEST_CASE("SettingsStore: what is damaged gives what was saved before, and what is nothing gives nothing")
{
    const Stores stores;
    const Values first{{L"a", L"1"}}, second{{L"a", L"2"}, {L"b", L"3"}};
    const Kind kind = GENERATE(file, ini);
    CAPTURE(kind);
    stores.of(kind)->save(first);
    stores.of(kind)->save(second);
    const auto path = stores.folder.file(L"\x0416.txt");
    const auto size = static_cast<unsigned>(WindowsFile::getSize(path));
    for (const unsigned kept : {0u, 1u, size / 2, size - 6}) {
        WindowsFile cut = WindowsFile::openToChange(path);
        cut.seek(kept, Seekable::begin);
        REQUIRE(SetEndOfFile(cut));
        cut.close();
        CHECK(stores.of(kind)->load() == first);
    }
    stores.of(kind)->save(second); // Does not take the damaged one for what was saved before.
    WindowsFile::overwrite(path).write("\0\xFF=\n=", 5);
    CHECK(stores.of(kind)->load() == first);
    FileSystem::remove(path + L".last");
    CHECK_NOTHROW(stores.of(kind)->load());
}

TEST_CASE("SettingsStore: a registry store that somebody has worked on is no failure")
{
    const Stores stores;
    stores.of(registry)->save({{L"a", L"1"}});
    stores.of(registry)->save({{L"a", L"2"}});
    RegDeleteKeyW(stores.key, L"Settings\\B");
    CHECK(stores.of(registry)->load() == Values{{L"a", L"1"}});
    stores.of(registry)->save({{L"a", L"2"}});
    stores.key.storeText(L"Settings", L"Current", L"damaged");
    CHECK(stores.of(registry)->load().size() == 1);
    stores.of(registry)->save({{L"a", L"3"}});
    CHECK(stores.of(registry)->load() == Values{{L"a", L"3"}});
}

TEST_CASE("SettingsStore: an INI file keeps its other sections, and may be written by hand")
{
    const Stores stores;
    const auto path = stores.folder.file(L"\x0416.txt");
    setIniString(path, L"Settings", L"a", L"by hand");
    setIniString(path, L"Other", L"b", L"kept");
    CHECK(stores.of(ini)->load() == Values{{L"a", L"by hand"}});
    stores.of(ini)->save({{L"c", L"1"}});
    CHECK_FALSE(FileSystem::exists(path + L".next"));
    CHECK(getIniString(path, L"Other", L"b", L"") == L"kept");
    CHECK(stores.of(ini)->load() == Values{{L"c", L"1"}});
}

TEST_CASE("Settings: a value is the stored one if it fits, or the default")
{
    const Stores stores;
    stores.of(file)->save({{L"Width", L"99999"},
                           {L"Height", L"480"},
                           {L"Flag", L"yes"},
                           {L"Huge", std::wstring(20, L'9')},
                           {L"Unknown", L"kept"}});
    Settings settings(stores.of(file));
    settings.declareNumber(L"Width", 640, 320, 10'000);
    settings.declareNumber(L"Height", 400);
    settings.declareFlag(L"Flag", true);
    settings.declareText(L"Title", L"none");
    settings.declareNumber(L"Huge", 1);
    CHECK(settings.getNumber(L"Height") == 400);
    std::vector<std::wstring> changes;
    settings.onChange([&](const wchar_t* name) {
        changes.emplace_back(name);
        settings.save();
        CHECK(stores.of(file)->load().contains(L"Unknown"));
    });
    settings.load();
    CHECK((settings.getNumber(L"Width") == 640 && settings.getNumber(L"Height") == 480 && settings.getFlag(L"Flag")));
    settings.setFlag(L"Flag", false);
    settings.setText(L"Title", L"\x0416");
    settings.setText(L"Title", L"\x0416");
    settings.reset(L"Height");
    CHECK(changes == std::vector<std::wstring>{L"Height", L"Flag", L"Title", L"Height"});
    settings.save();
    CHECK(stores.of(file)->load() == Values{{L"Width", L"640"},
                                            {L"Height", L"400"},
                                            {L"Flag", L"0"},
                                            {L"Huge", L"1"},
                                            {L"Title", L"\x0416"},
                                            {L"Unknown", L"kept"},
                                            {L"Version", L"1"}});

    expectError<Exception>([&] { settings.setNumber(L"Width", 1); }, "Not in the range of setting \"Width\"");
    expectError<Exception>([&] { settings.getText(L"Width"); }, "No setting \"Width\" of this type");
    expectError<Exception>([&] { settings.reset(L"None"); }, "No setting \"None\" of this type");
    expectError<Exception>([&] { settings.declareNumber(L"x", 0, 1, 2); }, "Not in the range of setting \"x\"");
    for (const wchar_t* const taken : {L"End", L"Current", L"Version"})
        expectError<Exception>([&] { settings.declareText(taken, L""); },
                               "Not in the range of setting \"" + BasicString<char>(taken) + "\"");
}

TEST_CASE("Settings: what an older version has stored is migrated, and a newer one stays newer")
{
    const Stores stores;
    std::vector<long long> migrated;
    const auto inMillimetres = [&](Values& values, long long version) {
        migrated.push_back(version);
        values[L"Length"] = values[L"Size"] + L"0";
        values.erase(L"Size");
    };
    for (const int length : {1, 70, 70}) {
        Settings settings(stores.of(file), 2, inMillimetres);
        settings.declareNumber(L"Length", 1);
        settings.load();
        CHECK(settings.getNumber(L"Length") == length);
        length == 1 ? stores.of(file)->save({{L"Size", L"7"}}) : settings.save();
    }
    CHECK(migrated == std::vector<long long>{0}); // What is from before there were versions, and not the empty store.
    CHECK(stores.of(file)->load() == Values{{L"Length", L"70"}, {L"Version", L"2"}});
    Settings older(stores.of(file), 1);
    older.load();
    older.save();
    CHECK(stores.of(file)->load().at(L"Version") == L"2");
}

TEST_CASE("saves settings for ever", "[.]") // The child of the next one, which says by the environment where.
{
    const wchar_t *const kind = _wgetenv(L"TARN_KIND"), *const path = _wgetenv(L"TARN_PATH"),
                         *const key = _wgetenv(L"TARN_KEY");
    REQUIRE((kind && path && key));
    const auto store = storeOf(static_cast<Kind>(kind[0] - L'0'), path, key);
    const Event begun = Event::openNamed(begunName);
    for (int number = 0;; number = (number + 1) % 1000) {
        Values values;
        for (int i = 0; i < 50; ++i)
            values[BasicString<wchar_t>(L"n") + std::to_wstring(i)] = std::to_wstring(number);
        store->save(values);
        begun.set();
    }
}

TEST_CASE("SettingsStore: a program that is killed while it saves loses nothing")
{
    const char* const wish = std::getenv("TARN_KILLS");
    const int kills = wish ? std::atoi(wish) : 8;
    const Stores stores;
    const Kind kind = GENERATE(file, ini, registry);
    CAPTURE(kind);
    Environment environment = Environment::current();
    environment.set(L"TARN_KIND", std::to_wstring(kind).c_str());
    environment.set(L"TARN_PATH", stores.folder.file(L"\x0416.txt"));
    environment.set(L"TARN_KEY", (stores.key.path() + L"\\Settings").c_str());
    const Event begun(begunName, true, false);
    std::mt19937 random;
    int whole = 0;
    for (int i = 0; i < kills; ++i) {
        begun.reset();
        Process child = tryAgain([&] {
            return Process(CommandLine(ownProgram()).add("saves settings for ever"),
                           ProcessOptions{.environment = environment, .creationFlags = CREATE_NO_WINDOW});
        });
        REQUIRE(begun.wait(20'000) == WindowsHandle::signaled);
        Sleep(random() % 20);
        child.terminate(0);
        child.wait(INFINITE);
        whole += savedNumber(stores.of(kind)->load()) >= 0;
    }
    CHECK(whole == kills);
}
