#include <catch2/catch.hpp>

#include "Expect.h"

#include <tarn/Event.h>
#include <tarn/Lock.h>

// Internal to the library and not exported, so compiled in.
#include <foundation/Check.cpp>
#include <system/ThreadLocalSlot.cpp>

#include <string>
#include <thread>
#include <vector>

using tarn::AutoLock;
using tarn::CriticalSection;
using tarn::Mutex;

namespace {
// Writes down what is done to it.
class Recorder : public tarn::Lockable {
public:
    Recorder(std::string name, std::vector<std::string>& log) : name_(std::move(name)), log_(log) {}
    void lock() override { log_.push_back("lock " + name_); }
    void unlock() override
    {
        log_.push_back("unlock " + name_);
        if (failing)
            throw tarn::Exception("unlock failed");
    }
    bool failing = false;

private:
    std::string name_;
    std::vector<std::string>& log_;
};

// Four threads add to an unguarded number; only the lock keeps the sum whole.
template <class Lock> int contendedSum(Lock& lock, int rounds)
{
    int sum = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                const AutoLock held(lock);
                const int seen = *static_cast<volatile int*>(&sum);
                if (round % 64 == 0)
                    SwitchToThread();
                sum = seen + 1;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    return sum;
}
} // namespace

TEST_CASE("Locks: threads in contention exclude each other", "[system][lock]")
{
    CriticalSection section;
    CHECK(contendedSum(section, 20000) == 80000);
    Mutex mutex(false);
    CHECK(contendedSum(mutex, 2000) == 8000);
}

TEST_CASE("CriticalSection: recursive for its thread, closed to others", "[system][lock]")
{
    CriticalSection section;
    section.lock();
    CHECK(section.tryLock());
    bool entered = true;
    std::thread([&] { entered = section.tryLock(); }).join();
    CHECK_FALSE(entered);
    section.unlock();
    section.unlock();
    std::thread([&] {
        entered = section.tryLock();
        section.unlock();
    }).join();
    CHECK(entered);
}

TEST_CASE("Mutex: an abandoned mutex counts as locked", "[system][lock]")
{
    Mutex mutex(false);
    std::thread([&] { mutex.lock(); }).join();
    CHECK_NOTHROW(mutex.lock());
    CHECK_NOTHROW(mutex.unlock());
    std::thread([&] { mutex.lock(); }).join();
    CHECK(mutex.wait(0) == tarn::WindowsHandle::abandoned);
}

TEST_CASE("Mutex: unlocking the mutex of another thread throws", "[system][lock]")
{
    Mutex mutex(true);
    std::thread([&] {
        support::expectWindowsError([&] { mutex.unlock(); }, ERROR_NOT_OWNER, "Error in ReleaseMutex");
    }).join();
}

TEST_CASE("AutoLock: unlocks the old lock before it takes a new one", "[system][lock]")
{
    std::vector<std::string> log;
    Recorder a("a", log), b("b", log);
    {
        AutoLock lock(a);
        lock.lock(b);
        lock.unlock();
        lock.unlock();
        lock.lock(a);
    }
    CHECK(log == std::vector<std::string>{"lock a", "unlock a", "lock b", "unlock b", "lock a", "unlock a"});
}

TEST_CASE("AutoLock: its destructor drops the failure of an unlock, unlock() reports it", "[system][lock]")
{
    std::vector<std::string> log;
    Recorder lockable("a", log);
    lockable.failing = true;
    CHECK_NOTHROW([&] { const AutoLock lock(lockable); }());
    AutoLock lock(lockable);
    CHECK_THROWS_AS(lock.unlock(), tarn::Exception);
    CHECK_NOTHROW(lock.unlock()); // Forgotten before it was unlocked.
}

TEST_CASE("AutoLock: a copy unlocks the same lock again", "[system][lock]")
{
    std::vector<std::string> log;
    Recorder lockable("a", log);
    {
        const AutoLock lock(lockable);
        const AutoLock copy(lock);
    }
    CHECK(log == std::vector<std::string>{"lock a", "unlock a", "unlock a"});
}

TEST_CASE("ThreadLocalSlot: each thread has its own value", "[system][slot]")
{
    tarn::ThreadLocalSlot slot;
    support::expectWindowsError([&] { slot.set(&slot); }, ERROR_INVALID_PARAMETER, "Can't set TLS value");
    support::expectWindowsError([&] { slot.get(); }, ERROR_INVALID_PARAMETER, "Can't get TLS value");
    slot.allocate();
    slot.set(&slot);
    CHECK(slot.get() == &slot);
    std::thread([&] { CHECK(slot.get() == nullptr); }).join();
    slot.allocate();
    CHECK(slot.get() == nullptr); // A new index begins empty.
}
