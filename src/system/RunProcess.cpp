#include <tarn/RunProcess.h>

#include <tarn/Job.h>

#include "../foundation/Check.h"
#include "ChildPipe.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {
namespace {
constexpr unsigned pieceSize = 64 * 1024;

// Collects what comes, or hands it to a handler line by line.
class Sink {
public:
    Sink(BasicString<char>& all, const std::function<void(std::string_view)>& onLine) : all_(all), onLine_(onLine) {}

    void take(std::string_view data)
    {
        if (!onLine_) {
            all_.append(data);
            return;
        }
        for (std::size_t end; (end = data.find('\n')) != data.npos; data.remove_prefix(end + 1)) {
            line_.append(data.substr(0, end));
            endLine();
        }
        line_.append(data);
    }
    // The last line may have no end of its own.
    void end()
    {
        if (!line_.empty())
            endLine();
    }

private:
    void endLine()
    {
        const std::string line = std::exchange(line_, {});
        std::string_view text = line;
        if (text.ends_with('\r'))
            text.remove_suffix(1);
        onLine_(text);
    }

    BasicString<char>& all_;
    const std::function<void(std::string_view)>& onLine_;
    std::string line_;
};

// One stream that the child writes.
class Output {
public:
    Output(BasicString<char>& all, const std::function<void(std::string_view)>& onLine) : sink_(all, onLine) {}

    ChildPipe& pipe() { return pipe_; }
    const ChildPipe& pipe() const { return pipe_; }
    void begin()
    {
        if (!pipe_.isOver() && !pipe_.isPending())
            pipe_.beginRead(buffer_.data(), pieceSize);
    }
    void finish() { sink_.take({buffer_.data(), pipe_.finish()}); }
    // Takes what is there already. Who should be writing still, outside of the job, does not keep it up.
    void drain()
    {
        constexpr int mostPieces = 16;
        for (int piece = 0; piece < mostPieces; ++piece) {
            begin();
            if (!pipe_.isReady())
                break;
            finish();
        }
        pipe_.close();
    }
    void end() { sink_.end(); }

private:
    std::vector<char> buffer_ = std::vector<char>(pieceSize); // Before the pipe, which may be reading until its end.
    ChildPipe pipe_{ChildPipe::Direction::fromChild};
    Sink sink_;
};

// What the child reads.
class Input {
public:
    explicit Input(std::string_view data) : rest_(data) {}

    ChildPipe& pipe() { return pipe_; }
    const ChildPipe& pipe() const { return pipe_; }
    void begin()
    {
        if (pipe_.isOver() || pipe_.isPending())
            return;
        if (rest_.empty())
            pipe_.close(); // The child sees the end.
        else
            pipe_.beginWrite(rest_.data(), static_cast<unsigned>(std::min<std::size_t>(rest_.size(), pieceSize)));
    }
    void finish() { rest_.remove_prefix(pipe_.finish()); }

private:
    std::string_view rest_;
    ChildPipe pipe_{ChildPipe::Direction::toChild};
};
class Run {
public:
    Run(const wchar_t* commandLine, const RunOptions& options)
        : options_(options), job_(options.start.job ? *options.start.job : ownJob_), input_(options.input),
          output_(result_.output, options.onOutputLine), errors_(result_.errors, options.onErrorLine)
    {
        start(commandLine);
    }

    RunResult toEnd()
    {
        try {
            converse();
            output_.end();
            errors_.end();
        } catch (...) {
            job_.terminate(ERROR_CANCELLED);
            throw;
        }
        result_.exitCode = process_.getExitCode();
        return std::move(result_);
    }

private:
    void start(const wchar_t* commandLine)
    {
        ProcessOptions start = options_.start;
        const auto connect = [](void*& stream, ChildPipe& pipe) {
            if (stream)
                pipe.close();
            else
                stream = pipe.childsEnd();
        };
        connect(start.stdIn, input_.pipe());
        connect(start.stdOut, output_.pipe());
        if (options_.mergeErrors && !start.stdErr)
            start.stdErr = start.stdOut;
        connect(start.stdErr, errors_.pipe());
        start.job = &job_;
        process_.create(commandLine, start);
        for (ChildPipe* const pipe : {&input_.pipe(), &output_.pipe(), &errors_.pipe()})
            pipe->closeChildsEnd();
    }

    bool isOver() const { return ended_ && output_.pipe().isOver() && errors_.pipe().isOver(); }

    void converse()
    {
        for (;;) {
            input_.begin();
            output_.begin();
            errors_.begin();
            if (isOver())
                return;
            if (!waitForNews()) {
                endAll();
                return;
            }
            finishIfReady(input_);
            finishIfReady(output_);
            finishIfReady(errors_);
        }
    }

    template <class Stream> static void finishIfReady(Stream& stream)
    {
        if (stream.pipe().isReady())
            stream.finish();
    }

    // False when the time is up, or stopping was asked for.
    bool waitForNews()
    {
        std::vector<void*> handles;
        if (options_.stop) // First, because of several that are signaled the first ends the wait.
            handles.push_back(*options_.stop);
        for (const ChildPipe* const pipe : {&input_.pipe(), &output_.pipe(), &errors_.pipe()})
            if (pipe->isPending())
                handles.push_back(pipe->getEvent());
        if (!ended_)
            handles.push_back(process_);
        const unsigned remainingMs = deadline_.remainingMs();
        const auto [result, index] = WindowsHandle::waitForAny(handles, remainingMs);
        if (result == WindowsHandle::timeout || remainingMs == 0) // Who always writes has no more time either.
            return false;
        ended_ = ended_ || process_.isSignaled();
        result_.stopped = options_.stop && index == 0;
        return !result_.stopped;
    }

    void endAll()
    {
        result_.timedOut = !result_.stopped;
        job_.terminate(result_.stopped ? ERROR_CANCELLED : ERROR_TIMEOUT);
        process_.wait(INFINITE);
        output_.drain();
        errors_.drain();
    }

    const RunOptions& options_;
    RunResult result_;
    const Deadline deadline_{options_.timeoutMs};
    const Job ownJob_;
    const Job& job_;
    Input input_;
    Output output_, errors_;
    Process process_;
    bool ended_ = false;
};
} // namespace

RunResult runProcess(const wchar_t* commandLine, const RunOptions& options)
{
    return Run(commandLine, options).toEnd();
}
} // namespace tarn
