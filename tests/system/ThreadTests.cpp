#include "Test.h"

#include <tarn/Event.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/StandardStreams.h>
#include <tarn/Thread.h>

#include <atomic>

namespace {
void* volatile nowhere = nullptr;

/// A thread that does what it is given.
class Worker : public Thread {
public:
    explicit Worker(std::function<unsigned long(Worker&)> work) : work_(std::move(work)) {}
    ~Worker() noexcept(false) override { join(); }

    unsigned long run() override { return work_(*this); }
    using Thread::exit;

private:
    std::function<unsigned long(Worker&)> work_;
};
} // namespace

TEST_CASE("Thread: what run returns is the result of every join, and start begins anew")
{
    unsigned long result = 7;
    Worker thread([&](Worker&) { return result; });
    CHECK(thread.join() == 0); // Never started: no wait.
    thread.start();
    CHECK(thread.join() == 7);
    CHECK(thread.join() == 7);
    const unsigned long handles = openHandles();
    result = 8;
    thread.start(false);
    CHECK(thread.join() == 8);
    CHECK(openHandles() == handles);
}

TEST_CASE("Thread: what leaves run comes out of joinOrThrow, and join gives 0; exit ends it with a code")
{
    const auto joined = [](std::function<unsigned long(Worker&)> work) {
        Worker thread(std::move(work));
        thread.start(false);
        const unsigned long code = thread.join();
        CHECK_FALSE(thread.isRunning());
        thread.joinOrThrow();
        return code;
    };
    const auto exits = [&] { return joined([](Worker& self) -> unsigned long { self.exit(9); }); };
    CHECK(exits() == 9);
    const unsigned long handles = openHandles();
    CHECK(exits() == 9);
    CHECK(openHandles() == handles);
    CHECK_THROWS_WITH(joined([](Worker&) -> unsigned long { throw std::runtime_error("what"); }), "what");
    CHECK_THROWS_AS(joined([](Worker&) { return *static_cast<volatile unsigned long*>(nowhere); }), SEHError);

    unsigned runs = 0;
    Worker thread([&](Worker&) { return runs++ == 0 ? throw 42 : 5ul; });
    thread.start(false);
    CHECK(thread.join() == 0);
    for (int i = 0; i < 2; ++i)
        CHECK_THROWS_AS(thread.joinOrThrow(), int);
    thread.start(false);
    CHECK(thread.joinOrThrow() == 5);
}

TEST_CASE("Thread: the debugger hears of an exception that nobody asked for")
{
    const DebuggerOutput output;
    const auto heardOf = [&](bool asks) {
        unsigned runs = 0;
        Worker thread([&](Worker&) { return runs++ == 0 ? throw std::runtime_error("unheard") : 0ul; });
        thread.start(false);
        if (asks)
            CHECK_THROWS(thread.joinOrThrow());
        thread.join();
        thread.start(false);
        return std::count(output.calls().begin(), output.calls().end(), "unheard");
    };
    CHECK(heardOf(true) == 0);
    CHECK(heardOf(false) == 1);
}

TEST_CASE("Thread: suspended it does nothing until it is resumed as often, and it knows itself")
{
    const Event ran(true, false);
    bool current = false;
    Worker thread([&](Worker& self) {
        current = self.isCurrent();
        ran.set();
        return Thread::getCurrentID();
    });
    thread.start(true);
    thread.suspend();
    CHECK(thread.isRunning());
    CHECK(ResumeThread(thread) == 2);
    CHECK(ran.wait(50) == WindowsHandle::timeout);
    thread.resume();
    REQUIRE(ran.wait(10000) == WindowsHandle::signaled);
    CHECK(thread.join() == thread.getID());
    CHECK(current);
    CHECK_FALSE(thread.isCurrent());
}

TEST_CASE("Thread: the end of a thread that another has followed leaves the object running")
{
    Event ends[] = {{true, false}, {true, false}};
    std::atomic<int> started = 0;
    Worker thread([&](Worker& self) {
        ends[started++].wait(INFINITE);
        self.exit(5);
        return 0ul;
    });
    WindowsHandle first, second;
    for (WindowsHandle* const handle : {&first, &second}) {
        thread.start(false);
        handle->attach(duplicateOf(thread, SYNCHRONIZE));
        while (started == (handle == &first ? 0 : 1))
            Sleep(1);
    }
    ends[0].set();
    CHECK(first.wait(10000) == WindowsHandle::signaled);
    CHECK(thread.isRunning());
    ends[1].set();
    thread.join();
    CHECK_FALSE(thread.isRunning());
}

TEST_CASE("Thread: a class that does not join ends the program with a message")
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Pipe errors(0, &inheritable);
    errors.keepReadEnd();
    Process child;
    child.create("test_system.exe \"a thread without its class\"", nullptr, nullptr, errors.getWriteEnd(), 0);
    errors.getWriteEnd().close();
    CHECK(readAll(errors.getReadEnd()).find("Call join() in the destructor") != std::string::npos);
    CHECK(child.wait(20'000) == WindowsHandle::signaled);
    CHECK(child.getExitCode() == 3);
}

TEST_CASE("a thread without its class", "[.]")
{
    struct Careless : Thread {
        unsigned long run() override { return 0; }
    };
    for (int i = 0; i < 100; ++i)
        Careless().start(false);
}

TEST_CASE("Thread: its mutex keeps other threads from starting it")
{
    Worker thread([](Worker&) { return 0ul; });
    Worker starter([&](Worker&) {
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

TEST_CASE("Thread: failing calls name themselves")
{
    Worker thread([](Worker&) { return 0ul; });
    expectWindowsError([&] { thread.suspend(); }, ERROR_INVALID_HANDLE, "Can't suspend thread");
    expectWindowsError([&] { thread.resume(); }, ERROR_INVALID_HANDLE, "Can't resume thread");

    const Event event(true, true);
    thread.attach(duplicateOf(event, SYNCHRONIZE));
    expectWindowsError([&] { thread.join(); }, ERROR_INVALID_HANDLE, "Can't retrieve the thread's exit code");
    thread.attach(duplicateOf(event, EVENT_MODIFY_STATE));
    expectWindowsError([&] { thread.join(); }, ERROR_ACCESS_DENIED, "Error waiting for thread exit");
    thread.close();
}

#ifndef _WIN64 // There nobody uses up all addresses before the system needs some itself.
TEST_CASE("Thread: without memory for its stack start fails and can be tried again")
{
    Worker thread([](Worker&) { return 3ul; });
    std::vector<void*> reserved;
    reserved.reserve(4096);
    for (std::size_t size = SIZE_MAX / 16 + 1; size >= 512 << 10; size /= 2)
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
#endif
