#include <catch2/catch.hpp>

#include "Expect.h"

#include <tarn/Exception.h>
#include <tarn/SETranslator.h>
#include <tarn/Windows.h>

#include <memory>
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

// The code of the SEHError that a fault becomes, behind a frame whose destructor has to run.
unsigned long codeOf(void (*fault)())
{
    const auto alive = std::make_shared<int>();
    const auto error = support::thrownBy<tarn::SEHError>([&] {
        const std::shared_ptr<int> local = alive;
        fault();
    });
    CHECK(alive.use_count() == 1);
    return error.getCode();
}
} // namespace

TEST_CASE("SEHError: faults arrive as exceptions, destructors run, the last error stays", "[foundation][seh]")
{
    SetLastError(1234);
    CHECK(codeOf(touchNothing) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(GetLastError() == 1234);
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

TEST_CASE("SEHError: faults that the system handles itself stay undisturbed", "[foundation][seh]")
{
    CHECK(IsBadReadPtr(reinterpret_cast<const void*>(16), 4));
    CHECK(lstrlenA(reinterpret_cast<const char*>(16)) == 0);
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
    unsigned long elsewhere = 0;
    std::thread([&] { elsewhere = codeOf(divideByZero); }).join(); // Another thread has the library's.
    CHECK(elsewhere == EXCEPTION_INT_DIVIDE_BY_ZERO);
    CHECK(tarn::setSETranslator(previous) == own);
}
