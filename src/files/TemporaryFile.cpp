#include <tarn/TemporaryFile.h>

#include <tarn/Windows.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"
#include "FileApi.h"

namespace tarn {
static_assert(sizeof(TemporaryFile) == sizeof(BasicString<wchar_t>));

namespace {
template <class Ch> BasicString<Ch> createTemporaryFile()
{
    constexpr const char* noFolder = "Can't retrieve temporary directory";
    Ch folder[MAX_PATH + 1];
    if (ensure(getTempPath(MAX_PATH + 1, folder), noFolder) > MAX_PATH)
        throwWindowsError(ERROR_BUFFER_OVERFLOW, noFolder);
    Ch name[MAX_PATH + 1];
    ensure(getTempFileName(folder, name), [&] { return "Can't create temporary file " + quoted(folder); });
    return name;
}
} // namespace

void TemporaryFile::create(const char*)
{
    remove();
    path_ = a2w(createTemporaryFile<char>().c_str(), CP_ACP);
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
