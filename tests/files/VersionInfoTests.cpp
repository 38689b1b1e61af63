#include "Test.h"

#include <tarn/VersionInfo.h>

TEST_CASE("VersionInfo: file and product version with their parts, in copies too")
{
    const VersionInfo info("resources.dll");
    CHECK(info.FileVersion().major == 1);
    CHECK(info.FileVersion().minor == 2);
    CHECK(info.FileVersion().build == 3);
    CHECK(info.FileVersion().revision == 4);
    CHECK(info.FileVersion().value == 0x0003000400010002);
    CHECK(info.ProductVersion().major == 65535);

    VersionInfo copy(VersionInfo(L"resources.dll"));
    CHECK(copy.ProductVersion().build == 7);
    copy = VersionInfo("kernel32.dll");
    CHECK(copy.FileVersion().value != info.FileVersion().value);
    CHECK(&VersionInfo(copy).FileVersion() != &copy.FileVersion());
    copy = std::as_const(copy);
    CHECK(copy.FileVersion().value == VersionInfo("kernel32.dll").FileVersion().value);
}

TEST_CASE("VersionInfo: each step that fails has its text")
{
    expectWindowsError([] { VersionInfo("no-such.dll"); }, "Error in GetFileVersionInfoSizeA(no-such.dll,0)");
    expectWindowsError([] { VersionInfo(L"no-such.dll"); }, "Error in GetFileVersionInfoSizeW(no-such.dll,0)");
    // Cut in the name, cut in the value, a name without an end, and a value of another kind.
    for (const char* damaged : {"badversion.dll", "badversion2.dll", "badversion3.dll", "badversion4.dll"}) {
        CAPTURE(damaged);
        expectWindowsError([&] { VersionInfo info(damaged); }, "Error in VerQueryValueA");
    }
}
