#pragma once

#include <tarn/BasicString.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace support {
/// A new folder in the system's folder for temporary files, removed with everything in it at the end.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    const std::filesystem::path& path() const { return path_; }
    tarn::BasicString<char> file(std::string_view name) const;
    tarn::BasicString<wchar_t> file(std::wstring_view name) const;

    /// Makes a file with this content and gives its path.
    tarn::BasicString<char> write(std::string_view name, std::string_view content) const;
    std::string read(std::string_view name) const;

    /// A path on another drive, removed at the end, too; empty with a warning where there is none.
    tarn::BasicString<wchar_t> onOtherDrive() const;

private:
    std::filesystem::path path_;
};
} // namespace support
