#include "Test.h"

#include <foundation/NumericCast.h>
#include <tarn/Array.h>
#include <tarn/StdIOStream.h>
#include <tarn/WindowsFile.h>
#include <tarn/WindowsModule.h>

#include <array>

namespace {
constexpr long asResult(unsigned long hr) { return static_cast<long>(hr); }

std::string what(const std::exception& error) { return error.what(); }

template <class T> void allocateAll()
{
    const Array<T> all(~0u);
    asm volatile("" : : "g"(all.data()) : "memory"); // Unused memory need not be allocated at all.
}
} // namespace

TEST_CASE("Exceptions: the texts of those that ask nobody for them")
{
    Exception error;
    CHECK(what(error) == "Unknown Exception");
    error.setDescription("x");
    CHECK(what(error) == "x");
    CHECK(what(SEHError(0xC0000005)) == "SEH exception");
    CHECK_FALSE(std::is_base_of_v<Exception, EndOfFile>);

    const std::string text = std::string(": ") + std::strerror(ENOENT);
    CHECK(what(CRTError(ENOENT, "open")) == "open" + text);
    CHECK(what(CRTError("open", ENOENT)) == "open" + text);
    CHECK(what(CRTError(ENOENT, "")) == text); // The separator stays, unlike a WindowsError's.
    const std::string name = what(COMError(0x8000FFFF));
    CHECK_FALSE(name.empty());
    CHECK(what(COMError(0x8000FFFF, "")) == ": " + name);

    CHECK(what(CommonDialogError("Open", 0x3003)) == "Open: FNERR_BUFFERTOOSMALL");
    CHECK(what(CommonDialogError(0xFFFF, "")) == ": CDERR_DIALOGFAILURE");
    CHECK(CommonDialogError::errorToString(0) == "CDERR_GENERALCODES");
    CHECK(CommonDialogError::errorToString(0xFFFFFFFF) == "Unknown common didlaog error 4294967295");
}

TEST_CASE("WindowsError: the text is the description and the system's")
{
    const WindowsError denied(5, "Can't open");
    CHECK(what(denied) == "Can't open: " + systemText(5));
    CHECK(denied.getMessage() == systemText(5));
    CHECK(what(WindowsError(5)) == systemText(5));

    SECTION("a code without a text, or whose text wants inserts, is shown in hexadecimal")
    {
        CHECK(what(WindowsError(0x2FFFFFFF, "d")) == "d: Windows error 0x2fffffff");
        CHECK(what(WindowsError(ERROR_BAD_EXE_FORMAT)) == "Windows error 0xc1");
    }
    SECTION("asking for the text leaves the thread's last error alone")
    {
        SetLastError(ERROR_NOT_READY);
        CHECK(what(WindowsError(0x2FFFFFFF)) == "Windows error 0x2fffffff");
        CHECK((what(WindowsError(2221)).size() > 0 && WindowsError(2221).whatW().size() > 0));
        CHECK(GetLastError() == ERROR_NOT_READY);
    }
    SECTION("the last error is read at construction")
    {
        SetLastError(ERROR_FILE_NOT_FOUND);
        const WindowsError error("d");
        SetLastError(ERROR_ACCESS_DENIED);
        CHECK(error.getError() == ERROR_FILE_NOT_FOUND);
        CHECK(WindowsError().getError() == ERROR_ACCESS_DENIED);
    }
    SECTION("the text is composed once and travels with copies, and an empty one leaves the description")
    {
        struct Own : WindowsError {
            using WindowsError::WindowsError;
            std::string getMessage() const override { return std::exchange(message, "asked again"); }
            mutable std::string message;
        };
        Own error(1, "d");
        error.message = "asked";
        CHECK(what(error) == "d: asked");
        WindowsError assigned(2);
        assigned = error;
        CHECK(what(WindowsError(error)) == "d: asked");
        CHECK(what(assigned) == "d: asked");
        CHECK(what(Own(1, "d")) == "d: ");
        CHECK(what(Own(1)).empty());
    }
}

TEST_CASE("Errors: whatW keeps what the code page cannot hold")
{
    const std::wstring name = L"\x4E2D\x6587.txt";
    const std::wstring reason = a2w(": " + systemText(ERROR_FILE_NOT_FOUND), CP_ACP);
    const auto file = thrownBy<WindowsError>([&] { WindowsFile::getAttributes(name.c_str()); });
    CHECK(what(file) ==
          "Can't get file attributes for \"" + BasicString<char>(name) + "\": " + systemText(ERROR_FILE_NOT_FOUND));
    const std::wstring whole = L"Can't get file attributes for \"" + name + L"\"" + reason;
    const WindowsError copy(file); // Of an error whose text has been asked for.
    CHECK(copy.whatW() == whole);
    CHECK(what(copy) == what(file));
    CHECK(whatW(thrownBy<WindowsError>([&] { WindowsFile::getAttributes(name.c_str()); })) == whole);

    const auto stdio = thrownBy<CRTError>([&] { StdIOStream(name.c_str(), L"r"); });
    CHECK(whatW(stdio).contains(name));
    CHECK(whatW(stdio).endsWith(L": No such file or directory"));
    CHECK(what(stdio).ends_with(": No such file or directory"));

    SECTION("narrow texts are read in the code page")
    {
        CHECK(whatW(WindowsError(2, "Gr\xFC\xDF")) == L"Gr\xFC\xDF" + reason);
        CHECK(WindowsError(2).whatW() == reason.substr(2));
        CHECK(whatW(CRTError("x", ENOENT)).startsWith(L"x: "));
        struct Derived : CRTError {
            using CRTError::CRTError;
            const char* what() const noexcept override { return "own"; }
        };
        CHECK(whatW(Derived("x", ENOENT)) == L"own");
        CHECK(whatW(Exception("\xFC")) == L"\xFC");
        CHECK(whatW(std::out_of_range("\xFC")) == L"\xFC");
    }
}

