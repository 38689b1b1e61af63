#include <catch2/catch.hpp>

#include <tarn/Driver.h>
#include <tarn/Event.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Thread.h>
#include <tarn/WindowsModule.h>

#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include "DebuggerOutput.h"
#include "Handles.h"

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

namespace {
/// `one` and `two` change places through moves; `what` tells what an owner has, and `end` takes back what it
/// gives away.
template <class Owner, class What, class End>
void expectMoves(const char* name, Owner one, Owner two, What what, End end)
{
    static_assert(noexcept(new (nullptr) Owner(std::declval<Owner>())) && std::is_nothrow_move_assignable_v<Owner>);
    INFO(name);
    const auto first = what(one), second = what(two);
    REQUIRE(first != second);
    std::swap(one, two);
    CHECK(what(one) == second);
    CHECK(what(two) == first);
    std::optional<Owner> kept(std::move(one));
    CHECK(what(*kept) == second);
    CHECK(what(one) != second);
    kept = std::move(two); // Ends what was second.
    Owner& itself = *kept;
    itself = std::move(*kept);
    CHECK(what(*kept) == first);
    CHECK(end(kept->detach()));
    CHECK(what(*kept) == what(one));
}

struct Manager : ServiceManager {
    Manager() : ServiceManager(nullptr, SC_MANAGER_CONNECT) {}
    using ServiceManager::getHandle;
};

WindowsFile moduleFile(const char* name)
{
    WindowsFile file;
    file.open(WindowsModule(name, true).getFilenameW().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
              0, nullptr);
    return file;
}

bool isLoaded(const char* name) { return GetModuleHandleA(name) != nullptr; }
} // namespace

TEST_CASE("Owners: each can be moved, and gives back what it was given", "[system][owner]")
{
    const unsigned long handles = support::openHandles();
    const auto handle = [](const auto& owner) { return static_cast<void*>(owner.getHandle()); };
    const auto fixedBlock = [] { return LocalMemory(LocalAlloc(LMEM_FIXED, 1), false); };
    expectMoves("Event", Event(true, false), Event(true, false), handle, CloseHandle);
    expectMoves("Mutex", Mutex(false), Mutex(false), handle, CloseHandle);
    expectMoves("WindowsFile", moduleFile("resources.dll"), moduleFile(TARN_DLL), handle, CloseHandle);
    expectMoves("ServiceManager", Manager(), Manager(), handle, CloseServiceHandle);
    expectMoves("WindowsModule", WindowsModule("resources.dll", true), WindowsModule("messages\\netmsg.dll", true),
                handle, FreeLibrary);
    expectMoves(
        "LocalMemory", fixedBlock(), fixedBlock(), [](LocalMemory& memory) { return memory.lock(); },
        [](void* block) { return !LocalFree(block); });
    expectMoves(
        "TemporaryFile", TemporaryFile(L""), TemporaryFile(L""),
        [](const TemporaryFile& file) { return file.getPathW(); },
        [](const std::wstring& path) { return DeleteFileW(path.c_str()); });
    expectMoves(
        "TemporaryDirectory", TemporaryDirectory(nullptr, L"tar"), TemporaryDirectory(nullptr, L"tar"),
        [](const TemporaryDirectory& folder) { return std::wstring(folder); },
        [](const std::wstring& path) { return RemoveDirectoryW(path.c_str()); });

    Process child("cmd /c exit 3", 0);
    const Process kept(std::move(child));
    CHECK(kept.getID() == GetProcessId(kept));
    CHECK(child.getID() == 0);
    Pipe pipe(0, nullptr), other;
    other = std::move(pipe);
    other.getWriteEnd().write("x", 1);
    std::vector<WindowsFile> files;
    for (const char* const name : {"resources.dll", TARN_DLL, "resources.dll"})
        files.push_back(moduleFile(name));
    const unsigned long long size = files[1].getSize();
    files.erase(files.begin());
    CHECK(files.front().getSize() == size);

    files.clear();
    other.close();
    CHECK(support::openHandles() == handles + 1); // The child's.
    CHECK_FALSE(isLoaded("resources.dll"));
    CHECK_FALSE(isLoaded("netmsg.dll"));
}

TEST_CASE("WindowsHandle: as a truth value it is whether it is open, and no number", "[system][handle]")
{
    const Event open(true, false);
    const WindowsHandle none;
    const bool isOpen = open, isNone = none;
    CHECK(isOpen);
    CHECK_FALSE(isNone);
    CHECK((none ? 1 : 2) == 2);
    static_assert(!std::is_convertible_v<WindowsHandle, int> && std::is_convertible_v<WindowsHandle, void*>);
}
