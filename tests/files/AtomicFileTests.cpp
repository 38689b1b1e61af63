#include "Test.h"

#include <tarn/AtomicFile.h>
#include <tarn/CommandLine.h>
#include <tarn/FileSystem.h>
#include <tarn/Process.h>

#include <random>

#include "ScratchFolder.h"

TEST_CASE("AtomicFile: the old content stays until the new one is committed")
{
    const ScratchFolder folder;
    folder.write("file", "old");
    const auto name = folder.file(L"file");
    {
        AtomicFile file(name);
        file << 42;
        expectWindowsError([&] { AtomicFile second(name); }, ERROR_SHARING_VIOLATION,
                           "Can't open \"" + folder.file("file.new") + "\"");
        CHECK(folder.read("file") == "old");
    }
    CHECK_FALSE(FileSystem::exists(name + L".new"));
    CHECK(folder.read("file") == "old");

    folder.write("file.new", "left by a crash, and longer");
    AtomicFile::save(name, "new", 3);
    CHECK(folder.read("file") == "new");
    AtomicFile::save(folder.file(L"\x0416"), "first", 5);
    CHECK(FileSystem::getEntry(folder.file(L"\x0416")).size == 5);
    CHECK_FALSE(FileSystem::exists(name + L".new"));
}

TEST_CASE("AtomicFile: a commit that fails can be tried again, and a read-only file is kept")
{
    const ScratchFolder folder;
    const std::string failed = "Can't replace \"" + folder.write("file", "old") + "\"";
    const auto name = folder.file(L"file");
    AtomicFile file(name);
    file.write("new", 3);
    WindowsFile reader = WindowsFile::openToRead(name);
    expectWindowsError([&] { file.commit(); }, failed);
    reader.close();
    FileSystem::setAttributes(name, FILE_ATTRIBUTE_READONLY);
    expectWindowsError([&] { file.commit(); }, ERROR_ACCESS_DENIED, failed);
    CHECK(folder.read("file") == "old");
    FileSystem::setAttributes(name, FILE_ATTRIBUTE_NORMAL);
    file.commit();
    file.commit();
    CHECK(folder.read("file") == "new");
    CHECK_THROWS_AS(file.write("x", 1), WindowsError);
}

TEST_CASE("saves for ever", "[.]") // The child of the next one.
{
    for (char content = 'a';; content = content == 'z' ? 'a' : static_cast<char>(content + 1))
        AtomicFile::save(L"saved", std::string(200'000, content).data(), 200'000);
}

TEST_CASE("AtomicFile: a program that is killed while it saves leaves the old content or the new")
{
    const char* const wish = std::getenv("TARN_KILLS");
    const int kills = wish ? std::atoi(wish) : 20;
    const ScratchFolder folder;
    folder.write("saved", std::string(200'000, 'a'));
    std::mt19937 random;
    int killed = 0, whole = 0, begun = 0;
    for (; killed < kills || (begun == 0 && killed < 50 * kills); ++killed) { // Some are in the middle of it.
        Process child = tryAgain([&] {
            return Process(CommandLine(ownProgram()).add("saves for ever"),
                           ProcessOptions{.workingFolder = folder.path().c_str(), .creationFlags = CREATE_NO_WINDOW});
        });
        const Time before = FileSystem::getEntry(folder.file(L"saved")).lastWriteTime;
        while (FileSystem::getEntry(folder.file(L"saved")).lastWriteTime == before && !child.isSignaled())
            Sleep(1);
        for (auto spins = random() % 20'000; spins > 0; --spins)
            YieldProcessor();
        child.terminate(0);
        child.wait(INFINITE);
        const std::string data = folder.read("saved");
        whole += data == std::string(200'000, data.empty() ? '?' : data.front());
        begun += FileSystem::exists(folder.file(L"saved.new")) ? 1 : 0;
    }
    CHECK(whole == killed);
    CHECK(begun > 0);
}
