#include <catch2/catch.hpp>

#include <tarn/AtomicFile.h>
#include <tarn/CommandLine.h>
#include <tarn/FileSystem.h>
#include <tarn/Process.h>

#include <cstdlib>
#include <random>
#include <string>

#include "Expect.h"
#include "ScratchFolder.h"
#include "TryAgain.h"

using namespace tarn;
using support::expectWindowsError;

TEST_CASE("AtomicFile: the old content stays until the new one is committed", "[files][atomic]")
{
    const support::ScratchFolder folder;
    folder.write("file", "old");
    const std::wstring name = folder.file(L"file");
    {
        AtomicFile file(name.c_str());
        file << 42;
        expectWindowsError([&] { AtomicFile second(name.c_str()); }, ERROR_SHARING_VIOLATION,
                           "Can't open \"" + folder.file("file.new") + "\"");
        CHECK(folder.read("file") == "old");
    }
    CHECK_FALSE(FileSystem::exists((name + L".new").c_str()));
    CHECK(folder.read("file") == "old");

    folder.write("file.new", "left by a crash, and longer");
    AtomicFile::save(name.c_str(), "new", 3);
    CHECK(folder.read("file") == "new");
    AtomicFile::save(folder.file(L"\x0416").c_str(), "first", 5);
    CHECK(FileSystem::getEntry(folder.file(L"\x0416").c_str()).size == 5);
    CHECK_FALSE(FileSystem::exists((name + L".new").c_str()));
}

TEST_CASE("AtomicFile: a commit that fails can be tried again, and a read-only file is kept", "[files][atomic]")
{
    const support::ScratchFolder folder;
    const std::string failed = "Can't replace \"" + folder.write("file", "old") + "\"";
    const std::wstring name = folder.file(L"file");
    AtomicFile file(name.c_str());
    file.write("new", 3);
    WindowsFile reader = WindowsFile::openToRead(name.c_str());
    expectWindowsError([&] { file.commit(); }, failed);
    reader.close();
    FileSystem::setAttributes(name.c_str(), FILE_ATTRIBUTE_READONLY);
    expectWindowsError([&] { file.commit(); }, ERROR_ACCESS_DENIED, failed);
    CHECK(folder.read("file") == "old");
    FileSystem::setAttributes(name.c_str(), FILE_ATTRIBUTE_NORMAL);
    file.commit();
    file.commit();
    CHECK(folder.read("file") == "new");
    CHECK_THROWS_AS(file.write("x", 1), WindowsError);
}

TEST_CASE("saves for ever", "[.]") // The child of the next one.
{
    std::wstring name = L"saved";
    for (char content = 'a';; content = content == 'z' ? 'a' : static_cast<char>(content + 1)) {
        const std::string data(200'000, content);
        AtomicFile::save(name.c_str(), data.data(), 200'000);
    }
}

TEST_CASE("AtomicFile: a program that is killed while it saves leaves the old content or the new", "[files][atomic]")
{
    const char* const wish = std::getenv("TARN_KILLS");
    const int kills = wish ? std::atoi(wish) : 20;
    const support::ScratchFolder folder;
    folder.write("saved", std::string(200'000, 'a'));
    std::mt19937 random;
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    int whole = 0, begun = 0;
    for (int i = 0; i < kills; ++i) {
        Process child = support::tryAgain([&] {
            return Process(CommandLine(program).add("saves for ever"),
                           ProcessOptions{.workingFolder = folder.path().c_str(), .creationFlags = CREATE_NO_WINDOW});
        });
        const Time before = FileSystem::getEntry(folder.file(L"saved").c_str()).lastWriteTime;
        while (FileSystem::getEntry(folder.file(L"saved").c_str()).lastWriteTime == before && !child.isSignaled())
            Sleep(1);
        for (auto spins = random() % 20'000; spins > 0; --spins)
            YieldProcessor();
        child.terminate(0);
        child.wait(INFINITE);
        const std::string data = folder.read("saved");
        whole += data == std::string(200'000, data.empty() ? '?' : data.front());
        begun += FileSystem::exists(folder.file(L"saved.new").c_str()) ? 1 : 0;
    }
    CHECK(whole == kills);
    CHECK((begun > 0 || kills < 20)); // Some were in the middle of it.
}
