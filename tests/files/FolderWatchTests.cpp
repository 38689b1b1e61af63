#include "Test.h"

#include <tarn/FileSystem.h>
#include <tarn/FolderWatch.h>
#include <tarn/WindowsHandle.h>

#include <set>

#include "ScratchFolder.h"

namespace {
/// What happens until a change of this name is seen.
std::vector<FolderChange> changesUntil(FolderWatch& watch, const wchar_t* name)
{
    std::vector<FolderChange> all;
    while (all.empty() || all.back().name != name) {
        const auto some = watch.getChanges(20'000);
        REQUIRE_FALSE(some.empty());
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

bool contains(const std::vector<FolderChange>& changes, FolderChange::kind what, const wchar_t* name,
              const wchar_t* oldName = L"")
{
    for (const FolderChange& change : changes)
        if (change.what == what && change.name == name && change.oldName == oldName)
            return true;
    return false;
}
} // namespace

TEST_CASE("FolderWatch: what is made, changed, renamed and removed is told by name")
{
    const ScratchFolder folder;
    FileSystem::createFolder(folder.file(L"in"));
    FolderWatch watch(folder.path().c_str());
    CHECK(watch.getChanges(0).empty());
    folder.write("file", "x");
    FileSystem::move(folder.file(L"file"), folder.file(L"\x0416"));
    folder.write("in\\inside", "y");
    FileSystem::remove(folder.file(L"\x0416"));
    CHECK(WindowsHandle::waitForAny({watch.getEvent()}, 20'000).first == WindowsHandle::signaled);
    FileSystem::createFolder(folder.file(L"end"));
    const auto changes = changesUntil(watch, L"end");
    CHECK(contains(changes, FolderChange::added, L"file"));
    CHECK(contains(changes, FolderChange::modified, L"file"));
    CHECK(contains(changes, FolderChange::renamed, L"\x0416", L"file"));
    if (!contains(changes, FolderChange::added, L"in\\inside")) {
        WARN("Nothing is told of the folders inside, as under Wine");
        CHECK(isWine());
    }
    CHECK(contains(changes, FolderChange::removed, L"\x0416"));
}

TEST_CASE("FolderWatch: without the folders inside, moved, and ended without a trace")
{
    const ScratchFolder folder;
    FileSystem::createFolder(folder.file(L"in"));
    FolderWatch(folder.path().c_str()).getChanges(0);
    const unsigned long handles = openHandles();
    {
        FolderWatch first(folder.path().c_str(), false), watch(folder.file(L"in"));
        watch = std::move(first);
        folder.write("in\\inside", "y");
        folder.write("end", "");
        for (const FolderChange& change : changesUntil(watch, L"end"))
            CHECK(change.name != L"in\\inside");
    }
    CHECK(openHandles() == handles);
    expectWindowsError([&] { FolderWatch(folder.file(L"none")); }, ERROR_FILE_NOT_FOUND,
                       "Can't watch folder \"" + folder.file("none") + "\"");
}

TEST_CASE("FolderWatch: of 10,000 changes none is missed, or the loss is told", "[stress]")
{
    const ScratchFolder folder;
    FolderWatch watch(folder.path().c_str());
    std::set<std::wstring> seen;
    bool lost = false;
    const auto note = [&](const std::vector<FolderChange>& changes) {
        for (const FolderChange& change : changes) {
            lost = lost || change.what == FolderChange::lost;
            if (change.what == FolderChange::added)
                seen.insert(change.name);
        }
    };
    for (int i = 0; i < 10'000; ++i) {
        const auto name = folder.file(std::to_wstring(i));
        CloseHandle(CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    }
    FileSystem::createFolder(folder.file(L"end"));
    while (!seen.contains(L"end") && !lost) {
        const auto changes = watch.getChanges(20'000);
        REQUIRE_FALSE(changes.empty());
        note(changes);
    }
    CHECK((lost || seen.size() == 10'001));
    note(watch.getChanges(0));
    FileSystem::createFolder(folder.file(L"again")); // It goes on.
    while (!seen.contains(L"again"))
        note(watch.getChanges(20'000));
}
