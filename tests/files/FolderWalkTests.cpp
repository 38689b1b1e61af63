#include "Test.h"

#include <tarn/FileSystem.h>
#include <tarn/FolderWalk.h>

#include "ScratchFolder.h"

namespace {
/// Files in folders, one of them outside of the code page.
void makeTree(const ScratchFolder& folder)
{
    FileSystem::createFolder(folder.file(L"a\\b\\empty"));
    FileSystem::createFolder(folder.file(L"\x0416"));
    for (const char* const name : {"one.txt", "a\\two.txt", "a\\b\\three.txt"})
        folder.write(name, "12345");
}

/// The paths below the folder that a walk shows, in order.
std::vector<std::wstring> walked(const ScratchFolder& folder, WalkOptions options, const wchar_t* skipped = L"none")
{
    std::vector<std::wstring> paths;
    FolderWalk walk(folder.file(L""), options);
    for (const FolderEntry& entry : walk) {
        paths.push_back(entry.path.substr(folder.file(L"").size()));
        CHECK(entry.path.endsWith(entry.name));
        CHECK(static_cast<std::ptrdiff_t>(entry.depth) == std::count(paths.back().begin(), paths.back().end(), L'\\'));
        CHECK(entry.size == (entry.isFolder() ? 0u : 5u));
        if (entry.name == skipped)
            walk.skipFolder();
    }
    CHECK_FALSE(walk.next());
    std::sort(paths.begin(), paths.end());
    return paths;
}
} // namespace

TEST_CASE("FolderWalk: all entries of a folder, and those inside when it is recursive")
{
    using Paths = std::vector<std::wstring>;
    const ScratchFolder folder;
    makeTree(folder);
    const unsigned long handles = openHandles();
    CHECK(walked(folder, {}) == Paths{L"a", L"one.txt", L"\x0416"});
    CHECK(walked(folder, {.recursive = true, .followLinks = true}) ==
          Paths{L"a", L"a\\b", L"a\\b\\empty", L"a\\b\\three.txt", L"a\\two.txt", L"one.txt", L"\x0416"});
    CHECK(walked(folder, {.recursive = true}, L"b") == Paths{L"a", L"a\\b", L"a\\two.txt", L"one.txt", L"\x0416"});

    FolderWalk left(folder.file(L"a"), {.recursive = true});
    CHECK(left.next());
    FolderWalk moved(std::move(left));
    CHECK(moved.next());
    moved = FolderWalk(folder.file(L"a\\b\\empty"));
    CHECK_FALSE(moved.next());
    CHECK(openHandles() == handles);
}

TEST_CASE("FolderWalk: a folder that cannot be read throws, and one inside may be passed over")
{
    const ScratchFolder folder;
    makeTree(folder);
    const auto missing = folder.file("missing");
    expectWindowsError([&] { FolderWalk(folder.file(L"missing")); }, ERROR_PATH_NOT_FOUND,
                       "Can't read folder \"" + missing + "\"");
    expectWindowsError([&] { FolderWalk(folder.file(L"one.txt")); },
                       "Can't read folder \"" + folder.file("one.txt") + "\"");
    for (const bool skips : {false, true}) {
        FolderWalk walk(folder.file(L""), {.recursive = true, .skipUnreadable = skips});
        while (walk.next() && walk.getEntry().name != L"a")
            ;
        FileSystem::remove(folder.file(L"a")); // Between its name and its content.
        const auto finish = [&] {
            while (walk.next())
                ;
        };
        if (skips)
            CHECK_NOTHROW(finish());
        else
            CHECK_THROWS_AS(finish(), WindowsError);
        FileSystem::createFolder(folder.file(L"a"));
    }
}
