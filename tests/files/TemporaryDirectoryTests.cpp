#include "Test.h"

#include <tarn/FileSystem.h>
#include <tarn/Process.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/WindowsFile.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <thread>

#include "ScratchFolder.h"

namespace {
bool exists(const BasicString<wchar_t>& path) { return FileSystem::exists(path); }

/// Another value of an environment variable, for a scope.
class Variable {
public:
    Variable(const wchar_t* name, const wchar_t* value) : name_(name), old_(_wgetenv(name)) { set(value); }
    ~Variable() { set(old_.c_str()); }

private:
    void set(const wchar_t* value)
    {
        _wputenv_s(name_, value);
        SetEnvironmentVariableW(name_, value);
    }

    const wchar_t* name_;
    std::wstring old_;
};

/// Makes a link in any way that the platform has; false when there is none.
bool makeLink(const std::wstring& link, const std::wstring& target)
{
    const DWORD toFolder = std::filesystem::is_directory(target) ? 1 : 0, unprivileged = 2;
    CreateSymbolicLinkW(link.c_str(), target.c_str(), toFolder | unprivileged);
    if (exists(link))
        return true;
    // Wine only says that it has made one; its host can.
    using UnixName = char*(__cdecl*)(const wchar_t*);
    const auto unixName = reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
    if (!unixName)
        return false;
    // By a program of Wine's: CreateProcess leaves the handles of one of the host's unset, and what is closed is
    // another's.
    const std::string command =
        std::string("start.exe /unix /bin/ln -s ") + unixName(target.c_str()) + ' ' + unixName(link.c_str());
    const Process process(command.c_str(), CREATE_NO_WINDOW);
    for (int i = 0; i < 500 && !exists(link); ++i)
        Sleep(10); // What it starts is no process to wait for.
    return exists(link);
}
} // namespace

TEMPLATE_TEST_CASE("TemporaryFile: the system chooses the name, whatever is asked for", "", char, wchar_t)
{
    const TestType anything[] = {'x', 'y', 0};
    BasicString<wchar_t> path;
    {
        TemporaryFile file(anything);
        path = file.getPathW();
        CHECK(BasicString<wchar_t>(file.getPathA().c_str()) == path);
        CHECK(path.getPathElement(-1).startsWith(L"tmp"));
        wchar_t folder[MAX_PATH + 1];
        GetTempPathW(MAX_PATH + 1, folder);
        CHECK(path.startsWith(folder));
        CHECK(exists(path));

        file.create(anything);
        CHECK_FALSE(exists(path));
        path = file.getPathW();
        CHECK(exists(path));
    }
    CHECK_FALSE(exists(path));
}

TEST_CASE("TemporaryFile: a file that could not be removed can be removed later")
{
    using Handle = std::unique_ptr<void, decltype(&CloseHandle)>;
    const auto opened = [](const TemporaryFile& file, DWORD flags) {
        return Handle(CreateFileW(file.getPathW().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, flags, nullptr),
                      &CloseHandle);
    };
    TemporaryFile file(L"");
    const BasicString<wchar_t> path = file.getPathW();
    const std::string text = "Can't delete temporary file \"" + file.getPathA() + "\"";
    {
        const Handle open = opened(file, 0);
        expectWindowsError([&] { file.remove(); }, ERROR_SHARING_VIOLATION, text);
    }
    file.remove();
    CHECK_FALSE(exists(path));
    CHECK(file.getPathW().empty());
    file.remove();

    {
        TemporaryFile taken(L"");
        REQUIRE(DeleteFileW(taken.getPathW().c_str()));
        CHECK_THROWS_AS(taken.remove(), WindowsError);
        CHECK_FALSE(taken.release().empty());
        CHECK(taken.release().empty());
    }

    // A destructor that may throw, as it says.
    auto* const other = new TemporaryFile(L"");
    const Handle open = opened(*other, FILE_FLAG_DELETE_ON_CLOSE);
    expectWindowsError([&] { delete other; }, "Can't delete temporary file \"" + other->getPathA() + "\"");
}

TEST_CASE("TemporaryFile: where no file can be created there is none")
{
    const Variable tmp(L"TMP", L"C:\\no such folder");
    TemporaryFile file;
    expectWindowsError([&] { file.create("x"); }, "Can't create temporary file \"C:\\no such folder\\\"");
    CHECK(file.getPathA().empty());
    const Variable tooLong(L"TMP", std::wstring(300, L'x').c_str());
    const auto noFolder = thrownBy<WindowsError>([&] { file.create(L"x"); });
    CHECK(std::string(noFolder.getDescription()).starts_with("Can't "));
}

