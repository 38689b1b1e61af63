#include "Test.h"

#include <tarn/FileLock.h>
#include <tarn/FileSystem.h>
#include <tarn/KnownFolder.h>

#include <future>
#include <set>

#include "ScratchFolder.h"

TEST_CASE("FileLock: shared ones share, an exclusive one is alone, and parts are apart")
{
    const ScratchFolder folder;
    folder.write("file", std::string(100, 'x'));
    const auto opened = [&] {
        return WindowsFile(folder.file(L"file"), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           nullptr, OPEN_EXISTING, 0, nullptr);
    };
    WindowsFile one = opened(), other = opened();
    FileLock lock(one, FileLock::shared);
    {
        const auto second = FileLock::tryLock(other, FileLock::shared);
        CHECK(second);
        CHECK_FALSE(FileLock::tryLock(other, FileLock::exclusive));
    }
    lock.unlock();
    lock.unlock();
    auto part = FileLock::tryLock(one, FileLock::exclusive, 10, 5);
    CHECK_FALSE(FileLock::tryLock(other, FileLock::shared, 14, 1));
    CHECK(FileLock::tryLock(other, FileLock::exclusive, 15));
    const auto beyond = FileLock::tryLock(other, FileLock::exclusive, (1ull << 32) + 10, 5);
    CHECK((beyond && !FileLock::tryLock(one, FileLock::shared, (1ull << 32) + 14, 1)));
    char byte;
    CHECK(other.read(&byte, 1) == 1);
    other.seek(12, Seekable::begin);
    if (isWine())
        WARN("Wine's locks keep nobody from reading who does not ask");
    else
        CHECK_THROWS_AS(other.read(&byte, 1), WindowsError);

    auto waiting = std::async(std::launch::async, [&] { const FileLock late(other, FileLock::exclusive, 0, 12); });
    CHECK(waiting.wait_for(std::chrono::milliseconds(30)) == std::future_status::timeout);
    part.reset();
    waiting.get();
    one.close();
    expectWindowsError([&] { FileLock(one, FileLock::shared); }, ERROR_INVALID_HANDLE, "Can't lock file");
    expectWindowsError([&] { FileLock::tryLock(one, FileLock::shared); }, ERROR_INVALID_HANDLE, "Can't lock file");
}

TEST_CASE("KnownFolder: each is a folder, and an unknown one is an error")
{
    std::set<std::wstring> paths;
    for (int folder = 0; folder <= static_cast<int>(KnownFolder::system); ++folder) {
        const BasicString<wchar_t> path = getKnownFolder(static_cast<KnownFolder>(folder));
        CHECK((path.contains(L":\\") && !path.endsWith(L"\\") && paths.insert(path).second));
    }
    using enum KnownFolder;
    for (const auto& [folder, variable] : {std::pair(localAppData, L"LOCALAPPDATA"),
                                           {roamingAppData, L"APPDATA"},
                                           {programData, L"ProgramData"},
                                           {profile, L"USERPROFILE"},
                                           {programFiles, L"ProgramFiles"},
                                           {windows, L"windir"}})
        CHECK(BasicString<char>(getKnownFolder(folder)).toLower() == BasicString<char>(_wgetenv(variable)).toLower());
    CHECK(FileSystem::isFolder(getKnownFolder(KnownFolder::temporary)));
    CHECK(FileSystem::isFile(getKnownFolder(KnownFolder::system) + L"\\kernel32.dll"));
    expectWindowsError([] { getKnownFolder(GUID{}); }, "Can't find known folder");
    expectWindowsError([] { getKnownFolder(static_cast<KnownFolder>(99)); }, "Can't find known folder");
}
