#include "Test.h"

#include <future>
#include <thread>

// This program is not linked with the library: it loads and frees it, as a host of plug-ins does.

namespace {
using Calls = std::vector<std::string>;
using Indexes = std::vector<DWORD>;

const char* const library = TARN_DLL;
int readable = 42;

#ifdef __x86_64__
auto& firstRegister(CONTEXT& context) { return context.Rax; }
#else
auto& firstRegister(CONTEXT& context) { return context.Eax; }
#endif

// What answers when no translator took the fault: lets the read go on with an address that is good.
LONG CALLBACK lendAddress(EXCEPTION_POINTERS* info)
{
    auto& address = firstRegister(*info->ContextRecord);
    if (info->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION || address != 0)
        return EXCEPTION_CONTINUE_SEARCH;
    address = reinterpret_cast<ULONG_PTR>(&readable);
    return EXCEPTION_CONTINUE_EXECUTION;
}

struct LastResort {
    LastResort() : handler(AddVectoredExceptionHandler(0, &lendAddress)) {}
    ~LastResort() { RemoveVectoredExceptionHandler(handler); }
    void* handler;
};

__attribute__((noinline)) int readFromNull()
{
    int value;
    asm volatile("movl (%1), %0" : "=r"(value) : "a"(static_cast<int*>(nullptr)) : "memory");
    return value;
}

// Reads through a null pointer: "SEH exception" where it is translated, "untouched" where it is not.
std::string faultAndTell()
{
    try {
        int (*volatile read)() = &readFromNull; // Clang forgets the handler where it sees that no call throws.
        return read() == readable ? "untouched" : "wrong value";
    } catch (const std::exception& e) {
        return e.what();
    }
}

// The program's own callback of a thread that ends is called when the libraries have been told.
bool isAskedAtTheEnd = false;
std::string toldAtTheEnd;

void NTAPI onThread(void*, DWORD reason, void*)
{
    if (reason == DLL_THREAD_DETACH && isAskedAtTheEnd)
        toldAtTheEnd = faultAndTell();
}
[[gnu::section(".CRT$XLY"), gnu::used]] const PIMAGE_TLS_CALLBACK threadCallback = &onThread;

/// A thread that exists from now on and runs faultAndTell once it is asked.
class WaitingThread {
public:
    WaitingThread() : thread_([this] { run(); }) { started_.get_future().wait(); }
    std::string tell()
    {
        asked_.set_value();
        thread_.join();
        return result_;
    }

private:
    void run()
    {
        started_.set_value();
        asked_.get_future().wait();
        result_ = faultAndTell();
    }

    std::promise<void> started_, asked_;
    std::string result_;
    std::thread thread_;
};
} // namespace

TEST_CASE("Entry point: loading covers the loading thread and later ones, unloading ends it")
{
    REQUIRE_FALSE(GetModuleHandleA(library));
    WaitingThread before;
    const HMODULE module = LoadLibraryA(library);
    REQUIRE(module);
    {
        const LastResort lastResort;
        CHECK(faultAndTell() == "SEH exception");
        CHECK(WaitingThread().tell() == "SEH exception");
        CHECK(before.tell() == "untouched");
        isAskedAtTheEnd = true;
        std::thread([] {}).join();
        isAskedAtTheEnd = false;
        CHECK(toldAtTheEnd == "untouched");
    }
    WaitingThread attached;
    REQUIRE(FreeLibrary(module));
    REQUIRE_FALSE(GetModuleHandleA(library));
    const LastResort lastResort;
    CHECK(faultAndTell() == "untouched");
    CHECK(attached.tell() == "untouched");
}

TEST_CASE("Entry point: every call sends one line to the debugger")
{
    const DebuggerOutput output;
    const HMODULE module = LoadLibraryA(library);
    CHECK(output.calls() == Calls(1, "Tarn++ DllMain"));
    std::thread([] {}).join();
    CHECK(output.calls() == Calls(3, "Tarn++ DllMain"));
    FreeLibrary(module);
    CHECK(output.calls() == Calls(4, "Tarn++ DllMain"));
}

TEST_CASE("Entry point: loading and unloading many times leaves nothing behind, and needs nothing to succeed")
{
    FreeLibrary(LoadLibraryA(library));
    const auto takeAllIndexes = [] {
        Indexes indexes;
        for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc())
            indexes.push_back(index);
        return indexes;
    };
    const Indexes indexes = takeAllIndexes();
    const HMODULE module = LoadLibraryA(library); // Its threads have no translator, and it does not fail.
    CHECK(module);
    FreeLibrary(module);
    std::ranges::for_each(indexes, TlsFree);
    for (int i = 0; i < 50; ++i)
        FreeLibrary(LoadLibraryA(library));
    const Indexes after = takeAllIndexes();
    std::ranges::for_each(after, TlsFree);
    CHECK(after == indexes);
}
