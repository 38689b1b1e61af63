#include <tarn/Thread.h>

#include "../foundation/Check.h"

namespace tarn {
#ifdef __i386__
static_assert(sizeof(Thread) == sizeof(WindowsHandle) + 4 + 4 + sizeof(Mutex));
#endif

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
    // Set before there is a thread: a short run() may have cleared it when CreateThread returns.
    const bool before = running_;
    running_ = true;
    void* const thread = CreateThread(nullptr, 0, &Thread::proc, this, suspended ? CREATE_SUSPENDED : 0, &id_);
    if (!thread) {
        running_ = before;
        throwLastError("Can't create thread");
    }
    attach(thread);
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

void Thread::suspend() const { ensureNot(static_cast<DWORD>(-1), SuspendThread(getHandle()), "Can't suspend thread"); }
void Thread::resume() const { ensureNot(static_cast<DWORD>(-1), ResumeThread(getHandle()), "Can't resume thread"); }

bool Thread::isRunning() const
{
    const AutoLock lock(mutex_);
    return running_;
}

unsigned long Thread::getID() const
{
    const AutoLock lock(mutex_);
    return id_;
}

bool Thread::isCurrent() const
{
    const AutoLock lock(mutex_);
    return running_ && id_ == GetCurrentThreadId();
}

unsigned long Thread::getCurrentID() { return GetCurrentThreadId(); }

void Thread::exit(unsigned long code)
{
    running_ = false;
    ExitThread(code);
}

// Takes no lock: the thread that joins this one holds it.
DWORD WINAPI Thread::proc(void* object)
{
    auto* const thread = static_cast<Thread*>(object);
    DWORD code = 0;
    try {
        code = thread->run();
    } catch (...) {
    }
    thread->running_ = false;
    return code;
}
} // namespace tarn
