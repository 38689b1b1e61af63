#include "Test.h"

#include <tarn/WindowsModule.h>

#include <foundation/SystemLibrary.h>

TEST_CASE("loadSystemLibrary: finds the system's own libraries, and not what lies beside the program")
{
    CHECK(loadSystemLibrary(L"version.dll"));
    CHECK(!loadSystemLibrary(L"resources.dll"));
    CHECK_NOTHROW(WindowsModule(L"resources.dll", true));
}
