#include <catch2/catch.hpp>

#include "Expect.h"

#include <foundation/NumericCast.h>
#include <tarn/Array.h>
#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <cstring>

using support::systemText;
using tarn::WindowsError;

namespace {
constexpr unsigned long outOfMemory = 0x8007000E;
constexpr long asResult(unsigned long hr) { return static_cast<long>(hr); }

template <class T> void allocateAll()
{
    const tarn::Array<T> all(~0u);
    asm volatile("" : : "g"(all.data()) : "memory"); // Unused memory need not be allocated at all.
}

// Looks for DLLs in a folder beside the program, for the length of a scope.
class DllFolder {
public:
    explicit DllFolder(const char* name)
    {
        char path[MAX_PATH];
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        *(std::strrchr(path, '\\') + 1) = 0;
        SetDllDirectoryA((std::string(path) + name).c_str());
    }
    ~DllFolder() { SetDllDirectoryA(nullptr); }
};
} // namespace

TEST_CASE("Exception: the description is what it says", "[foundation][exception]")
{
    tarn::Exception error;
    CHECK(std::string(error.what()) == "Unknown Exception");
    error.setDescription("x");
    const tarn::Exception copy(error);
    CHECK(std::string(copy.what()) == "x");
    CHECK(std::string(tarn::EndOfFile("end\n").what()) == "end\n");
    CHECK(std::string(tarn::SEHError(0xC0000005).what()) == "SEH exception");
    CHECK_FALSE(std::is_base_of_v<tarn::Exception, tarn::EndOfFile>);
}

TEST_CASE("CRTError: the text is the description and strerror's", "[foundation][exception]")
{
    const std::string text = std::string(": ") + std::strerror(ENOENT);
    const tarn::CRTError error(ENOENT, "open");
    CHECK(error.what() == "open" + text);
    CHECK(error.getError() == ENOENT);
    CHECK(error == ENOENT);
    CHECK(tarn::CRTError("open", ENOENT).what() == "open" + text);
    CHECK(tarn::CRTError(ENOENT, "").what() == text); // The separator stays, unlike a WindowsError's.
}

TEST_CASE("CommonDialogError: codes have the names of the platform's header", "[foundation][exception]")
{
    using tarn::CommonDialogError;
    CHECK(std::string(CommonDialogError("Open", 0x3003).what()) == "Open: FNERR_BUFFERTOOSMALL");
    CHECK(std::string(CommonDialogError(0xFFFF, "").what()) == ": CDERR_DIALOGFAILURE");
    CHECK(CommonDialogError(5, "x").getError() == 5);
    CHECK(CommonDialogError::errorToString(0) == "CDERR_GENERALCODES");
    CHECK(CommonDialogError::errorToString(0x100C) == "PDERR_DEFAULTDIFFERENT");
    CHECK(CommonDialogError::errorToString(0x2003) == "Unknown common didlaog error 8195");
    CHECK(CommonDialogError::errorToString(0xFFFFFFFF) == "Unknown common didlaog error 4294967295");
}

TEST_CASE("WindowsError: the text is the description and the system's", "[foundation][exception]")
{
    const WindowsError denied(5, "Can't open");
    CHECK(denied.what() == "Can't open: " + systemText(5));
    CHECK(denied.getMessage() == systemText(5));
    CHECK(std::string(denied.getDescription()) == "Can't open");
    CHECK(denied.getError() == 5);
    CHECK(WindowsError(5).what() == systemText(5));
    CHECK(std::string(WindowsError(5).getDescription()).empty());

    SECTION("a code without a text is shown in hexadecimal")
    {
        CHECK(std::string(WindowsError(0x2FFFFFFF, "d").what()) == "d: Windows error 0x2fffffff");
        CHECK(std::string(WindowsError(0xABCDE).what()) == "Windows error 0xabcde");
    }
    SECTION("a text that wants inserts counts as none")
    {
        CHECK(WindowsError(ERROR_BAD_EXE_FORMAT).getMessage() == "Windows error 0xc1");
    }
    SECTION("the last error is read at construction")
    {
        SetLastError(ERROR_FILE_NOT_FOUND);
        const WindowsError error("d");
        SetLastError(ERROR_SUCCESS);
        CHECK(error.getError() == ERROR_FILE_NOT_FOUND);
        SetLastError(ERROR_ACCESS_DENIED);
        CHECK(WindowsError().getError() == ERROR_ACCESS_DENIED);
    }
    SECTION("the text is composed once and travels with copies")
    {
        struct Counting : WindowsError {
            using WindowsError::WindowsError;
            std::string getMessage() const override { return "asked " + std::to_string(++*count); }
            int* count = nullptr;
        };
        int count = 0;
        Counting error(1, "d");
        error.count = &count;
        CHECK(std::string(error.what()) == "d: asked 1");
        CHECK(std::string(error.what()) == "d: asked 1");
        const WindowsError copy(error);
        CHECK(std::string(copy.what()) == "d: asked 1");
        WindowsError assigned(2);
        assigned = error;
        CHECK(std::string(assigned.what()) == "d: asked 1");
    }
    SECTION("an empty text leaves the description")
    {
        struct Silent : WindowsError {
            using WindowsError::WindowsError;
            std::string getMessage() const override { return ""; }
        };
        CHECK(std::string(Silent(1, "d").what()) == "d: ");
        CHECK(std::string(Silent(1).what()).empty());
    }
}

