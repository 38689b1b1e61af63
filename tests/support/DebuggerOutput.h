#pragma once

#include <tarn/Windows.h>

#include <string>
#include <vector>

namespace support {
/// Records what the process sends to the debugger while the object lives, one entry a call; wide texts
/// are recorded in the ANSI code page. One object at a time.
class DebuggerOutput {
public:
    DebuggerOutput();
    DebuggerOutput(const DebuggerOutput&) = delete;
    DebuggerOutput& operator=(const DebuggerOutput&) = delete;
    ~DebuggerOutput();

    const std::vector<std::string>& calls() const { return calls_; }

private:
    static LONG CALLBACK onException(EXCEPTION_POINTERS* info);

    std::vector<std::string> calls_;
    void* handler_;
};
} // namespace support
