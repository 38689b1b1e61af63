#include "Test.h"

#include <tarn/Event.h>
#include <tarn/Lock.h>

// Internal to the library and not exported, so compiled in.
#include <foundation/Check.cpp>
#include <system/ThreadLocalSlot.cpp>

#include <mutex>
#include <thread>

namespace {
using Log = std::vector<std::string>;

// Writes down what is done to it.
class Recorder : public Lockable {
public:
    Recorder(std::string name, Log& log) : name_(std::move(name)), log_(log) {}
    void lock() override { log_.push_back("lock " + name_); }
    void unlock() override
    {
        log_.push_back("unlock " + name_);
        if (failing)
            throw Exception("unlock failed");
    }
    bool failing = false;

private:
    std::string name_;
    Log& log_;
};

void onAnotherThread(const std::function<void()>& work) { std::thread(work).join(); }
} // namespace

TEST_CASE("CriticalSection: recursive for its thread, closed to others")
{
    CriticalSection section;
    section.lock();
    CHECK(section.tryLock());
    section.unlock();
    onAnotherThread([&] { CHECK_FALSE(section.tryLock()); });
    section.unlock();
    onAnotherThread([&] {
        CHECK(section.tryLock());
        section.unlock();
    });
}

TEST_CASE("Mutex: only its thread unlocks it, and an abandoned one counts as locked")
{
    Mutex mutex(true);
    onAnotherThread([&] { expectWindowsError([&] { mutex.unlock(); }, ERROR_NOT_OWNER, "Error in ReleaseMutex"); });
    mutex.unlock();
    onAnotherThread([&] { mutex.lock(); });
    CHECK_NOTHROW(mutex.lock());
    CHECK_NOTHROW(mutex.unlock());
    onAnotherThread([&] { mutex.lock(); });
    CHECK(mutex.wait(0) == WindowsHandle::abandoned);
}

TEST_CASE("Mutex: a name is shared, and a second one does not own it at first")
{
    bool existed = true;
    Mutex first(L"Local\\TarnTest", true, &existed);
    CHECK_FALSE(existed);
    std::thread([&] {
        Mutex second(L"Local\\TarnTest", true, &existed);
        CHECK(existed);
        expectWindowsError([&] { second.unlock(); }, ERROR_NOT_OWNER, "Error in ReleaseMutex");
        CHECK_FALSE(Mutex::openNamed(L"Local\\TarnTest").tryLock());
    }).join();
    first.unlock();
    first.close();
    expectWindowsError([] { Mutex::openNamed(L"Local\\TarnTest"); }, ERROR_FILE_NOT_FOUND,
                       "Can't open mutex \"Local\\TarnTest\"");
}

TEST_CASE("Lock: the locks of the standard library take two at once")
{
    CriticalSection section;
    Mutex mutex(false);
    const std::scoped_lock both(section, mutex);
    onAnotherThread([&] { CHECK_FALSE((section.try_lock() || mutex.try_lock())); });
}

TEST_CASE("AutoLock: unlocks the old lock before it takes a new one, and a copy unlocks again")
{
    Log log;
    Recorder a("a", log), b("b", log);
    {
        AutoLock lock(a);
        lock.lock(b);
        lock.unlock();
        lock.unlock();
        lock.lock(a);
        const AutoLock copy(lock);
    }
    CHECK(log == Log{"lock a", "unlock a", "lock b", "unlock b", "lock a", "unlock a", "unlock a"});
}

TEST_CASE("AutoLock: its destructor drops the failure of an unlock, unlock() reports it")
{
    Log log;
    Recorder lockable("a", log);
    lockable.failing = true;
    CHECK_NOTHROW([&] { const AutoLock lock(lockable); }());
    AutoLock lock(lockable);
    CHECK_THROWS_AS(lock.unlock(), Exception);
    CHECK_NOTHROW(lock.unlock()); // Forgotten before it was unlocked.
}

TEST_CASE("ThreadLocalSlot: each thread has its own value")
{
    ThreadLocalSlot slot;
    expectWindowsError([&] { slot.set(&slot); }, ERROR_INVALID_PARAMETER, "Can't set TLS value");
    expectWindowsError([&] { slot.get(); }, ERROR_INVALID_PARAMETER, "Can't get TLS value");
    slot.allocate();
    slot.set(&slot);
    CHECK(slot.get() == &slot);
    onAnotherThread([&] { CHECK(slot.get() == nullptr); });
    slot.allocate();
    CHECK(slot.get() == nullptr); // A new index begins empty.
    CHECK_NOTHROW([] {
        for (int more = 0; more < 1200; ++more) // Than a process has indices.
            ThreadLocalSlot().allocate();
    }());
}
