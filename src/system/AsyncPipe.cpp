#include "AsyncPipe.h"

#include "../foundation/Check.h"

#include <atomic>
#include <string>
#include <utility>

namespace tarn {
namespace {
constexpr const char* failedPipe = "Can't make pipe for child process";

// An anonymous pipe cannot be asynchronous. No other process guesses the name in time: the first instance is made
// here, there is only one, and it is connected at once.
std::wstring freshName()
{
    static std::atomic<unsigned> count;
    return L"\\\\.\\pipe\\tarn-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(reinterpret_cast<ULONG_PTR>(&count)) + L"-" + std::to_wstring(++count);
}
} // namespace

AsyncPipe::AsyncPipe(Direction direction) : direction_(direction)
{
    constexpr DWORD bufferSize = 64 * 1024;
    const bool reads = direction == Direction::fromChild;
    const std::wstring name = freshName();
    FreshHandle readEnd(ensureNot(
        INVALID_HANDLE_VALUE,
        CreateNamedPipeW(name.c_str(),
                         PIPE_ACCESS_INBOUND | FILE_FLAG_FIRST_PIPE_INSTANCE | (reads ? FILE_FLAG_OVERLAPPED : 0),
                         PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, bufferSize, bufferSize, 0, nullptr),
        failedPipe));
    FreshHandle writeEnd(ensureNot(INVALID_HANDLE_VALUE,
                                   CreateFileW(name.c_str(), GENERIC_WRITE | FILE_READ_ATTRIBUTES, 0, nullptr,
                                               OPEN_EXISTING, reads ? 0 : FILE_FLAG_OVERLAPPED, nullptr),
                                   failedPipe));
    ownEnd_ = std::move(reads ? readEnd : writeEnd);
    childsEnd_ = std::move(reads ? writeEnd : readEnd);
}

AsyncPipe::~AsyncPipe() { close(); }

void AsyncPipe::beginRead(void* buffer, unsigned size)
{
    overlapped_ = OVERLAPPED{};
    overlapped_.hEvent = done_.getHandle();
    begun(ReadFile(ownEnd_.get(), buffer, size, nullptr, &overlapped_));
}

void AsyncPipe::beginWrite(const void* data, unsigned size)
{
    overlapped_ = OVERLAPPED{};
    overlapped_.hEvent = done_.getHandle();
    begun(WriteFile(ownEnd_.get(), data, size, nullptr, &overlapped_));
}

void AsyncPipe::begun(bool done)
{
    const DWORD error = GetLastError();
    pending_ = done || error == ERROR_IO_PENDING; // The event is signaled also when all was done at once.
    if (!pending_)
        noteEnd(error);
}

unsigned AsyncPipe::finish()
{
    DWORD count = 0;
    pending_ = false;
    if (!GetOverlappedResult(ownEnd_.get(), &overlapped_, &count, TRUE))
        noteEnd(GetLastError());
    return count;
}

// The end of the other side is no failure.
void AsyncPipe::noteEnd(unsigned long error)
{
    if (error != ERROR_BROKEN_PIPE && error != ERROR_NO_DATA && error != ERROR_HANDLE_EOF)
        throwWindowsError(error, direction_ == Direction::fromChild ? "Error while reading from child process"
                                                                    : "Error while writing to child process");
    close();
}

void AsyncPipe::close()
{
    if (std::exchange(pending_, false)) {
        DWORD count = 0;
        CancelIo(ownEnd_.get());
        GetOverlappedResult(ownEnd_.get(), &overlapped_, &count, TRUE); // The platform is done with the memory then.
    }
    ownEnd_.reset();
}
} // namespace tarn
