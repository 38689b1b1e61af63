#include "ScratchFolder.h"

#include <tarn/Windows.h>

#include <fstream>
#include <iterator>

namespace support {
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
} // namespace support
