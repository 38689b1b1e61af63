#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Lock.h>
#include <tarn/SourceLocation.h>
#include <tarn/WindowsFile.h>

#include <atomic>
#include <exception>
#include <functional>

namespace tarn {
/// How much a line of a log matters.
enum class LogLevel { debug, info, warning, error };

/// How a LogFile is kept.
struct LogOptions {
    /// What matters less is left out.
    LogLevel level = LogLevel::info;
    /// A file that would grow beyond this many bytes is renamed to "NAME.1", what was that to "NAME.2", and so on.
    unsigned long long rotateAt = 10'000'000;
    /// How many renamed files are kept; with 0 the file begins anew.
    unsigned keep = 3;
    /// Lines go to the debugger, too.
    bool tellDebugger = false;
    /// Gets each text that is not left out, too, for an EventLog or a window for instance: before it is written, on the
    /// thread that writes. Several threads may call it at once. Of what it throws the debugger alone hears.
    std::function<void(LogLevel level, const wchar_t* text)> onText = {};
};

/// A log: lines with time, thread, level and the place in the source that wrote them.
///
///     LogFile log(L"service.log");
///     log.info("started");
///     log.error(exception); // in a catch block
///
/// gives lines like `2026-03-01T09:30:00.125Z [4711] ERROR Can't open "a.txt": File not found. (backup.cpp:42)`.
///
/// Each line is with the system when the call returns, so that nothing is lost when the program crashes. All members
/// may be called from any thread, and none throws but the constructor, since a log is written where something is wrong
/// already: a line that cannot be written is counted, told to the debugger, and told of with the next line. One program
/// at a time writes a log. The text is UTF-8: wide texts are converted, narrow ones go in as they are; a line break in
/// a text is written as `\n`, so that a line stays one.
class TARN_API LogFile {
public:
    /// Goes on with a file that is there. Throws WindowsError as WindowsFile::openToAppend() does.
    explicit LogFile(const wchar_t* path, const LogOptions& options = {});
    /// Neither copied nor moved.
    ///@{
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ///@}
    ~LogFile();

    /// A line with its level; the place is that of the call.
    ///@{
    void write(LogLevel level, const char* text, SourceLocation place = SourceLocation::current()) noexcept;
    void write(LogLevel level, const wchar_t* text, SourceLocation place = SourceLocation::current()) noexcept;
    ///@}
    /// The same with the level in the name.
    ///@{
    void debug(const char* text, SourceLocation place = SourceLocation::current()) noexcept;
    void info(const char* text, SourceLocation place = SourceLocation::current()) noexcept;
    void warning(const char* text, SourceLocation place = SourceLocation::current()) noexcept;
    void error(const char* text, SourceLocation place = SourceLocation::current()) noexcept;
    void debug(const wchar_t* text, SourceLocation place = SourceLocation::current()) noexcept;
    void info(const wchar_t* text, SourceLocation place = SourceLocation::current()) noexcept;
    void warning(const wchar_t* text, SourceLocation place = SourceLocation::current()) noexcept;
    void error(const wchar_t* text, SourceLocation place = SourceLocation::current()) noexcept;
    ///@}
    /// The sentence of reportOf(exception); while errors carry an ErrorTrace, its paragraph.
    void error(const std::exception& exception, SourceLocation place = SourceLocation::current()) noexcept;

    /// From now on.
    void setLevel(LogLevel level) noexcept { level_ = level; }
    /// The lines that could not be written so far.
    unsigned getLostLines() const noexcept { return lost_; }

    /// Writes what ends the program, an exception that nobody catches, before it ends, as long as this object lives;
    /// the last object for which this was called does it.
    void logTermination() noexcept;

private:
    template <class Text> void tryToWrite(LogLevel level, Text textOf, const SourceLocation& place) noexcept;
    void writeLine(LogLevel level, const BasicString<char>& text, const SourceLocation& place);
    void append(const BasicString<char>& line);
    void rotate();

    const BasicString<wchar_t> path_;
    const LogOptions options_;
    std::atomic<LogLevel> level_;
    std::atomic<unsigned> lost_ = 0;
    unsigned long long limit_; // Where the file is renamed.
    CriticalSection lock_;
    WindowsFile file_;
    unsigned long long size_ = 0;
    unsigned toldOf_ = 0; // Of the lost lines.
};
} // namespace tarn
