#include <tarn/TemporaryFile.h>

#include <tarn/Windows.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Quoted.h"
#include "../foundation/Widened.h"
#include "FileApi.h"

namespace tarn {
namespace {
template <class Ch> BasicString<wchar_t> createTemporaryFile()
{
    constexpr const char* noFolder = "Can't retrieve temporary directory";
    Ch folder[MAX_PATH + 1];
    if (ensure(getTempPath(MAX_PATH + 1, folder), noFolder) > MAX_PATH)
        throwWindowsError(ERROR_BUFFER_OVERFLOW, noFolder);
    Ch name[MAX_PATH + 1];
    ensure(getTempFileName(folder, name), [&] { return "Can't create temporary file " + quoted(folder); });
    try {
        return widened(name);
    } catch (...) { // Nobody would know of the file.
        deleteFile(name);
        throw;
    }
}
} // namespace

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { remove(); });
        path_ = other.release();
    }
    return *this;
}

TemporaryFile::~TemporaryFile() noexcept(false)
{
    closeAtEnd([this] { remove(); });
}

void TemporaryFile::create(const char*)
{
    remove();
    path_ = createTemporaryFile<char>();
}
void TemporaryFile::create(const wchar_t*)
{
    remove();
    path_ = createTemporaryFile<wchar_t>();
}

void TemporaryFile::remove()
{
    if (path_.empty())
        return;
    ensure(DeleteFileW(path_.c_str()), [&] { return "Can't delete temporary file " + quoted(path_.c_str()); });
    path_.clear();
}
} // namespace tarn
