#include "Test.h"

#include <tarn/SETranslator.h>

#include <thread>

namespace {
int* volatile nowhere = nullptr;
int* volatile odd = reinterpret_cast<int*>(8);
volatile int zero = 0;
volatile int sink = 0;

void touchNothing() { sink = *nowhere; }
void divideByZero() { sink = 7 / zero; }
void callAddress(ULONG_PTR address)
{
    void (*volatile function)() = reinterpret_cast<void (*)()>(address);
    function();
    sink = 0; // So that the call is not the jump that ends this function.
}

#ifdef __x86_64__
// What compilers may write: a jump through a pointer that is none, which ends its function when the stack is
// the caller's again; and an instruction whose bytes from the second on look like the end of a function.
asm(R"(
    .seh_proc jumpAtEnd
jumpAtEnd:
    pushq %rbx
    .seh_pushreg %rbx
    subq $32, %rsp
    .seh_stackalloc 32
    .seh_endprologue
    movl $8, %eax
    movl %eax, %ebx
    addq $32, %rsp
    popq %rbx
    .byte 0x48, 0xff, 0x20 # rex.W jmp *(%rax)
    .seh_endproc
    .seh_proc looksLikeAnEnd
looksLikeAnEnd:
    pushq %rbx
    .seh_pushreg %rbx
    subq $32, %rsp
    .seh_stackalloc 32
    .seh_endprologue
    xorl %ebx, %ebx
    .byte 0x8b, 0x5b, 0xc3 # movl -0x3d(%rbx), %ebx; without the first: popq %rbx; ret
    addq $32, %rsp
    popq %rbx
    ret
    .seh_endproc
)");
extern "C" void jumpAtEnd() asm("jumpAtEnd");
extern "C" void looksLikeAnEnd() asm("looksLikeAnEnd");
#endif

// The SEHError that a fault becomes, behind a frame whose destructor has to run.
SEHError errorOf(void (*fault)())
{
    void (*volatile hidden)() = fault; // Clang forgets destructors and handlers where it sees that no call throws.
    const auto alive = std::make_shared<int>();
    const auto error = thrownBy<SEHError>([&] {
        const std::shared_ptr<int> local = alive;
        hidden();
    });
    CHECK(alive.use_count() == 1);
    return error;
}

unsigned long codeOf(void (*fault)()) { return errorOf(fault).getCode(); }

struct Translator {
    explicit Translator(SETranslator own) : previous(setSETranslator(own)) {}
    Translator(const Translator&) = delete;
    Translator& operator=(const Translator&) = delete;
    ~Translator() { setSETranslator(previous); }
    const SETranslator previous;
};
} // namespace

