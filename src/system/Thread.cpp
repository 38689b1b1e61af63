#include <tarn/Thread.h>

#include "../foundation/Check.h"

#include <cstdio>
#include <exception>
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
} // namespace

Thread::Thread() : mutex_(false) {}

Thread::~Thread() noexcept(false)
{
    try {
        if (isOpen())
            join();
    } catch (...) { // The handles are released whatever happened.
    }
}

void Thread::start(bool suspended)
{
    const AutoLock lock(mutex_);
    close();
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
    const AutoLock lock(mutex_);
    if (!isOpen())
        return 0;
    ensureNot(WAIT_FAILED, WaitForSingleObject(getHandle(), INFINITE), "Error waiting for thread exit");
    DWORD code = 0;
    ensure(GetExitCodeThread(getHandle(), &code), "Can't retrieve the thread's exit code");
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
    noteEnd();
    ExitThread(code);
}

void Thread::noteEnd()
{
    DWORD self = GetCurrentThreadId();
    running_.compare_exchange_strong(self, 0);
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
    }
    thread->noteEnd();
    return code;
}
} // namespace tarn