TEST_CASE("TemporaryDirectory: it takes everything in it along and nothing else, and goes with the first of its copies")
{
    const ScratchFolder outside;
    outside.write("keep", "this");
    const TemporaryDirectory folder(nullptr, L"tar"), other(nullptr, L"tar");
    const std::wstring path = static_cast<const wchar_t*>(folder);
    CHECK((GetFileAttributesW(folder) & FILE_ATTRIBUTE_DIRECTORY) != 0);
    CHECK(path != static_cast<const wchar_t*>(other));
    std::ofstream(std::filesystem::path(path) / "read only.txt") << "x";
    REQUIRE(CreateHardLinkW(outside.file(L"other name"), (path + L"\\read only.txt").c_str(), nullptr));
    FileSystem::setAttributes((path + L"\\read only.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    const std::wstring deep = path + L"\\with blanks\\" + std::wstring(200, L'd') + L"\\" + std::wstring(200, L'd');
    FileSystem::createFolder(deep.c_str());
    WindowsFile::createNew((deep + L"\\file").c_str());
    {
        const TemporaryDirectory copy(folder);
        CHECK(std::wstring(copy) == path);
    }
    CHECK_FALSE(exists(path));
    CHECK(outside.read("keep") == "this");
    CHECK((GetFileAttributesW(outside.file(L"other name")) & FILE_ATTRIBUTE_READONLY) != 0);
    SetFileAttributesW(outside.file(L"other name"), FILE_ATTRIBUTE_NORMAL);
}

TEST_CASE("TemporaryDirectory: it follows no link out of the tree")
{
    const ScratchFolder outside;
    outside.write("keep", "this");
    const auto empty = outside.file(L"empty");
    REQUIRE(CreateDirectoryW(empty, nullptr));
    std::wstring path;
    {
        const TemporaryDirectory folder(nullptr, L"tar");
        path = static_cast<const wchar_t*>(folder);
        std::ofstream(std::filesystem::path(path) / "inside") << "x";
        for (const auto& target : {BasicString<wchar_t>(outside.path().wstring()), empty, outside.file(L"keep")})
            if (!makeLink(path + L"\\link-" + std::filesystem::path(target).filename().wstring(), target))
                WARN("No way to make a link");
    }
    CHECK(outside.read("keep") == "this");
    CHECK(exists(empty));
    CHECK_FALSE(exists(path + L"\\inside"));
    if (exists(path))
        WARN("The platform cannot delete links, as Wine cannot, and so the folder stays");
}

TEST_CASE("TemporaryDirectory: a name that a rival has taken is no failure")
{
    std::atomic<int> made = 0;
    std::vector<std::thread> rivals;
    for (int i = 0; i < 100; ++i)
        rivals.emplace_back([&] {
            for (int turn = 0; turn < 5; ++turn)
                try {
                    const TemporaryDirectory folder(nullptr, L"tar");
                    ++made;
                } catch (const CRTError&) {
                }
        });
    for (std::thread& rival : rivals)
        rival.join();
    CHECK(made == 500);
}

TEST_CASE("TemporaryDirectory: what stands in its way is named")
{
    const ScratchFolder scratch;
    // Where the platform finds another way, there is a folder.
    const auto failureIn = [](const wchar_t* directory) -> std::string {
        try {
            const TemporaryDirectory folder(directory, L"tar");
            CHECK(exists(BasicString<wchar_t>(folder)));
            return "";
        } catch (const CRTError& e) {
            return e.what();
        }
    };
    const Variable nowhere(L"TMP", L"C:\\no such folder");
    const std::string noName = failureIn(L"C:\\no such folder either"); // Wine's runtime library has no default.
    CHECK((noName.empty() || noName.starts_with("Can't create temporary name: ")));

    // Too long for any name in it, although there is such a folder.
    const std::wstring deep = scratch.path().wstring() + L"\\" + std::wstring(250, L'y');
    CreateDirectoryW((L"\\\\?\\" + deep).c_str(), nullptr);
    {
        const Variable tmp(L"TMP", deep.c_str());
        CHECK(failureIn(nullptr).starts_with("Can't create temporary name: "));
    }

    // Long enough for the names of files, and too long for those of folders.
    std::wstring path = scratch.path().wstring();
    path += L"\\" + std::wstring(246 - path.size() - 1, L'x');
    CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr);
    const Variable tmp(L"TMP", path.c_str());
    const std::string tooLong = failureIn(nullptr);
    const std::string start = "Can't create temporary directory \"" + BasicString<char>(path.c_str());
    CHECK((tooLong.empty() || (tooLong.starts_with(start) && tooLong.ends_with(std::strerror(ENOENT)))));
}
