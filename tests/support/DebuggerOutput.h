#pragma once

#include <tarn/Windows.h>

#include <functional>
#include <string>
#include <vector>

namespace support {
/// Records what the process sends to the debugger while the object lives, one entry a call; wide texts
/// are recorded in the ANSI code page. One object at a time.
class DebuggerOutput {
public:
    /// `onCall` is called in the middle of each call.
    explicit DebuggerOutput(std::function<void()> onCall = {});
    DebuggerOutput(const DebuggerOutput&) = delete;
    DebuggerOutput& operator=(const DebuggerOutput&) = delete;
    ~DebuggerOutput();

    const std::vector<std::string>& calls() const { return calls_; }

private:
    static LONG CALLBACK onException(EXCEPTION_POINTERS* info);

    const std::function<void()> onCall_;
    std::vector<std::string> calls_;
    void* handler_;
};
} // namespace support
