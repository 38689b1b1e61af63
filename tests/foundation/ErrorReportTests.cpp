#include "Test.h"

#include <tarn/ErrorReport.h>
#include <tarn/ErrorTrace.h>
#include <tarn/WindowsFile.h>

#include <thread>

namespace {
const wchar_t* const lost = L"C:\\\x4E2D\x6587.txt";

struct Tracing {
    Tracing() { ErrorTrace::enable(); }
    Tracing(const Tracing&) = delete;
    Tracing& operator=(const Tracing&) = delete;
    ~Tracing() { ErrorTrace::enable(false); }
};

[[gnu::noinline]] void failInTheSystem()
{
    WindowsFile::getAttributes(lost);
    asm volatile(""); // So that the call is not the jump that ends this function.
}
[[gnu::noinline]] void failBelow(int levels)
{
    levels > 0 ? failBelow(levels - 1) : failInTheSystem();
    asm volatile("");
}
[[gnu::noinline]] void fault()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
}

// The trace's part of what is caught by its class, as ever.
template <class E, class Throwing, class Look> void caught(Throwing throwing, Look look)
{
    void (*volatile hidden)() = throwing;
    try {
        hidden();
        FAIL("nothing was thrown");
    } catch (const E& error) {
        look(error, ErrorTrace::of(error));
    }
}

// Where the calls of a function are in the frames; the function is short.
std::size_t depthOf(void (*function)(), const ErrorTrace& trace)
{
    const auto frames = trace.getFrames();
    const auto isIn = [function](const void* frame) {
        return reinterpret_cast<ULONG_PTR>(frame) - reinterpret_cast<ULONG_PTR>(function) < 200;
    };
    return static_cast<std::size_t>(std::ranges::find_if(frames, isIn) - frames.begin());
}
} // namespace

TEST_CASE("ErrorTrace: errors know their callers while the program asks for it")
{
    caught<WindowsError>(failInTheSystem, [](auto&, auto* trace) { CHECK(trace == nullptr); });
    const Tracing on;
    caught<WindowsError>(failInTheSystem, [](auto& error, const ErrorTrace* trace) {
        REQUIRE(trace);
        CHECK(typeid(error) != typeid(WindowsError));
        CHECK(trace->getErrorType() == typeid(WindowsError));
        CHECK(trace->getThreadID() == GetCurrentThreadId());
        CHECK(depthOf(failInTheSystem, *trace) >= 1);
        CHECK(depthOf(failInTheSystem, *trace) <= 4); // Below are getAttributes and what it calls.
        const HMODULE symbols = LoadLibraryW(L"dbghelp.dll");
        const auto options =
            reinterpret_cast<DWORD(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(symbols, "SymGetOptions")));
        trace->describeFrames(); // The first time the system keeps something itself.
        const auto handles = openHandles();
        const DWORD before = options();
        SetLastError(1234);
        const auto lines = trace->describeFrames();
        CHECK(GetLastError() == 1234);
        CHECK((openHandles() == handles && options() == before));
        FreeLibrary(symbols);
        CHECK_FALSE(GetModuleHandleW(L"dbghelp.dll"));
        CHECK(lines.at(0).startsWith(L"Tarn++U"));
        if (isWine()) { // Which reads symbols of the form that this file has, and lines as GCC writes them.
#ifdef __clang__
            const char* const place = "failInTheSystem";
#else
            const char* const place = "failInTheSystem (ErrorReportTests.cpp:";
#endif
            CHECK_THAT(w2a(lines.at(depthOf(failInTheSystem, *trace)), CP_UTF8), Catch::Contains(place));
        }
    });
    caught<WindowsError>([] { failBelow(100); }, [](auto&, auto* trace) { CHECK(trace->getFrames().size() == 32); });
    caught<SEHError>(fault, [](auto& error, const ErrorTrace* trace) {
        REQUIRE(trace);
        CHECK(depthOf(fault, *trace) == 0);
        const std::wstring place = trace->describeFrames().at(0);
        CHECK(error.whatW().endsWith(L" at " + place.substr(0, place.find(L' '))));
    });

    SECTION("an error that goes to another thread tells of its own")
    {
        std::exception_ptr kept;
        std::thread([&kept] {
            try {
                failInTheSystem();
            } catch (...) {
                kept = std::current_exception();
            }
        }).join();
        const auto report = reportOf(kept);
        CHECK(report.paragraph.startsWith(L"tarn::WindowsError (0x80070002): "));
        CHECK((report.paragraph.contains(L"\n    thrown in thread ") &&
               report.paragraph.contains(L"test_foundation.exe+0x")));
        CHECK_FALSE(report.paragraph.contains(L"thrown in thread " + std::to_wstring(GetCurrentThreadId()) + L"\n"));
    }
}

TEST_CASE("reportOf: a sentence for the user and a paragraph for the log, nested errors included")
{
    std::wstring inner;
    try {
        try {
            failInTheSystem();
        } catch (const std::exception& error) {
            inner = whatW(error);
            std::throw_with_nested(EndOfFile("The plan was not opened."));
        }
    } catch (...) {
        const auto report = reportOf();
        CHECK(report.sentence == L"The plan was not opened: " + inner);
        CHECK(report.paragraph == L"tarn::EndOfFile: The plan was not opened.\n"
                                  L"because of tarn::WindowsError (0x80070002): " +
                                      inner);
        CHECK(inner.find(lost) != inner.npos);
    }
    try {
        try {
            throw 1;
        } catch (...) {
            std::throw_with_nested(std::runtime_error("outer"));
        }
    } catch (const std::exception& error) {
        CHECK(reportOf(error).sentence == L"outer: An exception that is no std::exception");
    }
    CHECK(reportOf(std::exception_ptr()).paragraph.empty());
    CHECK(reportOf(SEHError(0xC000001D)).paragraph == L"tarn::SEHError (0xc000001d): Illegal instruction");
}

TEST_CASE("errorText: every class keeps names that the code page lacks")
{
    SetLastError(ERROR_ACCESS_DENIED);
    const std::string text = errorText(lost);
    CHECK(GetLastError() == ERROR_ACCESS_DENIED);
    const auto check = [](const std::exception& error) {
        const BasicString<char> narrow(error.what());
        CHECK(narrow.startsWith(BasicString<char>(lost)));
        CHECK(whatW(error).startsWith(lost));
        CHECK(whatUTF8(error) == w2a(whatW(error), CP_UTF8));
        const std::wstring behind = whatW(error).substr(std::wcslen(lost));
        CHECK(narrow.endsWith(BasicString<char>(behind)));
    };
    check(Exception(text));
    check(EndOfFile(text));
    check(CRTError(text, ENOENT));
    check(WindowsError(text));
    check(COMError(0x80004005, text));
    check(CommonDialogError(text, 1));
}
