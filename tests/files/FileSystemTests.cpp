#include "Test.h"

#include <tarn/AtomicFile.h>
#include <tarn/FileSystem.h>
#include <tarn/WindowsFile.h>

#include <filesystem>

#include "ScratchFolder.h"

namespace {
std::size_t entriesIn(const BasicString<wchar_t>& folder)
{
    std::size_t count = 0;
    for ([[maybe_unused]] const FolderEntry& entry : FolderWalk(folder, {.recursive = true}))
        ++count;
    return count;
}
} // namespace

TEST_CASE("FileSystem: what is there is known without an exception")
{
    const ScratchFolder folder;
    folder.write("file", "x");
    const auto file = folder.file(L"file");
    CHECK((FileSystem::exists(file) && FileSystem::isFile(file) && !FileSystem::isFolder(file)));
    CHECK((FileSystem::isFolder(folder.path().c_str()) && !FileSystem::isFile(folder.path().c_str())));
    for (const wchar_t* const none : {L"no such file", L"", L"Q:\\none", L"a|b", static_cast<const wchar_t*>(nullptr)})
        CHECK_FALSE((FileSystem::exists(none) || FileSystem::isFile(none) || FileSystem::isFolder(none)));
}

TEST_CASE("FileSystem: attributes and times are read and written")
{
    const ScratchFolder folder;
    const auto name = folder.write("file", "12345");
    const auto file = folder.file(L"file");
    const Time first = Time::fromTimeT(1'000'000'000), last(1'234'567'890'123);
    FileSystem::setTimes(file, first, first + 1000, first);
    FileSystem::setLastWriteTime(file, last);
    FileSystem::setAttributes(file, FILE_ATTRIBUTE_READONLY);
    const FolderEntry entry = FileSystem::getEntry(file);
    CHECK(entry.lastWriteTime == last);
    CHECK(entry.lastAccessTime == first + 1000);
    CHECK((entry.creationTime == first || isWine()));
    CHECK((entry.attributes & FILE_ATTRIBUTE_READONLY) != 0);
    CHECK((entry.name == L"file" && entry.path == file && entry.size == 5 && !entry.isLink));
    CHECK(FileSystem::getEntry(folder.file(L"") + L"\\").name == folder.path().filename().wstring());

    FileSystem::setAttributes(file, FILE_ATTRIBUTE_NORMAL);
    const auto none = file + L"\\x";
    expectWindowsError([&] { FileSystem::getEntry(none); }, "Can't get attributes of \"" + name + "\\x\"");
    expectWindowsError([&] { FileSystem::setAttributes(none, 0); }, "Can't set attributes of \"" + name + "\\x\"");
    expectWindowsError([&] { FileSystem::setLastWriteTime(none, 0); }, "Can't set times of \"" + name + "\\x\"");
    expectWindowsError([&] { FileSystem::createFolder(file); }, ERROR_ALREADY_EXISTS,
                       "Can't create folder \"" + name + "\"");
    expectWindowsError([&] { FileSystem::createFolder(none); }, "Can't create folder \"" + name + "\\x\"");
}

TEST_CASE("FileSystem: a tree is copied, moved and removed, whatever is read-only")
{
    const ScratchFolder folder;
    const auto from = folder.file(L"from"), to = folder.file(L"new\\to"), third = folder.file(L"from2");
    FileSystem::createFolder(folder.file(L"from\\a\\\x0416"));
    FileSystem::createFolder(folder.file(L"new"));
    folder.write("from\\a\\file", "content");
    const auto file = folder.file(L"from\\a\\file");
    FileSystem::setLastWriteTime(file, 1'000'000'000'000);
    FileSystem::setAttributes(file, FILE_ATTRIBUTE_READONLY);

    CHECK(FileSystem::copy(from + L"\\", to + L"/"));
    CHECK(entriesIn(to) == 3);
    CHECK(folder.read("new\\to\\a\\file") == "content");
    CHECK(FileSystem::getEntry(to + L"\\a\\file").lastWriteTime == 1'000'000'000'000);
    expectWindowsError([&] { FileSystem::copy(from, to); }, ERROR_ALREADY_EXISTS,
                       "Can't copy \"" + folder.file("from") + "\"");
    expectWindowsError([&] { FileSystem::copy(from, to + L"\\a\\file", {.replace = true}); }, ERROR_ALREADY_EXISTS,
                       "Can't copy \"" + folder.file("from") + "\"");
    for (const auto& inside : {folder.file(L"FROM\\a\\x"), from})
        expectWindowsError([&] { FileSystem::copy(from, inside); }, ERROR_INVALID_PARAMETER,
                           "Can't copy \"" + folder.file("from") + "\"");
    expectWindowsError([&] { FileSystem::copy(file, to + L"\\a\\file"); }, ERROR_FILE_EXISTS,
                       "Can't copy \"" + folder.file("from\\a\\file") + "\"");
    expectWindowsError([&] { FileSystem::move(file, to + L"\\a\\file"); }, ERROR_ALREADY_EXISTS,
                       "Can't move \"" + folder.file("from\\a\\file") + "\"");

    CHECK(FileSystem::move(to, third));
    CHECK_FALSE(FileSystem::exists(to));
    CHECK(entriesIn(third) == 3);
    expectWindowsError([&] { FileSystem::move(to, third); }, ERROR_FILE_NOT_FOUND,
                       "Can't move \"" + folder.file("new\\to") + "\"");
    CHECK(FileSystem::remove(third + L"\\a\\file"));
    CHECK(FileSystem::copy(from, third, {.replace = true})); // Fills the folder up.
    CHECK(entriesIn(third) == 3);
    FileSystem::setAttributes(third + L"\\a", FILE_ATTRIBUTE_READONLY);
    CHECK(FileSystem::remove(third));
    CHECK_FALSE(FileSystem::exists(third));
    CHECK(FileSystem::remove(third)); // No error.
}

TEST_CASE("FileSystem: on another drive a tree is copied, and removed only when all was copied")
{
    const ScratchFolder folder;
    const auto other = folder.onOtherDrive();
    if (other.empty())
        return;
    const auto from = folder.file(L"from"), file = folder.file(L"from\\a\\file");
    FileSystem::createFolder(folder.file(L"from\\a"));
    folder.write("from\\a\\file", "content");
    FileSystem::setAttributes(file, FILE_ATTRIBUTE_READONLY);
    unsigned calls = 0;
    const FileOptions twice{.onProgress = [&](const FileProgress&) { return ++calls < 4; }};
    CHECK_FALSE(FileSystem::move(from, other, twice));
    CHECK(entriesIn(from) == 2);
    CHECK(FileSystem::remove(other));
    CHECK(FileSystem::move(from, other));
    CHECK_FALSE(FileSystem::exists(from));
    CHECK(entriesIn(other) == 2);
    CHECK(FileSystem::move(other + L"\\a\\file", folder.file(L"back")));
    CHECK(folder.read("back") == "content");
    FileSystem::setAttributes(folder.file(L"back"), FILE_ATTRIBUTE_NORMAL);
    folder.write("second", "new");
    CHECK_THROWS_AS(FileSystem::move(folder.file(L"second"), other + L"\\none\\x"), WindowsError);
    CHECK(FileSystem::exists(folder.file(L"second")));
}

TEST_CASE("FileSystem: what cannot be removed is named, and all else is gone")
{
    const ScratchFolder folder;
    FileSystem::createFolder(folder.file(L"tree\\a"));
    folder.write("tree\\a\\open", "");
    folder.write("tree\\other", "");
    FileSystem::setAttributes(folder.file(L"tree\\a\\open"), FILE_ATTRIBUTE_READONLY);
    const WindowsFile open(folder.file(L"tree\\a\\open"), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    expectWindowsError([&] { FileSystem::remove(folder.file(L"tree")); }, ERROR_SHARING_VIOLATION,
                       "Can't remove \"" + folder.file("tree\\a\\open") + "\"");
    expectWindowsError([&] { FileSystem::remove(folder.file(L"tree\\a\\open")); }, ERROR_SHARING_VIOLATION,
                       "Can't remove \"" + folder.file("tree\\a\\open") + "\"");
    CHECK(entriesIn(folder.file(L"tree")) == 2);
    CHECK(FileSystem::getEntry(folder.file(L"tree\\a\\open")).attributes & FILE_ATTRIBUTE_READONLY); // As it was.
    FileSystem::setAttributes(folder.file(L"tree\\a\\open"), FILE_ATTRIBUTE_NORMAL);
}

TEST_CASE("FileSystem: progress is told, and ends the work when it says so or throws")
{
    const ScratchFolder folder;
    FileSystem::createFolder(folder.file(L"from\\a"));
    folder.write("from\\a\\file", std::string(100'000, 'x'));
    folder.write("from\\other", "x");
    const auto from = folder.file(L"from"), to = folder.file(L"to");
    unsigned calls = 0, last = 1000;
    BasicString<wchar_t> former;
    const FileOptions counting{.replace = true, .onProgress = [&](const FileProgress& progress) {
                                   CHECK(BasicString<wchar_t>(progress.path).startsWith(from));
                                   CHECK(progress.done <= (former == progress.path ? progress.size : 0));
                                   former = progress.path;
                                   return ++calls < last;
                               }};
    CHECK(FileSystem::copy(from, to, counting));
    CHECK(calls >= 4);
    for (last = 1; last <= 3; ++last) {
        former.clear();
        calls = 0;
        CHECK_FALSE(FileSystem::copy(from, to, counting));
        CHECK(calls == last);
        calls = 0;
        CHECK_FALSE(FileSystem::remove(from, counting));
        CHECK(FileSystem::exists(from));
        FileSystem::copy(to, from, {.replace = true});
    }
    const FileOptions failing{.onProgress = [](const FileProgress&) -> bool { throw std::runtime_error("no more"); }};
    CHECK_THROWS_WITH(FileSystem::copy(from, L"elsewhere", failing), "no more");
    CHECK_THROWS_WITH(FileSystem::move(from, L"elsewhere", failing), "no more");
    CHECK_THROWS_WITH(FileSystem::remove(from, failing), "no more");
    CHECK(entriesIn(from) == 3);
}

TEST_CASE("FileSystem: paths of 30,000 characters outside of the code page")
{
    const ScratchFolder folder;
    // Wine is held to what a path of the host may have, 4,096 bytes.
    const std::size_t longest = isWine() ? 1200 : 30'000;
    auto deep = folder.file(L"deep");
    while (deep.size() < longest)
        deep += L"\\" + std::wstring(60, L'\x0416') + L"\xD83D\xDE00";
    FileSystem::createFolder(deep);
    const auto file = deep + L"\\\x4E2D", copy = folder.file(L"copy");
    CHECK(FileSystem::isFolder(deep));
    AtomicFile::save(file, "first", 5);
    AtomicFile::save(file, "x", 1);
    CHECK(FileSystem::getEntry(file).size == 1);
    CHECK(FileSystem::copy(folder.file(L"deep"), copy));
    CHECK(entriesIn(copy) == entriesIn(folder.file(L"deep")));
    CHECK(FileSystem::move(deep + L"\\\x4E2D", folder.file(L"moved")));
    CHECK(FileSystem::remove(folder.file(L"deep")));
    CHECK(folder.read("moved") == "x");
}
