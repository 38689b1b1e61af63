#include <tarn/AtomicFile.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Quoted.h"
#include "LongPath.h"

namespace tarn {
AtomicFile::AtomicFile(const wchar_t* name)
    : name_(name), newName_(longPath((name_ + L".new").c_str())),
      file_(WindowsFile::overwrite((name_ + L".new").c_str()))
{
}

AtomicFile::~AtomicFile()
{
    if (isCommitted_)
        return;
    closeQuietly([this] {
        file_.close();
        ensure(DeleteFileW(newName_.c_str()), "Can't delete what was not committed");
    });
}

unsigned int AtomicFile::write(const void* buffer, unsigned int size)
{
    const unsigned int written = file_.write(buffer, size);
    if (written != size)
        throwError(WindowsError(ERROR_DISK_FULL, "Error while writing " + std::to_string(size) + " bytes"));
    return written;
}

void AtomicFile::commit()
{
    if (isCommitted_)
        return;
    if (file_.isOpen()) {
        file_.flush(); // On the disk before the old file goes.
        file_.close();
    }
    const auto failed = [this] { return "Can't replace " + quoted(name_.c_str()); };
    const BasicString<wchar_t> target = longPath(name_.c_str());
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & FILE_ATTRIBUTE_READONLY)) // Not all platforms look at it.
        throwError(WindowsError(ERROR_ACCESS_DENIED, failed()));
    ensure(MoveFileExW(newName_.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH), failed);
    isCommitted_ = true;
}

void AtomicFile::save(const wchar_t* name, const void* data, unsigned int size)
{
    AtomicFile file(name);
    file.write(data, size);
    file.commit();
}
} // namespace tarn
