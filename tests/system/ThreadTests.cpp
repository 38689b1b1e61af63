#include <catch2/catch.hpp>

#include <tarn/Event.h>
#include <tarn/Thread.h>

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "Expect.h"
#include "Handles.h"

using namespace tarn;

namespace {
/// A thread that does what it is given.
class Worker : public Thread {
public:
    explicit Worker(std::function<unsigned long()> work) : work_(std::move(work)) {}
    ~Worker() noexcept(false) override { join(); }

    unsigned long run() override { return work_(); }
    using Thread::exit;

private:
    std::function<unsigned long()> work_;
};
} // namespace

TEST_CASE("Thread: join of an object that was never started returns 0 at once", "[system][thread]")
{
    Worker thread([] { return 7ul; });
    CHECK(thread.join() == 0);
    CHECK_FALSE(thread.isRunning());
    CHECK_FALSE(thread.isOpen());
}

TEST_CASE("Thread: what run returns is the result of every join, and start begins anew", "[system][thread]")
{
    unsigned long result = 7;
    Worker thread([&] { return result; });
    thread.start(false);
    CHECK(thread.join() == 7);
    CHECK(thread.join() == 7);
    CHECK_FALSE(thread.isRunning());
    const unsigned long handles = support::openHandles();
    result = 8;
    thread.start(false);
    CHECK(thread.join() == 8);
    CHECK(support::openHandles() == handles);
}

TEST_CASE("Thread: no exception leaves the thread, and the exit code is then 0", "[system][thread]")
{
    const std::function<unsigned long()> failures[] = {
        []() -> unsigned long { throw std::runtime_error("lost"); },
        []() -> unsigned long { throw 42; },
        []() -> unsigned long {
            volatile unsigned long* volatile nowhere = nullptr;
            return *nowhere;
        },
    };
    for (const auto& failure : failures) {
        Worker thread(failure);
        thread.start(false);
        CHECK(thread.join() == 0);
        CHECK_FALSE(thread.isRunning());
    }
}

TEST_CASE("Thread: exit ends the thread with its code, without unwinding", "[system][thread]")
{
    bool unwound = false;
    Worker* self = nullptr;
    Worker thread([&]() -> unsigned long {
        const std::shared_ptr<void> guard(nullptr, [&](void*) { unwound = true; });
        self->exit(9);
    });
    self = &thread;
    thread.start(false);
    CHECK(thread.join() == 9);
    CHECK_FALSE(thread.isRunning());
    CHECK_FALSE(unwound);
}

TEST_CASE("Thread: started suspended it is running and does nothing before resume", "[system][thread]")
{
    const Event ran(true, false);
    Worker thread([&] {
        ran.set();
        return 1ul;
    });
    thread.start(true);
    CHECK(thread.isRunning());
    CHECK(ran.wait(50) == WindowsHandle::timeout);
    thread.resume();
    CHECK(ran.wait(10000) == WindowsHandle::signaled);
    CHECK(thread.join() == 1);
}

TEST_CASE("Thread: suspend stops it until it is resumed as often", "[system][thread]")
{
    std::atomic<bool> stop = false;
    std::atomic<unsigned> steps = 0;
    Worker thread([&] {
        while (!stop)
            ++steps;
        return 0ul;
    });
    thread.start(false);
    while (steps == 0)
        Sleep(1);
    thread.suspend();
    thread.suspend();
    thread.resume();
    Sleep(20); // The thread may take a moment to stop.
    const unsigned before = steps;
    Sleep(50);
    CHECK(steps == before);
    thread.resume();
    while (steps == before)
        Sleep(1);
    stop = true;
}

TEST_CASE("Thread: it knows itself by its identifier", "[system][thread]")
{
    bool current = false;
    unsigned long id = 0;
    const Event done(true, false);
    Worker* self = nullptr;
    Worker thread([&] {
        current = self->isCurrent();
        id = Thread::getCurrentID();
        done.set();
        return 0ul;
    });
    self = &thread;
    thread.start(false);
    REQUIRE(done.wait(10000) == WindowsHandle::signaled);
    CHECK(current);
    CHECK(id == thread.getID());
    CHECK_FALSE(thread.isCurrent());
    CHECK(Thread::getCurrentID() == GetCurrentThreadId());
}

