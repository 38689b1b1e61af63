#include "Test.h"

#include <tarn/Cursor.h>
#include <tarn/DeviceContext.h>
#include <tarn/Driver.h>
#include <tarn/Event.h>
#include <tarn/Icon.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/Pen.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Thread.h>
#include <tarn/WindowsModule.h>

#include <optional>

// What all owners of handles, memory, files and drawing objects have in common.

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

struct MovableBlock : LocalMemory {
    MovableBlock() : LocalMemory(LocalAlloc(LMEM_MOVEABLE, 1), false) {}
};

/// `spoil` makes the end of an owner fail: in a scope, and as a member of a class whose constructor throws.
template <class Owner, class Spoil, class... Args> void expectFirstException(Spoil spoil, Args... args)
{
    struct Holder {
        Holder(Spoil& spoil, Args... args) : owner(args...)
        {
            spoil(owner);
            throw std::runtime_error("first");
        }
        Owner owner;
    };
    INFO(typeid(Owner).name());
    const DebuggerOutput output;
    const auto inScope = [&] {
        Owner owner(args...);
        spoil(owner);
        throw std::runtime_error("first");
    };
    CHECK_THROWS_WITH(inScope(), "first");
    CHECK_THROWS_WITH(Holder(spoil, args...), "first");
    CHECK(output.calls().size() >= 2); // The debugger hears of the second.
}
} // namespace

TEST_CASE("Owners: a failure to close does not end a program in which an exception is on its way")
{
    const auto attach = [](WindowsHandle& owner) { owner.attach(bad()); };
    const auto nothing = [](auto&) {};
    expectFirstException<WindowsHandle>(nothing, bad());
    expectFirstException<Event>(attach, true, false);
    expectFirstException<Mutex>(attach, false);
    expectFirstException<Process>(attach);
    expectFirstException<WindowsFile>(attach);
    expectFirstException<Idle>(attach);
    expectFirstException<Idle>([&](Idle& thread) { attach(thread.getMutex()); });
    expectFirstException<Pipe>([&](Pipe& pipe) {
        attach(pipe.getReadEnd());
        attach(pipe.getWriteEnd());
    });
    expectFirstException<StaleService>(nothing);
    expectFirstException<FailingDriver>(nothing);
    expectFirstException<MovableBlock>([](LocalMemory& memory) { LocalFree(memory.lock()); });
    expectFirstException<WindowsModule>([](WindowsModule& module) { FreeLibrary(module.getHandle()); }, "resources.dll",
                                        true);
    expectFirstException<Pen>([](Pen& pen) { DeleteObject(pen); }, 0ul, PS_DASH, 1);
    expectFirstException<DeviceContext>([](DeviceContext& context) { DeleteDC(context); });
    expectFirstException<Icon>(nothing, static_cast<HICON>(bad()), true);
    expectFirstException<Cursor>(nothing, static_cast<HCURSOR>(bad()), true);
    expectFirstException<TemporaryFile>([](TemporaryFile& file) { DeleteFileW(file.getPathW().c_str()); }, L"");
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
    kept = std::move(two);
    if constexpr (!std::is_same_v<Owner, LocalMemory>) // Of freed memory nobody may ask.
        CHECK_FALSE(end(second));
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

TEST_CASE("Owners: each can be moved, and gives back what it was given")
{
    const unsigned long handles = openHandles();
    const auto handle = [](const auto& owner) { return owner.getHandle(); };
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
    const unsigned long thread = child.getThreadID();
    Process kept;
    kept = std::move(child);
    CHECK((kept.getID() == GetProcessId(kept) && kept.getThreadID() == thread));
    CHECK((child.getID() == 0 && child.getThreadID() == 0));
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
    CHECK(openHandles() == handles + 1); // The child's.
    CHECK_FALSE(isLoaded("resources.dll"));
    CHECK_FALSE(isLoaded("netmsg.dll"));
}
