#include <catch2/catch.hpp>

#include "Expect.h"

#include <tarn/Exception.h>
#include <tarn/SETranslator.h>
#include <tarn/Windows.h>

#include <thread>

namespace {
int* volatile nowhere = nullptr;
volatile int zero = 0;
volatile int sink = 0;

void touchNothing() { sink = *nowhere; }
void divideByZero() { sink = 1 / zero; }
void callNothing()
{
    void (*volatile function)() = nullptr;
    function();
}

struct CountsDestruction {
    explicit CountsDestruction(int& counter) : count(counter) {}
    ~CountsDestruction() { ++count; }
    int& count;
};

unsigned long codeOf(void (*fault)())
{
    int destroyed = 0;
    const auto error = support::thrownBy<tarn::SEHError>([&] {
        const CountsDestruction outer(destroyed);
        const CountsDestruction inner(destroyed);
        fault();
    });
    CHECK(destroyed == 2);
    return error.getCode();
}
} // namespace

TEST_CASE("SEHError: faults arrive as exceptions, and destructors run", "[foundation][seh]")
{
    CHECK(codeOf(touchNothing) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(codeOf(divideByZero) == EXCEPTION_INT_DIVIDE_BY_ZERO);
    CHECK(codeOf(callNothing) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(codeOf([] { asm volatile("ud2"); }) == EXCEPTION_ILLEGAL_INSTRUCTION);
}

TEST_CASE("SEHError: a try in the function that faults catches it", "[foundation][seh]")
{
    for (int i = 0; i < 1000; ++i) {
        try {
            *nowhere = i;
            FAIL("the write went through");
        } catch (const tarn::SEHError& error) {
            REQUIRE(error.getCode() == EXCEPTION_ACCESS_VIOLATION);
        }
    }
}

TEST_CASE("SEHError: threads that start later have the translator too", "[foundation][seh]")
{
    unsigned long codes[4] = {};
    std::vector<std::thread> threads;
    for (unsigned long& code : codes) {
        threads.emplace_back([&code] {
            try {
                divideByZero();
            } catch (const tarn::SEHError& error) {
                code = error.getCode();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const unsigned long code : codes)
        CHECK(code == EXCEPTION_INT_DIVIDE_BY_ZERO);
}

TEST_CASE("SEHError: faults that the system handles itself stay undisturbed", "[foundation][seh]")
{
    CHECK(IsBadReadPtr(reinterpret_cast<const void*>(16), 4));
    CHECK(lstrlenA(reinterpret_cast<const char*>(16)) == 0);
}

TEST_CASE("SEHError: the last error survives a fault", "[foundation][seh]")
{
    SetLastError(1234);
    try {
        touchNothing();
    } catch (const tarn::SEHError&) {
        CHECK(GetLastError() == 1234);
    }
}

TEST_CASE("setSETranslator: a thread's own translator gets the fault as it was", "[foundation][seh]")
{
    struct Fault {
        unsigned int code;
        ULONG_PTR address;
    };
    const tarn::SETranslator own = [](unsigned int code, EXCEPTION_POINTERS* info) {
        throw Fault{code, info->ExceptionRecord->ExceptionInformation[1]};
    };
    const tarn::SETranslator previous = tarn::setSETranslator(own);
    CHECK(previous == &tarn::SEHError::translate);
    int* volatile odd = reinterpret_cast<int*>(8);
    try {
        sink = *odd;
        FAIL("the read went through");
    } catch (const Fault& fault) {
        CHECK(fault.code == EXCEPTION_ACCESS_VIOLATION);
        CHECK(fault.address == 8);
    }
    CHECK(tarn::setSETranslator(previous) == own);
}
