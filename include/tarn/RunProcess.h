#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Process.h>

#include <functional>
#include <string_view>

namespace tarn {
/// What runProcess() does beside running the program. Name what you say, `RunOptions{.timeoutMs = 5000}`.
struct RunOptions {
    /// How the program starts. A stream that is given there is used instead of what is said here, and not captured.
    /// With a job of yours a time-out ends all that is in it.
    ProcessOptions start = {};
    /// What the program reads from its standard input, which ends behind it. A program that does not read all of it
    /// is no failure.
    BasicString<char> input = {};
    /// How long it may take, all in all.
    unsigned timeoutMs = INFINITE;
    /// An event, say, that ends the program as a time-out does as soon as it is signaled; null for none.
    const WindowsHandle* stop = nullptr;
    /// Errors go where the output goes, in the order in which they were written.
    bool mergeErrors = false;
    /// Gets the output line by line while the program runs, on the thread that called, without the line's end. What it
    /// gets is not collected. An exception from it ends the program and what that has started, and is passed on.
    std::function<void(std::string_view)> onOutputLine = {};
    /// The same for the errors.
    std::function<void(std::string_view)> onErrorLine = {};
};

/// How a program has ended, and what it has written.
struct RunResult {
    /// That of the program, be it a failure or not; ERROR_TIMEOUT or ERROR_CANCELLED when it had to be ended.
    unsigned long exitCode = 0;
    /// The time was up, so the program was ended with all that it had started. What they wrote before is here.
    bool timedOut = false;
    /// The same because `stop` was signaled.
    bool stopped = false;
    /// As bytes; without what a handler got, and what went to a stream that was given.
    ///@{
    BasicString<char> output = {};
    BasicString<char> errors = {};
    ///@}
};

/// Runs a program to its end: gives it its input and takes its output and errors at the same time, as much as there
/// is, so that neither waits for the other.
///
///     const RunResult result = runProcess(CommandLine(L"git").add(L"status"), RunOptions{.timeoutMs = 10'000});
///     if (result.exitCode != 0)
///         report(result.errors);
///
/// Returns when the program has ended and every copy of its streams is closed: what it has started and left behind
/// counts, when it writes to the same streams. Throws WindowsError as Process::create() does, "Can't make pipe for
/// child process", "Error while reading from child process", "Error while writing to child process". May be called from
/// several threads at once. For children that you talk with, use Process and Pipe.
TARN_API RunResult runProcess(const wchar_t* commandLine, const RunOptions& options = {});
} // namespace tarn