TEST_CASE("SEHError: faults arrive as exceptions, destructors run, the last error stays")
{
    CHECK(codeOf(divideByZero) == EXCEPTION_INT_DIVIDE_BY_ZERO); // The compiler's first throw changes the last error.
    SetLastError(1234);
    CHECK(codeOf(touchNothing) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(GetLastError() == 1234);
    CHECK(codeOf([] { callAddress(0); }) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(codeOf([] { callAddress(~ULONG_PTR{0} / 3); }) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(codeOf([] { asm volatile("ud2"); }) == EXCEPTION_ILLEGAL_INSTRUCTION);
    // With the processor copying backwards, which nobody else expects.
    CHECK(codeOf([] { asm volatile("std\n\tud2"); }) == EXCEPTION_ILLEGAL_INSTRUCTION);
#ifdef __x86_64__
    CHECK(codeOf(jumpAtEnd) == EXCEPTION_ACCESS_VIOLATION);
    CHECK(codeOf(looksLikeAnEnd) == EXCEPTION_ACCESS_VIOLATION);
#endif
}

TEST_CASE("SEHError: the report names the fault and its place")
{
    const auto report = [](void (*fault)()) {
        const std::string text = errorOf(fault).getReport();
        const std::size_t end = text.find("test_foundation.exe+0x");
        REQUIRE(end != std::string::npos);
        const std::string offset = text.substr(end + std::strlen("test_foundation.exe+0x"));
        CHECK(std::stoul(offset, nullptr, 16) < 0x10'000'000);
        CHECK(offset.find_first_not_of("0123456789abcdef") == std::string::npos);
        return text.substr(0, end);
    };
    CHECK(report(touchNothing) == "Access violation reading 0x0 at ");
    CHECK(report([] { *odd = 1; }) == "Access violation writing 0x8 at ");
    CHECK(report([] { callAddress(16); }) == "Access violation executing 0x10 at ");
    CHECK(report(divideByZero) == "Integer division by zero at ");
    CHECK(report([] { asm volatile("ud2"); }) == "Illegal instruction at ");

    const SEHError copy = errorOf(divideByZero);
    CHECK(std::string(copy.what()) == "SEH exception");
    CHECK(whatW(copy).startsWith(L"Integer division by zero at test_foundation.exe+0x"));
    struct Derived : SEHError {
        using SEHError::SEHError;
        const char* what() const noexcept override { return ""; }
    };
    CHECK(Derived(EXCEPTION_ACCESS_VIOLATION).getReport() == "Access violation");
    const auto translated = thrownBy<SEHError>([] { SEHError::translate(0xC0001234, nullptr); });
    CHECK(translated.getReport() == "Exception 0xc0001234");

    // As the system tells of it, at an address without code.
    const auto told = [](DWORD code, DWORD count, ULONG_PTR access, ULONG_PTR target) {
        EXCEPTION_RECORD record{code, 0, nullptr, reinterpret_cast<void*>(0x10), count, {access, target}};
        CONTEXT context{};
        EXCEPTION_POINTERS pointers{&record, &context};
        const auto error = thrownBy<SEHError>([&] { SEHError::translate(code, &pointers); });
        SetLastError(1234);
        return error.getReport() + (GetLastError() == 1234 ? "" : ", which changes the last error");
    };
    CHECK(told(EXCEPTION_IN_PAGE_ERROR, 3, 1, 0x20) == "Page that can't be loaded writing 0x20 at 0x10");
    CHECK(told(EXCEPTION_ACCESS_VIOLATION, 2, 8, 0x20) == "Access violation executing 0x20 at 0x10");
    CHECK(told(EXCEPTION_ACCESS_VIOLATION, 2, 0, ~ULONG_PTR{0}) == "Access violation at 0x10");
    CHECK(told(EXCEPTION_ACCESS_VIOLATION, 1, 1, 0x20) == "Access violation at 0x10");
    CHECK(told(EXCEPTION_INT_OVERFLOW, 2, 1, 0x20) == "Integer overflow at 0x10");
}

#ifndef __clang__ // Which cannot.
TEST_CASE("SEHError: a try in the function that faults catches it, and nothing is left over")
{
    codeOf(touchNothing); // What the first throw needs stays.
    const std::size_t bytes = usedBytes();
    for (int i = 0; i < 100000; ++i) {
        try {
            *nowhere = i;
            FAIL("the write went through");
        } catch (const SEHError& error) {
            if (error.getCode() != EXCEPTION_ACCESS_VIOLATION)
                FAIL(error.getCode());
        }
    }
    CHECK(usedBytes() < bytes + 10000);
}
#endif

TEST_CASE("SEHError: faults that the system handles itself stay undisturbed")
{
    CHECK(IsBadReadPtr(reinterpret_cast<const void*>(16), 4));
    CHECK(lstrlenA(reinterpret_cast<const char*>(16)) == 0);
}

TEST_CASE("setSETranslator: a thread's own translator gets the fault as it was")
{
    struct Fault {
        unsigned int code;
        ULONG_PTR address;
    };
    const Translator own([](unsigned int code, EXCEPTION_POINTERS* info) {
        throw Fault{code, info->ExceptionRecord->ExceptionInformation[1]};
    });
    CHECK(own.previous == &SEHError::translate);
    void (*volatile readOdd)() = [] { sink = *odd; };
    try {
        readOdd();
        FAIL("the read went through");
    } catch (const Fault& fault) {
        CHECK(fault.code == EXCEPTION_ACCESS_VIOLATION);
        CHECK(fault.address == 8);
    }
    unsigned long elsewhere = 0;
    std::thread([&] { elsewhere = codeOf(divideByZero); }).join(); // Another thread has the library's.
    CHECK(elsewhere == EXCEPTION_INT_DIVIDE_BY_ZERO);
}

TEST_CASE("setSETranslator: one fault needs no memory, and a translator may fault itself")
{
    static int more;
    static bool keptInModule;
    const Translator own([](unsigned int code, EXCEPTION_POINTERS* info) {
        HMODULE module = nullptr;
        keptInModule =
            GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                               reinterpret_cast<const char*>(info->ContextRecord), &module);
        if (more-- > 0)
            CHECK(codeOf(touchNothing) == EXCEPTION_ACCESS_VIOLATION);
        SEHError::translate(code, info);
    });
    std::size_t bytes = 0;
    for (int i = 0; i < 2; ++i) {
        bytes = usedBytes();
        more = 40;
        CHECK(codeOf(divideByZero) == EXCEPTION_INT_DIVIDE_BY_ZERO);
    }
    CHECK(usedBytes() < bytes + 5000); // Less than what six faults take.
    for (int i = 0; i < 40; ++i)
        CHECK(codeOf(divideByZero) == EXCEPTION_INT_DIVIDE_BY_ZERO);
    CHECK(keptInModule);
}
