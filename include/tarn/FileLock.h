#pragma once

#include <tarn/Export.h>
#include <tarn/WindowsFile.h>

#include <optional>

namespace tarn {
/// Keeps other programs from a file, or from a part of it, for a scope: several may hold it shared, to read, or one
/// alone exclusively, to write. The system keeps to it whether the others ask or not, and frees it when the program
/// ends.
///
/// The file has to stay open as long. Other handles of the same program are kept out, too. Failures throw WindowsError.
class TARN_API FileLock {
public:
    /// Whether others may hold it, too.
    enum kind { shared, exclusive };
    /// From any place to the end, and beyond.
    static constexpr unsigned long long toTheEnd = ~0ull;

    /// Waits until the part is free. Throws "Can't lock file".
    FileLock(const WindowsFile& file, kind how, unsigned long long offset = 0, unsigned long long size = toTheEnd);
    /// Takes the lock over; the source then holds none.
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&&) = delete;
    /// A failure to unlock is told to the debugger.
    ~FileLock();

    /// Nothing when another has it. Throws "Can't lock file".
    static std::optional<FileLock> tryLock(const WindowsFile& file, kind how, unsigned long long offset = 0,
                                           unsigned long long size = toTheEnd);
    /// Does nothing when nothing is held. Throws "Can't unlock file".
    void unlock();

private:
    FileLock(void* file, unsigned long long offset, unsigned long long size) : file_(file), offset_(offset), size_(size)
    {
    }

    void* file_; // Null when nothing is held.
    unsigned long long offset_, size_;
};
} // namespace tarn
