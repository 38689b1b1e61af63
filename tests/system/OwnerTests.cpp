#include <catch2/catch.hpp>

#include <tarn/Driver.h>
#include <tarn/Event.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Thread.h>
#include <tarn/WindowsModule.h>

#include <stdexcept>

#include "DebuggerOutput.h"

// What all owners of handles, memory and files have in common.

using namespace tarn;

namespace {
void* bad() { return reinterpret_cast<void*>(0x7FFC); }

struct Idle : Thread {
    unsigned long run() override { return 0; }
};

struct StaleService : Service {
    StaleService() { setHandle(reinterpret_cast<SC_HANDLE>(&noService)); }
    int noService = 0;
};

struct FailingDriver : Driver {
    FailingDriver()
    {
        CHECK_THROWS(load(L"TarnTestGone", L"Gone", L"C:\\missing\\missing.sys")); // Stays until unload().
        Service service;
        service.open(ServiceManager(nullptr, SC_MANAGER_CONNECT), "TarnTestGone", DELETE);
        service.remove();
    }
};

/// `make` gives an owner and `spoil` makes its end fail: in a scope, and as a member of a class whose
/// constructor throws.
template <class Make, class Spoil> void expectFirstException(const char* name, Make make, Spoil spoil)
{
    using Owner = decltype(make());
    struct Holder {
        Holder(Make& make, Spoil& spoil) : owner(make())
        {
            spoil(owner);
            throw std::runtime_error("first");
        }
        Owner owner;
    };
    INFO(name);
    const support::DebuggerOutput output;
    const auto inScope = [&] {
        Owner owner = make();
        spoil(owner);
        throw std::runtime_error("first");
    };
    CHECK_THROWS_WITH(inScope(), "first");
    CHECK_THROWS_WITH(Holder(make, spoil), "first");
    CHECK(output.calls().size() >= 2); // The debugger hears of the second.
}
} // namespace

TEST_CASE("Owners: a failure to close does not end a program in which an exception is on its way", "[system][owner]")
{
    const auto attach = [](WindowsHandle& owner) { owner.attach(bad()); };
    const auto nothing = [](auto&) {};
    expectFirstException(
        "WindowsHandle", [] { return WindowsHandle(bad()); }, nothing);
    expectFirstException(
        "Event", [] { return Event(true, false); }, attach);
    expectFirstException(
        "Mutex", [] { return Mutex(false); }, attach);
    expectFirstException(
        "Process", [] { return Process(); }, attach);
    expectFirstException(
        "WindowsFile", [] { return WindowsFile(); }, attach);
    expectFirstException(
        "Thread", [] { return Idle(); }, attach);
    expectFirstException(
        "Thread, its mutex", [] { return Idle(); }, [&](Idle& thread) { attach(thread.getMutex()); });
    expectFirstException(
        "Pipe", [] { return Pipe(); },
        [&](Pipe& pipe) {
            attach(pipe.getReadEnd());
            attach(pipe.getWriteEnd());
        });
    expectFirstException(
        "Service", [] { return StaleService(); }, nothing);
    expectFirstException(
        "Driver", [] { return FailingDriver(); }, nothing);
    expectFirstException(
        "LocalMemory", [] { return LocalMemory(LocalAlloc(LMEM_MOVEABLE, 1), false); },
        [](LocalMemory& memory) { LocalFree(memory.lock()); });
    expectFirstException(
        "WindowsModule", [] { return WindowsModule("resources.dll", true); },
        [](WindowsModule& module) { FreeLibrary(module.getHandle()); });
    expectFirstException(
        "TemporaryFile", [] { return TemporaryFile(L""); },
        [](TemporaryFile& file) { DeleteFileW(file.getPathW().c_str()); });
}
