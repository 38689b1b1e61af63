#include <tarn/SingleInstance.h>

#include <tarn/Lock.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/ZeroSeparated.h"
#include "AsyncFile.h"

#include <algorithm>
#include <cstdint>
#include <string>

// What goes through the pipe: the number of bytes in 32 bits, the texts in UTF-16 with a zero behind each, and one byte
// back when all was taken.

namespace tarn {
namespace {
using Texts = std::vector<BasicString<wchar_t>>;

constexpr const char* failedHandOver = "Can't hand arguments over";
constexpr const char* failedReceive = "Can't receive arguments";
constexpr std::uint32_t mostBytes = 16 * 1024 * 1024;
constexpr unsigned transferMs = 5000; // For another instance that is connected: it does nothing else.
constexpr DWORD bufferSize = 4096;
constexpr char taken = '!';

BasicString<wchar_t> pipeNameFor(const wchar_t* name)
{
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    return L"\\\\.\\pipe\\tarn-instance-" + BasicString<wchar_t>(std::to_wstring(session)) + L'-' + name;
}
} // namespace

// The pipe of the first instance, made anew for each that comes.
class SingleInstance::First {
public:
    First(Mutex mutex, const wchar_t* pipeName) : mutex_(std::move(mutex)), pipeName_(pipeName) { listen(); }

    void* getEvent() const { return pipe_.getEvent(); }

    std::optional<Texts> receive(unsigned timeoutMs)
    {
        const Deadline deadline(timeoutMs);
        std::optional<Texts> texts;
        while (!texts) {
            if (pipe_.isOver())
                listen();
            if (!pipe_.wait(deadline))
                break;
            pipe_.finish();
            texts = receiveNow();
            pipe_.close();
        }
        if (pipe_.isOver()) // What was received is not lost when this fails: the next call tries again.
            closeQuietly([this] { listen(); });
        return texts;
    }

private:
    void listen()
    {
        while (pipe_.isOver()) { // Also when somebody has come and gone meanwhile.
            pipe_.reset(FreshHandle(ensureNot(
                INVALID_HANDLE_VALUE,
                CreateNamedPipeW(pipeName_.c_str(),
                                 PIPE_ACCESS_DUPLEX | FILE_FLAG_FIRST_PIPE_INSTANCE | FILE_FLAG_OVERLAPPED,
                                 PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, bufferSize, bufferSize, 0, nullptr),
                "Can't make pipe for other instances")));
            pipe_.beginConnect();
        }
    }

    // Nothing from who does not keep to the form, or is gone.
    std::optional<Texts> receiveNow()
    {
        const Deadline deadline(transferMs);
        std::uint32_t size = 0;
        if (!pipe_.read(&size, sizeof size, deadline) || size > mostBytes || size % sizeof(wchar_t) != 0)
            return std::nullopt;
        BasicString<wchar_t> all;
        for (std::size_t rest = size / sizeof(wchar_t); rest > 0;) {
            wchar_t piece[4096];
            const std::size_t count = std::min(rest, std::size(piece));
            if (!pipe_.read(piece, static_cast<unsigned>(count * sizeof(wchar_t)), deadline))
                return std::nullopt;
            all.append(piece, count);
            rest -= count;
        }
        if (!pipe_.write(&taken, 1, deadline))
            return std::nullopt;
        char end; // The other closes its end when it has read that; closing this one earlier might lose it.
        pipe_.read(&end, 1, deadline);
        const auto texts = textsIn<wchar_t>(all, true);
        return Texts(texts.begin(), texts.end());
    }

    const Mutex mutex_;
    const BasicString<wchar_t> pipeName_;
    AsyncFile pipe_{nullptr, failedReceive};
};

SingleInstance::SingleInstance(const wchar_t* name) : pipeName_(pipeNameFor(name))
{
    bool existed = false;
    Mutex mutex((BasicString<wchar_t>(L"Local\\") + name).c_str(), false, &existed);
    if (!existed) // The others do not keep it, so that it ends with the first.
        first_ = std::make_unique<First>(std::move(mutex), pipeName_.c_str());
}

SingleInstance::SingleInstance(SingleInstance&& other) noexcept = default;
SingleInstance& SingleInstance::operator=(SingleInstance&& other) noexcept
{
    if (this != &other) {
        closeQuietly([this] { end(); });
        pipeName_.swap(other.pipeName_);
        first_ = std::move(other.first_);
    }
    return *this;
}
SingleInstance::~SingleInstance() noexcept(false)
{
    closeAtEnd([this] { end(); });
}

// By hand, because the pointer's own destructor must not throw.
void SingleInstance::end() { delete first_.release(); }

bool SingleInstance::handOver(const std::vector<BasicString<wchar_t>>& arguments, unsigned timeoutMs) const
{
    const Deadline deadline(timeoutMs);
    BasicString<wchar_t> all;
    for (const BasicString<wchar_t>& argument : arguments)
        all.append(argument.c_str()).append(1, L'\0');
    const std::size_t bytes = all.size() * sizeof(wchar_t);
    if (bytes > mostBytes)
        throwWindowsError(ERROR_INVALID_PARAMETER, failedHandOver);

    AsyncFile pipe(nullptr, failedHandOver);
    while (pipe.isOver()) {
        constexpr DWORD pauseMs = 10;
        const HANDLE file =
            CreateFileW(pipeName_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                        FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr);
        if (file != INVALID_HANDLE_VALUE) {
            pipe.reset(FreshHandle(file));
            break;
        }
        // Busy with another instance, or between two.
        if (GetLastError() != ERROR_PIPE_BUSY && GetLastError() != ERROR_FILE_NOT_FOUND)
            throwLastError(failedHandOver);
        if (deadline.remainingMs() == 0)
            return false;
        Sleep(pauseMs);
    }
    AllowSetForegroundWindow(ASFW_ANY); // Fails in a program that may not itself, and matters to nobody then.
    const auto size = static_cast<std::uint32_t>(bytes);
    char answer = 0;
    return pipe.write(&size, sizeof size, deadline) && (size == 0 || pipe.write(all.data(), size, deadline)) &&
           pipe.read(&answer, 1, deadline) && answer == taken;
}

std::optional<Texts> SingleInstance::receive(unsigned timeoutMs)
{
    if (!first_)
        throwWindowsError(ERROR_INVALID_FUNCTION, "Only the first instance receives arguments");
    return first_->receive(timeoutMs);
}

void* SingleInstance::getEvent() const { return first_ ? first_->getEvent() : nullptr; }
} // namespace tarn