TEST_CASE("WindowsError: network codes take their text from netmsg.dll", "[foundation][exception]")
{
    const bool installed = [] {
        const HMODULE module = LoadLibraryExA("netmsg.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
        return module && FreeLibrary(module);
    }();
    if (!installed) { // As under Wine; Windows has its own, whose texts depend on its language.
        CHECK(WindowsError(2221, "d").what() == std::string("d: Windows error 0x8ad"));

        const DllFolder folder("messages");
        CHECK(WindowsError(2100).getMessage() == "The first message of the range.\r\n");
        CHECK(WindowsError(2221, "d").what() == std::string("d: The user name %1 could not be found.\r\n"));
        CHECK(WindowsError(2999).getMessage() == "The last message of the range.\r\n");
        CHECK(WindowsError(2222).getMessage() == "Windows error 0x8ae");
    }
    CHECK_FALSE(GetModuleHandleA("netmsg.dll"));
    const auto expected = [](unsigned long code) {
        return systemText(code).empty() ? WindowsError(code).getMessage() : systemText(code);
    };
    CHECK(WindowsError(2099).getMessage() == expected(2099));
    CHECK(WindowsError(3000).getMessage() == expected(3000));
}

TEST_CASE("HRESULT: errors map to results and back", "[foundation][exception]")
{
    CHECK(WindowsError(5).getHRESULT() == asResult(0x80070005));
    CHECK(WindowsError(0).getHRESULT() == 0);
    CHECK(WindowsError(0x80004005).getHRESULT() == asResult(0x80004005));
    CHECK(WindowsError(0x12345).getHRESULT() == asResult(0x80072345));

    using tarn::HRESULTHolder;
    CHECK_NOTHROW(HRESULTHolder::throwOnError(S_OK));
    CHECK_NOTHROW(HRESULTHolder::throwOnError(S_FALSE));
    support::expectError<tarn::BadAllocation>([] { HRESULTHolder::throwOnError(E_OUTOFMEMORY); }, "bad allocation");
    support::expectWindowsError([] { HRESULTHolder::throwOnError(asResult(0x80070002), "x"); }, 2, "x");
    const auto error = support::thrownBy<tarn::COMError>([] { HRESULTHolder::throwOnError(E_NOTIMPL, "x"); });
    CHECK(std::string(error.what()).substr(0, 3) == "x: ");
    CHECK(error.getHRESULT() == E_NOTIMPL);

    const auto resultOf = [](const std::exception& e) { return HRESULTHolder::getHRESULTFromException(e); };
    CHECK(resultOf(tarn::CRTError(2, "x")) == E_FAIL);
    CHECK(resultOf(std::bad_alloc()) == asResult(outOfMemory));
    CHECK(resultOf(tarn::COMError(0x80030002)) == asResult(0x80030002));
    CHECK(resultOf(WindowsError(5)) == asResult(0x80070005));

    int object = 0;
    CHECK_NOTHROW(tarn::COMError::checkPointer(&object));
    CHECK(support::thrownBy<tarn::COMError>([] { tarn::COMError::checkPointer(nullptr); }).getHRESULT() == E_POINTER);
}

TEST_CASE("COMError: the separator stays with an empty description", "[foundation][exception]")
{
    const std::string name = tarn::COMError(0x8000FFFF).what();
    CHECK_FALSE(name.empty());
    CHECK(tarn::COMError(0x8000FFFF, "").what() == ": " + name);
}

TEST_CASE("numericCast: a value out of range throws the promised text", "[foundation][exception]")
{
    CHECK(tarn::numericCast<unsigned short>(65535) == 65535);
    support::expectError<tarn::LossOfRange>([] { tarn::numericCast<unsigned short>(65536); },
                                            "bad numeric cast: loss of range in numeric_cast");
    CHECK_THROWS_AS(tarn::numericCast<unsigned short>(-1), boost::numeric::bad_numeric_cast);
    CHECK_THROWS_AS(tarn::numericCast<int>(3000000000u), std::bad_cast);
}

TEST_CASE("Array: owns a deep copy and reports exhausted memory", "[foundation][exception]")
{
    tarn::Array<char> a(3);
    a[2] = 'x';
    tarn::Array<char> b(a);
    b[2] = 'y';
    CHECK(a[2] == 'x');
    a = b;
    CHECK(a[2] == 'y');
    a.clear();
    CHECK(a.data() == nullptr);
    CHECK(a.size() == 0);
    support::expectError<tarn::BadAllocation>([] { allocateAll<char>(); }, "bad allocation");
    support::expectError<tarn::BadAllocation>([] { allocateAll<long long>(); }, "bad allocation");
}
