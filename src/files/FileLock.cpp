#include <tarn/FileLock.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
DWORD high(unsigned long long value) { return static_cast<DWORD>(value >> 32); }
DWORD low(unsigned long long value) { return static_cast<DWORD>(value); }

OVERLAPPED at(unsigned long long offset)
{
    OVERLAPPED place{};
    place.Offset = low(offset);
    place.OffsetHigh = high(offset);
    return place;
}

DWORD flagsOf(FileLock::kind how) { return how == FileLock::exclusive ? LOCKFILE_EXCLUSIVE_LOCK : 0; }
} // namespace

FileLock::FileLock(const WindowsFile& file, kind how, unsigned long long offset, unsigned long long size)
    : FileLock(nullptr, offset, std::min(size, toTheEnd - offset))
{
    OVERLAPPED place = at(offset_);
    ensure(LockFileEx(file.getHandle(), flagsOf(how), 0, low(size_), high(size_), &place), "Can't lock file");
    file_ = file.getHandle();
}

FileLock::FileLock(FileLock&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)), offset_(other.offset_), size_(other.size_)
{
}

FileLock::~FileLock()
{
    closeQuietly([this] { unlock(); });
}

std::optional<FileLock> FileLock::tryLock(const WindowsFile& file, kind how, unsigned long long offset,
                                          unsigned long long size)
{
    FileLock lock(nullptr, offset, std::min(size, toTheEnd - offset));
    OVERLAPPED place = at(offset);
    if (!LockFileEx(file.getHandle(), flagsOf(how) | LOCKFILE_FAIL_IMMEDIATELY, 0, low(lock.size_), high(lock.size_),
                    &place)) {
        if (GetLastError() == ERROR_LOCK_VIOLATION || GetLastError() == ERROR_IO_PENDING)
            return std::nullopt;
        throwLastError("Can't lock file");
    }
    lock.file_ = file.getHandle();
    return lock;
}

void FileLock::unlock()
{
    if (void* const file = std::exchange(file_, nullptr)) {
        OVERLAPPED place = at(offset_);
        ensure(UnlockFileEx(file, 0, low(size_), high(size_), &place), "Can't unlock file");
    }
}
} // namespace tarn
