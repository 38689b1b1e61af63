#include <tarn/Thread.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"

#include <cstdio>
#include <exception>
#include <map>
#include <typeinfo>

namespace tarn {
namespace {
constexpr const char* failedStart = "Can't create thread";
constexpr auto failedCount = static_cast<DWORD>(-1); // Of SuspendThread and ResumeThread.

[[noreturn]] void endProgram()
{
    constexpr const char* text = "tarn::Thread: the object was destroyed before its thread came to run(). "
                                 "Call join() in the destructor of the derived class.\n";
    OutputDebugStringA(text);
    std::fputs(text, stderr);
    std::terminate();
}
// What has left run(), for the object of the thread: in a table of its own, because the objects keep their size.
class Failures {
public:
    void put(const Thread* thread, std::exception_ptr failure)
    {
        const AutoLock lock(section_);
        failures_[thread] = {std::move(failure), false};
    }
    /// Null when there is none.
    std::exception_ptr ask(const Thread* thread)
    {
        const AutoLock lock(section_);
        const auto found = failures_.find(thread);
        if (found == failures_.end())
            return nullptr;
        found->second.asked = true;
        return found->second.exception;
    }
    /// The debugger hears of one that nobody asked for.
    void forget(const Thread* thread) noexcept
    {
        closeQuietly([&] {
            AutoLock lock(section_);
            const auto node = failures_.extract(thread);
            lock.unlock();
            if (node && !node.mapped().asked)
                std::rethrow_exception(node.mapped().exception);
        });
    }

private:
    struct Failure {
        std::exception_ptr exception;
        bool asked;
    };

    CriticalSection section_;
    std::map<const Thread*, Failure> failures_;
} failures;
} // namespace

struct Thread::ThreadInternals {
    /// Of the calling thread, which another may have followed by now.
    static void noteEnd(Thread& thread);
};

Thread::Thread() : mutex_(false) {}

Thread::~Thread() noexcept(false)
{
    try {
        if (isOpen())
            join();
    } catch (...) { // The handles are released whatever happened.
    }
    failures.forget(this);
}

void Thread::start(bool suspended)
{
    const AutoLock lock(mutex_);
    close();
    failures.forget(this);
    // It waits until the object knows of it: run() may be short. A start that fails changes nothing.
    DWORD id = 0;
    attach(ensure(CreateThread(nullptr, 0, &Thread::proc, this, CREATE_SUSPENDED, &id), failedStart));
    running_ = id_ = id;
    if (!suspended && ResumeThread(getHandle()) == failedCount) {
        const DWORD error = GetLastError();
        TerminateThread(getHandle(), 0); // It has not begun.
        running_ = 0;
        throwWindowsError(error, failedStart);
    }
}

unsigned long Thread::join()
{
    try {
        const AutoLock lock(mutex_);
        if (!isOpen())
            return 0;
        ensureNot(WAIT_FAILED, WaitForSingleObject(getHandle(), INFINITE), "Error waiting for thread exit");
        DWORD code = 0;
        ensure(GetExitCodeThread(getHandle(), &code), "Can't retrieve the thread's exit code");
        return code;
    } catch (...) { // The caller may be a destructor, and the thread still use the object.
        constexpr DWORD lookMs = 1;
        while (running_)
            Sleep(lookMs);
        throw;
    }
}

unsigned long Thread::joinOrThrow()
{
    const unsigned long code = join();
    if (const std::exception_ptr failure = failures.ask(this))
        std::rethrow_exception(failure);
    return code;
}

void Thread::suspend() const { ensureNot(failedCount, SuspendThread(getHandle()), "Can't suspend thread"); }
void Thread::resume() const { ensureNot(failedCount, ResumeThread(getHandle()), "Can't resume thread"); }

bool Thread::isRunning() const
{
    const AutoLock lock(mutex_);
    return running_ != 0;
}

unsigned long Thread::getID() const
{
    const AutoLock lock(mutex_);
    return id_;
}

bool Thread::isCurrent() const
{
    const AutoLock lock(mutex_);
    return running_ == GetCurrentThreadId();
}

unsigned long Thread::getCurrentID() { return GetCurrentThreadId(); }

void Thread::exit(unsigned long code)
{
    ThreadInternals::noteEnd(*this);
    ExitThread(code);
}

void Thread::ThreadInternals::noteEnd(Thread& thread)
{
    DWORD self = GetCurrentThreadId();
    thread.running_.compare_exchange_strong(self, 0);
}

// Takes no lock: the thread that joins this one holds it.
DWORD WINAPI Thread::proc(void* object)
{
    auto* const thread = static_cast<Thread*>(object);
    if (typeid(*thread) == typeid(Thread))
        endProgram();
    DWORD code = 0;
    try {
        code = thread->run();
    } catch (...) {
        if (thread->running_ == GetCurrentThreadId()) // And not another, which was started meanwhile.
            closeQuietly([&] { failures.put(thread, std::current_exception()); });
    }
    ThreadInternals::noteEnd(*thread);
    return code;
}
} // namespace tarn
