#include "Test.h"

#include <tarn/WindowsModule.h>

namespace {
bool isLoaded(const char* name) { return GetModuleHandleA(name) != nullptr; }
} // namespace

TEST_CASE("WindowsModule: what it loads is freed, what it queries is not")
{
    REQUIRE_FALSE(isLoaded("resources.dll"));
    {
        const WindowsModule loaded("resources.dll", true);
        CHECK(isLoaded("resources.dll"));
        WindowsModule queried(L"resources.dll", false);
        CHECK(queried.getHandle() == loaded.getHandle());
        queried.close();
        CHECK(isLoaded("resources.dll"));
        queried.load(L"resources.dll");
        queried.query("kernel32.dll");
        CHECK_FALSE(queried.isOwner());
    }
    CHECK_FALSE(isLoaded("resources.dll"));
}

TEST_CASE("WindowsModule: loads with flags, by a name that may lie in the module held before")
{
    const BasicString<wchar_t> name(L"resources.dll");
    WindowsModule module(name, LOAD_LIBRARY_AS_DATAFILE);
    CHECK(module.isOwner());
    module.load("resources.dll");
    char* const inside = reinterpret_cast<char*>(module.getHandle()) + 2; // In the header, behind its mark.
    DWORD protection = 0;
    REQUIRE(VirtualProtect(inside, 16, PAGE_READWRITE, &protection));
    std::strcpy(inside, "resources.dll");
    module.load(inside);
    CHECK(module.isOwner());
    module.query(static_cast<const char*>(nullptr));
    CHECK(module.getHandle() == GetModuleHandleA(nullptr));
}

TEMPLATE_TEST_CASE("WindowsModule: a missing module has the text of its call", "", char, wchar_t)
{
    const BasicString<TestType> name("no-such.dll", 11u);
    WindowsModule module("resources.dll", true);
    expectWindowsError([&] { module.load(name); }, ERROR_MOD_NOT_FOUND, "Can't load library \"no-such.dll\"");
    CHECK_FALSE(isLoaded("resources.dll")); // Freed first.
    expectWindowsError([&] { module.load(name, 0x2Aul); }, "Can't load library \"no-such.dll\" with flags 0x2a");
    expectWindowsError([&] { module.query(name); }, ERROR_MOD_NOT_FOUND, "Can't get module handle for \"no-such.dll\"");
    CHECK_FALSE(module.getHandle());
    CHECK_FALSE(module.isOwner());
    expectWindowsError([&] { WindowsModule(name, true); }, ERROR_MOD_NOT_FOUND, "Can't load library \"no-such.dll\"");
}

TEST_CASE("WindowsModule: a failing free throws, out of the destructor too")
{
    const auto freeTwice = [] {
        const WindowsModule module("resources.dll", true);
        FreeLibrary(module.getHandle());
    };
    expectWindowsError(freeTwice, "Can't free library");
}

TEST_CASE("WindowsModule: procedures may be missing only when said so, file names come in both widths")
{
    WindowsModule kernel("kernel32.dll", false);
    kernel.disableThreadCalls();
    CHECK(kernel.getProcAddress("GetLastError", false));
    CHECK(kernel.getProcAddress("NoSuchFunction", true) == nullptr);
    expectWindowsError([&] { kernel.getProcAddress("NoSuchFunction", false); }, ERROR_PROC_NOT_FOUND,
                       "Can't get proc address for \"NoSuchFunction\"");
    expectWindowsError([&] { kernel.getProcAddress(MAKEINTRESOURCEA(60000), false); },
                       "Can't get proc address for \"60000\"");

    CHECK(kernel.getFilenameA().toLower().endsWith("\\kernel32.dll"));
    CHECK(kernel.getFilenameW() == a2w(kernel.getFilenameA(), CP_ACP));
    WindowsModule nothing(reinterpret_cast<HINSTANCE>(0x10000));
    expectWindowsError([&] { nothing.disableThreadCalls(); }, "Can't disable thread calls for library");
    expectWindowsError([&] { nothing.getFilenameA(); }, "Error in retrieving module file name");
}

TEST_CASE("WindowsModule: resources are looked for as BINARY whatever type is named")
{
    const WindowsModule module("resources.dll", true);
    const HRSRC resource = module.findResource("OTHER", 7);
    REQUIRE(module.getResourceSize(resource) == 7);
    CHECK(std::memcmp(module.getResourcePointer(resource), "payload", 7) == 0);
    expectWindowsError([&] { module.findResource("OTHER", 8); }, "Unable to find resource with type OTHER and id 8");
    expectWindowsError([&] { module.findResource(MAKEINTRESOURCEA(10), 8); },
                       "Unable to find resource with type 10 and id 8");
    for (const int id : {65536 + 7, 7 - 65536})
        expectWindowsError([&] { module.findResource("OTHER", id); }, ERROR_INVALID_PARAMETER,
                           "Unable to find resource with type OTHER and id " + std::to_string(id));
}

TEST_CASE("WindowsModule: message texts keep their inserts and their line break")
{
    const WindowsModule messages("messages\\netmsg.dll", true);
    CHECK(messages.getMessageA(2221, 0) == "The user name %1 could not be found.\r\n");
    CHECK(messages.getMessageW(2100, 0x409) == L"The first message of the range.\r\n");
    expectWindowsError([&] { messages.getMessageA(0xABC, 0x409); }, "Can't format message id abc with languag 409");
}