TEST_CASE("Thread: its mutex keeps other threads from starting it", "[system][thread]")
{
    Worker thread([] { return 0ul; });
    Worker starter([&] {
        thread.start(false);
        return 0ul;
    });
    AutoLock lock(thread.getMutex());
    starter.start(false);
    CHECK(starter.wait(50) == WindowsHandle::timeout);
    CHECK_FALSE(thread.isRunning());
    lock.unlock();
    starter.join();
    CHECK(thread.isOpen());
}

TEST_CASE("Thread: destroying the object waits for the thread and closes all handles", "[system][thread]")
{
    const unsigned long handles = support::openHandles();
    bool finished = false;
    {
        Worker thread([&] {
            Sleep(50);
            finished = true;
            return 0ul;
        });
        thread.start(false);
    }
    CHECK(finished);
    CHECK(support::openHandles() == handles);
}

TEST_CASE("Thread: failing calls name themselves", "[system][thread]")
{
    Worker thread([] { return 0ul; });
    support::expectWindowsError([&] { thread.suspend(); }, ERROR_INVALID_HANDLE, "Can't suspend thread");
    support::expectWindowsError([&] { thread.resume(); }, ERROR_INVALID_HANDLE, "Can't resume thread");

    const Event event(true, true);
    HANDLE duplicate = nullptr;
    REQUIRE(DuplicateHandle(GetCurrentProcess(), event, GetCurrentProcess(), &duplicate, SYNCHRONIZE, FALSE, 0));
    thread.attach(duplicate);
    support::expectWindowsError([&] { thread.join(); }, ERROR_INVALID_HANDLE, "Can't retrieve the thread's exit code");
    REQUIRE(DuplicateHandle(GetCurrentProcess(), event, GetCurrentProcess(), &duplicate, EVENT_MODIFY_STATE, FALSE, 0));
    thread.attach(duplicate);
    support::expectWindowsError([&] { thread.join(); }, ERROR_ACCESS_DENIED, "Error waiting for thread exit");
    thread.close();
}

TEST_CASE("Thread: without memory for its stack start fails and can be tried again", "[system][thread]")
{
    Worker thread([] { return 3ul; });
    std::vector<void*> reserved;
    reserved.reserve(4096);
    for (std::size_t size = 256 << 20; size >= 512 << 10; size /= 2)
        while (void* const block = VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS))
            reserved.push_back(block);
    std::string description;
    try {
        thread.start(false);
    } catch (const WindowsError& e) {
        description = e.getDescription();
    }
    for (void* const block : reserved)
        VirtualFree(block, 0, MEM_RELEASE);
    CHECK(description == "Can't create thread");
    CHECK_FALSE(thread.isRunning());
    thread.start(false);
    CHECK(thread.join() == 3);
}

TEST_CASE("Thread: 200 threads share a counter while others suspend and resume them", "[system][thread][stress]")
{
    constexpr unsigned count = 200, rounds = 50;
    const unsigned long handles = support::openHandles();
    {
        Mutex mutex(false);
        unsigned counter = 0;
        std::vector<std::unique_ptr<Worker>> workers;
        for (unsigned i = 0; i < count; ++i)
            workers.push_back(std::make_unique<Worker>([&] {
                for (unsigned round = 0; round < rounds; ++round) {
                    const AutoLock lock(mutex);
                    ++counter;
                }
                return 1ul;
            }));
        const auto disturb = [&](unsigned first) {
            unsigned long disturbed = 0;
            for (unsigned i = first; i < count; i += 2) {
                try {
                    workers[i]->suspend();
                } catch (const WindowsError&) { // It has finished already.
                    continue;
                }
                Sleep(0);
                workers[i]->resume();
                ++disturbed;
            }
            return disturbed;
        };
        for (const auto& worker : workers)
            worker->start(false);
        Worker even([&] { return disturb(0); }), odd([&] { return disturb(1); });
        even.start(false);
        odd.start(false);
        unsigned long finished = 0;
        for (const auto& worker : workers)
            finished += worker->join();
        CHECK(even.join() + odd.join() > 0);
        CHECK(finished == count);
        CHECK(counter == count * rounds);
    }
    CHECK(support::openHandles() == handles);
}
