#include <catch2/catch.hpp>

#include <tarn/Process.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Windows.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "Expect.h"
#include "ScratchFolder.h"

using namespace tarn;

namespace {
bool exists(const BasicString<wchar_t>& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

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

/// Makes a link to a folder in any way that the platform has; false when there is none.
bool makeLink(const std::wstring& link, const std::wstring& target)
{
    constexpr DWORD toFolder = 1, unprivileged = 2;
    CreateSymbolicLinkW(link.c_str(), target.c_str(), toFolder | unprivileged);
    if (exists(link))
        return true;
    // Wine only says that it has made one; its host can.
    using UnixName = char*(__cdecl*)(const wchar_t*);
    const auto unixName = reinterpret_cast<UnixName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
    if (!unixName)
        return false;
    const std::string command =
        std::string("\\\\?\\unix\\bin\\ln -s ") + unixName(target.c_str()) + ' ' + unixName(link.c_str());
    const Process process(command.c_str(), 0);
    for (int i = 0; i < 500 && !exists(link); ++i)
        Sleep(10); // It is no process to wait for.
    return exists(link);
}
} // namespace

TEMPLATE_TEST_CASE("TemporaryFile: the system chooses the name, whatever is asked for", "[files][temporary]", char,
                   wchar_t)
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

TEST_CASE("TemporaryFile: a file that could not be removed can be removed later", "[files][temporary]")
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
        support::expectWindowsError([&] { file.remove(); }, ERROR_SHARING_VIOLATION, text);
    }
    file.remove();
    CHECK_FALSE(exists(path));
    CHECK(file.getPathW().empty());
    file.remove();

    // A destructor that may throw, as it says.
    auto* const other = new TemporaryFile(L"");
    const Handle open = opened(*other, FILE_FLAG_DELETE_ON_CLOSE);
    support::expectWindowsError([&] { delete other; }, "Can't delete temporary file \"" + other->getPathA() + "\"");
}

TEST_CASE("TemporaryFile: where no file can be created there is none", "[files][temporary]")
{
    const Variable tmp(L"TMP", L"C:\\no such folder");
    TemporaryFile file;
    support::expectWindowsError([&] { file.create("x"); }, "Can't create temporary file \"C:\\no such folder\\\"");
    CHECK(file.getPathA().empty());
    const Variable tooLong(L"TMP", std::wstring(300, L'x').c_str());
    const auto noFolder = support::thrownBy<WindowsError>([&] { file.create(L"x"); });
    CHECK(std::string(noFolder.getDescription()).starts_with("Can't "));
}

TEST_CASE("TemporaryDirectory: it takes everything in it along, and goes with the first of its copies",
          "[files][temporary]")
{
    const TemporaryDirectory folder(nullptr, L"tar"), other(nullptr, L"tar");
    const BasicString<wchar_t> path = static_cast<const wchar_t*>(folder);
    CHECK((GetFileAttributesW(folder) & FILE_ATTRIBUTE_DIRECTORY) != 0);
    CHECK(path != static_cast<const wchar_t*>(other));
    REQUIRE(CreateDirectoryW((path + L"\\with blanks").c_str(), nullptr));
    REQUIRE(CreateDirectoryW((path + L"\\with blanks\\empty").c_str(), nullptr));
    std::ofstream(path + L"\\with blanks\\read only.txt") << "x";
    REQUIRE(SetFileAttributesW((path + L"\\with blanks\\read only.txt").c_str(), FILE_ATTRIBUTE_READONLY));
    {
        const TemporaryDirectory copy(folder);
        CHECK(std::wstring(copy) == path);
    }
    CHECK_FALSE(exists(path));
}

TEST_CASE("TemporaryDirectory: it follows no link out of the tree", "[files][temporary]")
{
    const support::ScratchFolder outside;
    outside.write("keep", "this");
    BasicString<wchar_t> path;
    {
        const TemporaryDirectory folder(nullptr, L"tar");
        path = static_cast<const wchar_t*>(folder);
        std::ofstream(path + L"\\inside") << "x";
        if (!makeLink(path + L"\\link", outside.path().wstring()))
            WARN("No way to make a link to a folder");
        else
            CHECK(exists(path + L"\\link\\keep"));
    }
    CHECK(outside.read("keep") == "this");
    if (exists(path))
        WARN("The platform cannot delete a link to a folder, as Wine cannot, and so the folder stays");
}

TEST_CASE("TemporaryDirectory: what stands in its way is named", "[files][temporary]")
{
    const support::ScratchFolder scratch;
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

    // Long enough for the names of files, and too long for those of folders.
    std::wstring path = scratch.path().wstring();
    path += L"\\" + std::wstring(244 - path.size() - 1, L'x');
    CreateDirectoryW((L"\\\\?\\" + path).c_str(), nullptr);
    const Variable tmp(L"TMP", path.c_str());
    const std::string tooLong = failureIn(nullptr);
    const std::string start = "Can't create temporary directory \"" + BasicString<char>(path.c_str());
    CHECK((tooLong.empty() || (tooLong.starts_with(start) && tooLong.ends_with(std::strerror(ENOENT)))));
}
