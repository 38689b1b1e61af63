#include <tarn/Pipe.h>

#include "../foundation/Check.h"
#include "Deadline.h"

#include <algorithm>

namespace tarn {
namespace {
void keepFromChildren(const WindowsHandle& end)
{
    ensure(SetHandleInformation(end.getHandle(), HANDLE_FLAG_INHERIT, 0),
           "Can't keep the pipe end from child processes");
}
} // namespace

void Pipe::create(unsigned long bufferSize, SECURITY_ATTRIBUTES* attributes)
{
    close();
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    ensure(CreatePipe(&readEnd, &writeEnd, attributes, bufferSize), "Can't create pipe");
    readEnd_.attach(readEnd); // Both ends are closed, so that nothing can fail here.
    writeEnd_.attach(writeEnd);
}

void Pipe::keepReadEnd() { keepFromChildren(readEnd_); }
void Pipe::keepWriteEnd() { keepFromChildren(writeEnd_); }

bool Pipe::waitForData(unsigned timeoutMs) const
{
    constexpr DWORD longestPauseMs = 10;
    const Deadline deadline(timeoutMs);
    for (DWORD pauseMs = 0;; pauseMs = std::min(pauseMs + 1, longestPauseMs)) {
        DWORD available = 0;
        if (!PeekNamedPipe(readEnd_.getHandle(), nullptr, 0, nullptr, &available, nullptr)) {
            if (GetLastError() == ERROR_BROKEN_PIPE)
                return true;
            throwLastError("Can't look into the pipe");
        }
        if (available)
            return true;
        if (deadline.remainingMs() == 0)
            return false;
        Sleep(pauseMs);
    }
}

void Pipe::close()
{
    readEnd_.close();
    writeEnd_.close();
}
} // namespace tarn
