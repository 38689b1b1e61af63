#include <catch2/catch.hpp>

#include <tarn/FileSystem.h>
#include <tarn/WindowsFile.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "Expect.h"
#include "ScratchFolder.h"
#include "Wine.h"

using namespace tarn;
using support::expectWindowsError;

namespace {
std::size_t entriesIn(const std::wstring& folder)
{
    std::size_t count = 0;
    for ([[maybe_unused]] const FolderEntry& entry : FolderWalk(folder.c_str(), {.recursive = true}))
        ++count;
    return count;
}
} // namespace

TEST_CASE("FileSystem: what is there is known without an exception", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    folder.write("file", "x");
    const std::wstring file = folder.file(L"file");
    CHECK(
        (FileSystem::exists(file.c_str()) && FileSystem::isFile(file.c_str()) && !FileSystem::isFolder(file.c_str())));
    CHECK((FileSystem::isFolder(folder.path().c_str()) && !FileSystem::isFile(folder.path().c_str())));
    for (const wchar_t* const none : {L"no such file", L"", L"Q:\\none", L"a|b", static_cast<const wchar_t*>(nullptr)})
        CHECK_FALSE((FileSystem::exists(none) || FileSystem::isFile(none) || FileSystem::isFolder(none)));
}

TEST_CASE("FileSystem: attributes and times are read and written", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    const std::string name = folder.write("file", "12345");
    const std::wstring file = folder.file(L"file");
    const Time first = Time::fromTimeT(1'000'000'000), last(1'234'567'890'123);
    FileSystem::setTimes(file.c_str(), first, first + 1000, first);
    FileSystem::setLastWriteTime(file.c_str(), last);
    FileSystem::setAttributes(file.c_str(), FILE_ATTRIBUTE_READONLY);
    const FolderEntry entry = FileSystem::getEntry(file.c_str());
    CHECK(entry.lastWriteTime == last);
    CHECK(entry.lastAccessTime == first + 1000);
    CHECK((entry.creationTime == first || support::isWine()));
    CHECK((entry.attributes & FILE_ATTRIBUTE_READONLY) != 0);
    CHECK((entry.name == L"file" && entry.path == file && entry.size == 5 && !entry.isLink));
    CHECK(FileSystem::getEntry((folder.file(L"") + L"\\").c_str()).name == folder.path().filename().wstring());

    FileSystem::setAttributes(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    const std::wstring none = file + L"\\x";
    expectWindowsError([&] { FileSystem::getEntry(none.c_str()); }, "Can't get attributes of \"" + name + "\\x\"");
    expectWindowsError([&] { FileSystem::setAttributes(none.c_str(), 0); },
                       "Can't set attributes of \"" + name + "\\x\"");
    expectWindowsError([&] { FileSystem::setLastWriteTime(none.c_str(), 0); },
                       "Can't set times of \"" + name + "\\x\"");
    expectWindowsError([&] { FileSystem::createFolder(file.c_str()); }, ERROR_ALREADY_EXISTS,
                       "Can't create folder \"" + name + "\"");
    expectWindowsError([&] { FileSystem::createFolder(none.c_str()); }, "Can't create folder \"" + name + "\\x\"");
}

TEST_CASE("FileSystem: a tree is copied, moved and removed, whatever is read-only", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    const std::wstring from = folder.file(L"from"), to = folder.file(L"new\\to"), third = folder.file(L"third");
    FileSystem::createFolder(folder.file(L"from\\a\\\x0416").c_str());
    FileSystem::createFolder(folder.file(L"new").c_str());
    folder.write("from\\a\\file", "content");
    const std::wstring file = folder.file(L"from\\a\\file");
    FileSystem::setLastWriteTime(file.c_str(), 1'000'000'000'000);
    FileSystem::setAttributes(file.c_str(), FILE_ATTRIBUTE_READONLY);

    CHECK(FileSystem::copy((from + L"\\").c_str(), (to + L"/").c_str()));
    CHECK(entriesIn(to) == 3);
    CHECK(folder.read("new\\to\\a\\file") == "content");
    CHECK(FileSystem::getEntry((to + L"\\a\\file").c_str()).lastWriteTime == 1'000'000'000'000);
    expectWindowsError([&] { FileSystem::copy(from.c_str(), to.c_str()); }, ERROR_ALREADY_EXISTS,
                       "Can't copy \"" + folder.file("from") + "\"");
    expectWindowsError([&] { FileSystem::copy(from.c_str(), (from + L"\\a\\x").c_str()); }, ERROR_INVALID_PARAMETER,
                       "Can't copy \"" + folder.file("from") + "\"");
    expectWindowsError([&] { FileSystem::copy(file.c_str(), (to + L"\\a\\file").c_str()); }, ERROR_FILE_EXISTS,
                       "Can't copy \"" + folder.file("from\\a\\file") + "\"");

    CHECK(FileSystem::move(to.c_str(), third.c_str()));
    CHECK_FALSE(FileSystem::exists(to.c_str()));
    CHECK(entriesIn(third) == 3);
    expectWindowsError([&] { FileSystem::move(to.c_str(), third.c_str()); }, ERROR_FILE_NOT_FOUND,
                       "Can't move \"" + folder.file("new\\to") + "\"");
    CHECK(FileSystem::remove((third + L"\\a\\file").c_str()));
    CHECK(FileSystem::copy(from.c_str(), third.c_str(), {.replace = true})); // Fills the folder up.
    CHECK(entriesIn(third) == 3);
    CHECK(FileSystem::remove(third.c_str()));
    CHECK_FALSE(FileSystem::exists(third.c_str()));
    CHECK(FileSystem::remove(third.c_str())); // No error.
}

TEST_CASE("FileSystem: on another drive a tree is copied, and removed only when all was copied", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    // Wine's drive Z: has more than one of the host's drives in it; elsewhere the variable says where to.
    const wchar_t* const wish = _wgetenv(L"TARN_OTHER_DRIVE");
    const std::wstring other =
        std::wstring(wish ? wish : L"Z:\\dev\\shm") + L"\\tarn" + folder.path().filename().wstring();
    const std::wstring from = folder.file(L"from"), file = folder.file(L"from\\a\\file");
    FileSystem::createFolder(folder.file(L"from\\a").c_str());
    folder.write("from\\a\\file", "content");
    if (MoveFileExW(from.c_str(), other.c_str(), 0) || GetLastError() != ERROR_NOT_SAME_DEVICE) {
        FileSystem::remove(other.c_str());
        WARN("There is no other drive: name a folder on one in TARN_OTHER_DRIVE");
        return;
    }
    FileSystem::setAttributes(file.c_str(), FILE_ATTRIBUTE_READONLY);
    unsigned calls = 0;
    const FileOptions twice{.onProgress = [&](const FileProgress&) { return ++calls < 4; }};
    CHECK_FALSE(FileSystem::move(from.c_str(), other.c_str(), twice));
    CHECK(entriesIn(from) == 2);
    CHECK(FileSystem::remove(other.c_str()));
    CHECK(FileSystem::move(from.c_str(), other.c_str()));
    CHECK_FALSE(FileSystem::exists(from.c_str()));
    CHECK(entriesIn(other) == 2);
    CHECK(FileSystem::move((other + L"\\a\\file").c_str(), folder.file(L"back").c_str()));
    CHECK(folder.read("back") == "content");
    FileSystem::setAttributes(folder.file(L"back").c_str(), FILE_ATTRIBUTE_NORMAL);
    folder.write("second", "new");
    CHECK_THROWS_AS(FileSystem::move(folder.file(L"second").c_str(), (other + L"\\none\\x").c_str()), WindowsError);
    CHECK(FileSystem::exists(folder.file(L"second").c_str()));
    FileSystem::remove(other.c_str());
}

TEST_CASE("FileSystem: what cannot be removed is named, and all else is gone", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    FileSystem::createFolder(folder.file(L"tree\\a").c_str());
    folder.write("tree\\a\\open", "");
    folder.write("tree\\other", "");
    const WindowsFile open(folder.file(L"tree\\a\\open").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    expectWindowsError([&] { FileSystem::remove(folder.file(L"tree").c_str()); }, ERROR_SHARING_VIOLATION,
                       "Can't remove \"" + folder.file("tree\\a\\open") + "\"");
    expectWindowsError([&] { FileSystem::remove(folder.file(L"tree\\a\\open").c_str()); }, ERROR_SHARING_VIOLATION,
                       "Can't remove \"" + folder.file("tree\\a\\open") + "\"");
    CHECK(entriesIn(folder.file(L"tree")) == 2);
}

TEST_CASE("FileSystem: progress is told, and ends the work when it says so or throws", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    FileSystem::createFolder(folder.file(L"from\\a").c_str());
    folder.write("from\\a\\file", std::string(100'000, 'x'));
    folder.write("from\\other", "x");
    const std::wstring from = folder.file(L"from"), to = folder.file(L"to");
    unsigned calls = 0, last = 1000;
    const FileOptions counting{.replace = true, .onProgress = [&](const FileProgress& progress) {
                                   CHECK(std::wstring(progress.path).starts_with(from));
                                   CHECK(progress.done <= progress.size);
                                   return ++calls < last;
                               }};
    CHECK(FileSystem::copy(from.c_str(), to.c_str(), counting));
    CHECK(calls >= 4);
    for (last = 1; last <= 3; ++last) {
        calls = 0;
        CHECK_FALSE(FileSystem::copy(from.c_str(), to.c_str(), counting));
        CHECK(calls == last);
        calls = 0;
        CHECK_FALSE(FileSystem::remove(from.c_str(), counting));
        CHECK(FileSystem::exists(from.c_str()));
        FileSystem::copy(to.c_str(), from.c_str(), {.replace = true});
    }
    const FileOptions failing{.onProgress = [](const FileProgress&) -> bool { throw std::runtime_error("no more"); }};
    CHECK_THROWS_WITH(FileSystem::copy(from.c_str(), L"elsewhere", failing), "no more");
    CHECK_THROWS_WITH(FileSystem::move(from.c_str(), L"elsewhere", failing), "no more");
    CHECK_THROWS_WITH(FileSystem::remove(from.c_str(), failing), "no more");
    CHECK(entriesIn(from) == 3);
}

TEST_CASE("FileSystem: paths of 30,000 characters outside of the code page", "[files][filesystem]")
{
    const support::ScratchFolder folder;
    // Wine is held to what a path of the host may have, 4,096 bytes.
    const std::size_t longest = support::isWine() ? 1200 : 30'000;
    std::wstring deep = folder.file(L"deep");
    while (deep.size() < longest)
        deep += L"\\" + std::wstring(60, L'\x0416') + L"\xD83D\xDE00";
    FileSystem::createFolder(deep.c_str());
    const std::wstring file = deep + L"\\\x4E2D", copy = folder.file(L"copy");
    CHECK(FileSystem::isFolder(deep.c_str()));
    WindowsFile::createNew(file.c_str()).write("x", 1);
    CHECK(FileSystem::getEntry(file.c_str()).size == 1);
    CHECK(FileSystem::copy(folder.file(L"deep").c_str(), copy.c_str()));
    CHECK(entriesIn(copy) == entriesIn(folder.file(L"deep")));
    CHECK(FileSystem::move((deep + L"\\\x4E2D").c_str(), folder.file(L"moved").c_str()));
    CHECK(FileSystem::remove(folder.file(L"deep").c_str()));
    CHECK(folder.read("moved") == "x");
}
