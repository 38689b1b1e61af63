// Runs a command line and keeps a log of what it printed, each line with the time that had passed:
//
//     run-logged build.log make -j8 all
//
// Output and errors appear on the console as ever, and the result is the command's own exit code, so that
// the program can stand in front of any command of a script.

#include <tarn/CommandLine.h>
#include <tarn/Lock.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/Thread.h>

#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

namespace {
constexpr unsigned long noResult = 125; ///< The exit code when the command could not be run.

/// The log file, and the clock that its lines are stamped with. Lines may come from several threads.
class Log {
public:
    explicit Log(const wchar_t* name)
        : file_(name, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)
    {
    }

    void line(const char* source, std::string_view text)
    {
        const tarn::AutoLock lock(lock_);
        const double seconds = static_cast<double>(GetTickCount() - start_) / 1000;
        const auto stamp = tarn::BasicString<char>::fromFormat("%10.3f %s ", seconds, source);
        write(stamp.c_str() + std::string(text) + "\r\n");
    }

private:
    void write(const std::string& text) { file_.writeFully(text.data(), static_cast<unsigned>(text.size())); }

    const DWORD start_ = GetTickCount();
    tarn::CriticalSection lock_;
    tarn::WindowsFile file_;
};

/// One stream of the child: reads it to its end, passes it on to this program's own and logs its lines.
class Capture : public tarn::Thread {
public:
    Capture(Log& log, const char* source, DWORD passOn) : log_(log), source_(source)
    {
        // The stream is this process's own to close: the capture works on a copy of its handle.
        HANDLE copy = nullptr;
        const HANDLE self = GetCurrentProcess();
        if (DuplicateHandle(self, GetStdHandle(passOn), self, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS))
            console_.attach(copy);
    }
    ~Capture() noexcept(false) override
    {
        pipe_.getWriteEnd().close();
        join();
    }

    void* childsEnd() { return pipe_.getWriteEnd(); }
    /// To be called when the child has its copy: the stream ends when all copies are closed.
    void begin()
    {
        pipe_.getWriteEnd().close();
        start(false);
    }
    const std::string& failure() const { return failure_; }

    unsigned long run() override
    {
        try {
            readLines();
        } catch (const std::exception& e) {
            failure_ = e.what();
            drain();
        }
        return 0;
    }

private:
    void readLines()
    {
        char buffer[4096];
        std::string pending;
        while (const unsigned count = pipe_.getReadEnd().read(buffer, sizeof buffer)) {
            if (console_.isOpen())
                console_.writeFully(buffer, count);
            pending.append(buffer, count);
            for (std::size_t end; (end = pending.find('\n')) != std::string::npos; pending.erase(0, end + 1))
                logLine(std::string_view(pending).substr(0, end));
        }
        if (!pending.empty())
            logLine(pending);
    }
    // A child whose output nobody reads would wait for ever.
    void drain()
    {
        char buffer[4096];
        while (pipe_.getReadEnd().read(buffer, sizeof buffer))
            ;
    }
    void logLine(std::string_view line)
    {
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        log_.line(source_, line);
    }

    Log& log_;
    const char* source_;
    tarn::Pipe pipe_{0, nullptr};
    tarn::WindowsFile console_;
    std::string failure_;
};

/// The command as it was typed: what follows this program's name and the log's on the command line.
const wchar_t* commandIn(const wchar_t* line)
{
    for (int word = 0; word < 2; ++word) {
        for (bool quoted = false; *line && (quoted || (*line != L' ' && *line != L'\t')); ++line)
            quoted ^= *line == L'"';
        while (*line == L' ' || *line == L'\t')
            ++line;
    }
    return line;
}

unsigned long runLogged(const wchar_t* logName, const wchar_t* command)
{
    Log log(logName);
    Capture output(log, "out", STD_OUTPUT_HANDLE), errors(log, "err", STD_ERROR_HANDLE);
    log.line("run", tarn::w2a(command, CP_UTF8));
    const tarn::Process child(command,
                              tarn::ProcessOptions{.stdOut = output.childsEnd(), .stdErr = errors.childsEnd()});
    output.begin();
    errors.begin();
    child.wait(INFINITE);
    output.join();
    errors.join();
    for (const Capture* capture : {&output, &errors})
        if (!capture->failure().empty())
            std::fprintf(stderr, "run-logged: the log is not complete: %s\n", capture->failure().c_str());
    log.line("end", "exit code " + std::to_string(child.getExitCode()));
    return child.getExitCode();
}
} // namespace

int main()
{
    try {
        const auto arguments = tarn::CommandLine::own(); // With every character, as the names of files have.
        if (arguments.size() < 3) {
            std::fprintf(stderr, "usage: run-logged LOGFILE COMMAND [ARGUMENT ...]\n");
            return noResult;
        }
        return static_cast<int>(runLogged(arguments[1], commandIn(GetCommandLineW())));
    } catch (const std::exception& e) {
        std::fprintf(stderr, "run-logged: %s\n", e.what());
        return noResult;
    }
}
