#include "SafeFile.h"

#include "Text.h"

#include <tarn/AtomicFile.h>
#include <tarn/Exception.h>
#include <tarn/WindowsFile.h>

namespace planner {
namespace {
constexpr unsigned long long greatestSize = 1u << 26;

[[noreturn]] void refuseSize(const std::wstring& file)
{
    throw tarn::Exception('"' + narrow(file) + "\" is too large: files of this program have at most 64 MiB");
}
} // namespace

std::string readWholeFile(const std::wstring& file)
{
    tarn::WindowsFile in = tarn::WindowsFile::openToRead(file.c_str());
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
    tarn::AtomicFile::save(file.c_str(), content.data(), static_cast<unsigned>(content.size()));
}
} // namespace planner
