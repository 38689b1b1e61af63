#include "ChildPipe.h"

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

ChildPipe::Ends ChildPipe::makeEnds(Direction direction)
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
    if (!reads)
        std::swap(readEnd, writeEnd);
    return {std::move(readEnd), std::move(writeEnd)};
}
} // namespace tarn
