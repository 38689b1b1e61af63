#include "Test.h"

#include <tarn/AtomicFile.h>
#include <tarn/FileSystem.h>

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