TEST_CASE("WindowsError: network codes take their text from netmsg.dll")
{
    const bool installed = [] {
        const HMODULE module = LoadLibraryExA("netmsg.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
        return module && FreeLibrary(module);
    }();
    if (!installed) { // As under Wine; Windows has its own, whose texts depend on its language.
        CHECK(what(WindowsError(2221, "d")) == "d: Windows error 0x8ad");

        const WindowsModule sameName("messages\\netmsg.dll", true); // Is taken in its place.
        CHECK(WindowsError(2100).getMessage() == "The first message of the range.\r\n");
        CHECK(what(WindowsError(2221, "d")) == "d: The user name %1 could not be found.\r\n");
        CHECK(WindowsError(2999).getMessage() == "The last message of the range.\r\n");
        CHECK(WindowsError(2222).getMessage() == "Windows error 0x8ae");
        for (const unsigned long code : {2099, 3000}) // No network's, although the module has texts.
            CHECK(WindowsError(code).getMessage().starts_with("Windows error 0x"));
    }
    CHECK_FALSE(GetModuleHandleA("netmsg.dll"));
}

TEST_CASE("HRESULT: errors map to results and back")
{
    const unsigned long rows[][2] = {{5, 0x80070005}, {0, 0}, {0x80004005, 0x80004005}, {0x12345, 0x80072345}};
    for (const auto& [code, result] : rows)
        CHECK(WindowsError(code).getHRESULT() == asResult(result));

    CHECK_NOTHROW(HRESULTHolder::throwOnError(S_FALSE));
    expectError<BadAllocation>([] { HRESULTHolder::throwOnError(E_OUTOFMEMORY); }, "bad allocation");
    expectWindowsError([] { HRESULTHolder::throwOnError(asResult(0x80070002), "x"); }, 2, "x");
    const auto error = thrownBy<COMError>([] { HRESULTHolder::throwOnError(E_NOTIMPL, "x"); });
    CHECK(what(error).starts_with("x: "));
    CHECK(error.getHRESULT() == E_NOTIMPL);
    CHECK(thrownBy<COMError>([] { COMError::checkPointer(nullptr); }).getHRESULT() == E_POINTER);

    const auto resultOf = [](const std::exception& e) { return HRESULTHolder::getHRESULTFromException(e); };
    CHECK(resultOf(CRTError(2, "x")) == E_FAIL);
    CHECK(resultOf(std::bad_alloc()) == E_OUTOFMEMORY);
    CHECK(resultOf(COMError(0x80030002)) == asResult(0x80030002));
    CHECK(resultOf(WindowsError(5)) == asResult(0x80070005));
    CHECK(resultOf(WindowsError(ERROR_SUCCESS)) == E_FAIL); // An error is never reported as success.
    CHECK(resultOf(COMError(S_FALSE)) == E_FAIL);
}

TEST_CASE("numericCast: a value out of range throws the promised text")
{
    CHECK(numericCast<unsigned short>(65535) == 65535);
    expectError<LossOfRange>([] { numericCast<unsigned short>(65536); },
                             "bad numeric cast: loss of range in numeric_cast");
    CHECK_THROWS_AS(numericCast<unsigned short>(-1), boost::numeric::bad_numeric_cast);
}

TEST_CASE("Array: owns a deep copy and reports exhausted memory")
{
    Array<char> a(3);
    a[2] = 'x';
    Array<char> b(a);
    b[2] = 'y';
    CHECK(a[2] == 'x');
    a = b;
    CHECK(a[2] == 'y');
    struct Numbered {
        int number = 7; // So that the heap cannot be asked to grow it.
    };
    Array<Numbered> c(1);
    a.resize(5);
    c.resize(3);
    CHECK((a[2] == 'y' && a.size() == 5 && c.size() == 3 && c[2].number == 7));
    if constexpr (sizeof(void*) == 4)
        expectError<BadAllocation>([&] { a.resize(~0u); }, "bad allocation");
    CHECK((a[2] == 'y' && a.size() == 5));
    a.resize(0);
    c.resize(1);
    CHECK((a.empty() && !a.data() && c.size() == 1));
    expectError<BadAllocation>([] { allocateAll<std::array<char, 0x10000>>(); }, "bad allocation");
    if constexpr (sizeof(void*) == 4) // In 64 bits there is room for four gigabytes.
        expectError<BadAllocation>([] { allocateAll<char>(); }, "bad allocation");
}
