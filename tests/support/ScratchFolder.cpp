#include "ScratchFolder.h"

#include <catch2/catch.hpp>

#include <tarn/Windows.h>

#include <fstream>
#include <iterator>

namespace support {
namespace {
// Wine's drive Z: has more than one of the host's drives in it; elsewhere the variable says where to.
std::wstring pathElsewhere(const std::filesystem::path& folder)
{
    const wchar_t* const wish = _wgetenv(L"TARN_OTHER_DRIVE");
    return (wish ? wish : L"Z:\\dev\\shm") + (L"\\" + folder.filename().wstring());
}
} // namespace

ScratchFolder::ScratchFolder()
{
    static int count = 0;
    path_ = std::filesystem::temp_directory_path() /
            ("tarn-test-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count));
    std::filesystem::create_directories(path_);
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
    std::filesystem::remove_all(pathElsewhere(path_), ignored);
}

tarn::BasicString<char> ScratchFolder::file(std::string_view name) const { return (path_ / name).string(); }
tarn::BasicString<wchar_t> ScratchFolder::file(std::wstring_view name) const { return (path_ / name).wstring(); }

tarn::BasicString<char> ScratchFolder::write(std::string_view name, std::string_view content) const
{
    std::ofstream(path_ / name, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
    return file(name);
}

std::string ScratchFolder::read(std::string_view name) const
{
    std::ifstream in(path_ / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

tarn::BasicString<wchar_t> ScratchFolder::onOtherDrive() const
{
    const tarn::BasicString<wchar_t> path = pathElsewhere(path_);
    write("probe", "");
    const bool moved = MoveFileExW(file(L"probe"), path, 0), isOther = GetLastError() == ERROR_NOT_SAME_DEVICE;
    DeleteFileW(moved ? path : file(L"probe"));
    if (!moved && isOther)
        return path;
    WARN("There is no other drive: name a folder on one in TARN_OTHER_DRIVE");
    return {};
}
} // namespace support
