#include "SafeFile.h"

#include "Text.h"

#include <tarn/Exception.h>
#include <tarn/WindowsFile.h>

namespace planner {
namespace {
constexpr unsigned long long greatestSize = 1u << 26;

[[noreturn]] void refuseSize(const std::wstring& file)
{
    throw tarn::Exception('"' + narrow(file) + "\" is too large: files of this program have at most 64 MiB");
}

/// A new file beside another one, deleted unless it has become that one.
class FileBeside {
public:
    explicit FileBeside(const std::wstring& file)
    {
        const tarn::BasicString<wchar_t> folder =
            tarn::BasicString<wchar_t>(tarn::WindowsFile::getFullPath(file.c_str())).getDirectory() + L"\\";
        wchar_t name[MAX_PATH];
        if (!GetTempFileNameW(folder.c_str(), L"pln", 0, name))
            throw tarn::WindowsError("Can't create a file in \"" + narrow(folder) + '"');
        name_ = name;
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;
    ~FileBeside()
    {
        if (!name_.empty())
            DeleteFileW(name_.c_str());
    }

    void write(std::string_view content) const
    {
        tarn::WindowsFile out(name_.c_str(), GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING, 0, nullptr);
        out.writeFully(content.data(), static_cast<unsigned>(content.size()));
        out.flush();
        out.close();
    }

    // The attribute is looked at because not every system's move does.
    void moveTo(const std::wstring& file)
    {
        const DWORD attributes = GetFileAttributesW(file.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
            throw tarn::WindowsError(ERROR_ACCESS_DENIED, "Can't replace \"" + narrow(file) + '"');
        if (!MoveFileExW(name_.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
            throw tarn::WindowsError("Can't replace \"" + narrow(file) + '"');
        name_.clear();
    }

private:
    std::wstring name_;
};
} // namespace

std::string readWholeFile(const std::wstring& file)
{
    tarn::WindowsFile in(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    const unsigned long long size = in.getSize();
    if (size > greatestSize)
        refuseSize(file);
    std::string content(static_cast<std::size_t>(size), '\0');
    in.readFully(content.data(), static_cast<unsigned>(size));
    return content;
}

void replaceFile(const std::wstring& file, std::string_view content)
{
    if (content.size() > greatestSize)
        refuseSize(file);
    FileBeside beside(file);
    beside.write(content);
    beside.moveTo(file);
}
} // namespace planner
