#include <tarn/LogFile.h>

#include <tarn/ErrorReport.h>
#include <tarn/ErrorTrace.h>
#include <tarn/FileSystem.h>
#include <tarn/Time.h>
#include <tarn/TimeText.h>

#include "../foundation/Closing.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace tarn {
namespace {
std::atomic<LogFile*> terminationLog = nullptr;
std::terminate_handler formerHandler = nullptr;

void onTermination()
{
    if (LogFile* const log = terminationLog.exchange(nullptr)) {
        try {
            if (std::current_exception())
                throw;
            log->error("The program ends: std::terminate was called");
        } catch (const std::exception& e) {
            log->error("The program ends by an exception that nobody catches:");
            log->error(e);
        } catch (...) {
            log->error("The program ends by an exception that nobody catches, and that is no std::exception");
        }
    }
    if (formerHandler)
        formerHandler();
    std::abort();
}

const char* nameOf(LogLevel level)
{
    constexpr const char* names[] = {"DEBUG", "INFO", "WARNING", "ERROR"};
    return names[static_cast<int>(level)];
}

BasicString<char> inOneLine(const BasicString<char>& text)
{
    return text.replaceAll("\r\n", "\n").replaceAll("\r", "\\r").replaceAll("\n", "\\n");
}

const char* fileNameIn(const char* path)
{
    const std::string_view all = path;
    const std::size_t end = all.find_last_of("/\\");
    return end == all.npos ? path : path + end + 1;
}
} // namespace

LogFile::LogFile(const wchar_t* path, const LogOptions& options)
    : path_(path), options_(options), level_(options.level), limit_(options.rotateAt),
      file_(WindowsFile::openToAppend(path))
{
    size_ = file_.getSize();
}

LogFile::~LogFile()
{
    LogFile* self = this;
    terminationLog.compare_exchange_strong(self, nullptr);
}

void LogFile::writeLine(LogLevel level, const BasicString<char>& text, const SourceLocation& place)
{
    const BasicString<char> time = formatISOTimeA(Time::now());
    const BasicString<char> line = time + " [" + std::to_string(GetCurrentThreadId()) + "] " + nameOf(level) + " " +
                                   inOneLine(text) + " (" + fileNameIn(place.file_name()) + ":" +
                                   std::to_string(place.line()) + ")\r\n";
    if (options_.tellDebugger)
        OutputDebugStringA(line.c_str());
    if (options_.onText)
        closeQuietly([&] { options_.onText(level, a2w(text, CP_UTF8)); });
    const AutoLock lock(lock_);
    if (size_ > 0 && size_ + line.size() > limit_)
        rotate();
    if (const unsigned lost = lost_; lost > toldOf_) {
        append(time + " " + std::to_string(lost - toldOf_) + " lines could not be written\r\n");
        toldOf_ = lost;
    }
    append(line);
}

void LogFile::append(const BasicString<char>& line)
{
    if (!file_.isOpen())
        file_ = WindowsFile::openToAppend(path_.c_str());
    file_.writeFully(line.data(), static_cast<unsigned>(line.size()));
    size_ += line.size();
}

// Where a name cannot be changed, because somebody reads the file for instance, the file goes on growing.
void LogFile::rotate()
{
    const auto numbered = [this](unsigned number) { return path_ + L"." + std::to_wstring(number); };
    file_.close();
    closeQuietly([&] {
        if (options_.keep == 0)
            FileSystem::remove(path_.c_str());
        for (unsigned number = options_.keep; number > 0; --number) {
            const BasicString<wchar_t> from = number > 1 ? numbered(number - 1) : path_;
            if (FileSystem::exists(from.c_str()))
                FileSystem::move(from.c_str(), numbered(number).c_str(), FileOptions{.replace = true});
        }
    });
    file_ = WindowsFile::openToAppend(path_.c_str());
    size_ = file_.getSize();
    limit_ = std::max(options_.rotateAt, size_ + options_.rotateAt / 8); // Not tried again with each line.
}

template <class Text> void LogFile::tryToWrite(LogLevel level, Text textOf, const SourceLocation& place) noexcept
{
    if (level < level_)
        return;
    try {
        writeLine(level, textOf(), place);
    } catch (...) {
        ++lost_;
        dropCurrentException();
    }
}

void LogFile::write(LogLevel level, const char* text, SourceLocation place) noexcept
{
    tryToWrite(
        level, [text] { return BasicString<char>(text); }, place);
}
void LogFile::write(LogLevel level, const wchar_t* text, SourceLocation place) noexcept
{
    tryToWrite(
        level, [text] { return w2a(text, CP_UTF8); }, place);
}

void LogFile::debug(const char* text, SourceLocation place) noexcept { write(LogLevel::debug, text, place); }
void LogFile::info(const char* text, SourceLocation place) noexcept { write(LogLevel::info, text, place); }
void LogFile::warning(const char* text, SourceLocation place) noexcept { write(LogLevel::warning, text, place); }
void LogFile::error(const char* text, SourceLocation place) noexcept { write(LogLevel::error, text, place); }
void LogFile::debug(const wchar_t* text, SourceLocation place) noexcept { write(LogLevel::debug, text, place); }
void LogFile::info(const wchar_t* text, SourceLocation place) noexcept { write(LogLevel::info, text, place); }
void LogFile::warning(const wchar_t* text, SourceLocation place) noexcept { write(LogLevel::warning, text, place); }
void LogFile::error(const wchar_t* text, SourceLocation place) noexcept { write(LogLevel::error, text, place); }

void LogFile::error(const std::exception& exception, SourceLocation place) noexcept
{
    try {
        const ErrorReport report = reportOf(exception);
        write(LogLevel::error, (ErrorTrace::isEnabled() ? report.paragraph : report.sentence).c_str(), place);
    } catch (...) { // No memory for the whole text.
        write(LogLevel::error, exception.what(), place);
    }
}

void LogFile::logTermination() noexcept
{
    if (!terminationLog.exchange(this)) {
        const std::terminate_handler former = std::set_terminate(onTermination);
        if (former != onTermination)
            formerHandler = former;
    }
}
} // namespace tarn
