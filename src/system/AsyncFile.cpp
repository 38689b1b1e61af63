#include "AsyncFile.h"

#include "../foundation/Check.h"

#include <utility>

namespace tarn {
template <class Call> void AsyncFile::begin(Call call)
{
    overlapped_ = OVERLAPPED{};
    overlapped_.hEvent = done_.getHandle();
    if (call()) { // The event is signaled also when all was done at once.
        pending_ = true;
        return;
    }
    const DWORD error = GetLastError();
    if (error == ERROR_PIPE_CONNECTED) // But then it is not.
        done_.set();
    pending_ = error == ERROR_IO_PENDING || error == ERROR_PIPE_CONNECTED;
    if (!pending_)
        noteEnd(error);
}

void AsyncFile::beginRead(void* buffer, unsigned size)
{
    begin([&] { return ReadFile(file_.get(), buffer, size, nullptr, &overlapped_); });
}

void AsyncFile::beginWrite(const void* data, unsigned size)
{
    begin([&] { return WriteFile(file_.get(), data, size, nullptr, &overlapped_); });
}

void AsyncFile::beginConnect()
{
    begin([&] { return ConnectNamedPipe(file_.get(), &overlapped_); });
}

void AsyncFile::beginWatch(void* buffer, unsigned size, bool recursive)
{
    constexpr DWORD changes = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME | FILE_NOTIFY_CHANGE_SIZE |
                              FILE_NOTIFY_CHANGE_LAST_WRITE;
    begin([&] {
        return ReadDirectoryChangesW(file_.get(), buffer, size, recursive, changes, nullptr, &overlapped_, nullptr);
    });
}

unsigned AsyncFile::finish()
{
    DWORD count = 0;
    pending_ = false;
    if (!GetOverlappedResult(file_.get(), &overlapped_, &count, TRUE) && GetLastError() != ERROR_NOTIFY_ENUM_DIR)
        noteEnd(GetLastError());
    return count;
}

bool AsyncFile::wait(const Deadline& deadline) const
{
    return pending_ && done_.wait(deadline.remainingMs()) == WindowsHandle::signaled;
}

bool AsyncFile::read(void* buffer, unsigned size, const Deadline& deadline)
{
    for (unsigned done = 0; done < size;) {
        beginRead(static_cast<char*>(buffer) + done, size - done);
        const unsigned count = wait(deadline) ? finish() : 0;
        if (count == 0) {
            close();
            return false;
        }
        done += count;
    }
    return true;
}

bool AsyncFile::write(const void* data, unsigned size, const Deadline& deadline)
{
    beginWrite(data, size);
    const bool all = wait(deadline) && finish() == size;
    if (!all)
        close();
    return all;
}

// The end of the other side is no failure.
void AsyncFile::noteEnd(unsigned long error)
{
    if (error != ERROR_BROKEN_PIPE && error != ERROR_NO_DATA && error != ERROR_HANDLE_EOF)
        throwWindowsError(error, failed_);
    close();
}

void AsyncFile::close() { reset(nullptr); }

void AsyncFile::reset(FreshHandle file)
{
    if (std::exchange(pending_, false)) {
        // The platform has to be done with the memory. Where nothing can be cancelled, the end of the file does it.
        DWORD count = 0;
        if (CancelIo(file_.get())) {
            GetOverlappedResult(file_.get(), &overlapped_, &count, TRUE);
        } else {
            file_.reset();
            WaitForSingleObject(done_.getHandle(), INFINITE);
        }
    }
    file_ = std::move(file);
}
} // namespace tarn
