#include <catch2/catch.hpp>

#include "Expect.h"

#include <tarn/LocalMemory.h>
#include <tarn/VersionInfo.h>
#include <tarn/WindowsModule.h>

#include <cstring>

using support::expectWindowsError;
using tarn::LocalMemory;
using tarn::VersionInfo;
using tarn::WindowsModule;

namespace {
bool isLoaded(const char* name) { return GetModuleHandleA(name) != nullptr; }
} // namespace

TEST_CASE("WindowsModule: what it loads is freed, what it queries is not", "[files][module]")
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

TEST_CASE("WindowsModule: loads with flags, by a name that may lie in the module held before", "[files][module]")
{
    const tarn::BasicString<wchar_t> name(L"resources.dll");
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

TEMPLATE_TEST_CASE("WindowsModule: a missing module has the text of its call", "[files][module]", char, wchar_t)
{
    const tarn::BasicString<TestType> name("no-such.dll", 11u);
    WindowsModule module("resources.dll", true);
    expectWindowsError([&] { module.load(name); }, ERROR_MOD_NOT_FOUND, "Can't load library \"no-such.dll\"");
    CHECK_FALSE(isLoaded("resources.dll")); // Freed first.
    expectWindowsError([&] { module.load(name, 0x2Aul); }, "Can't load library \"no-such.dll\" with flags 0x2a");
    expectWindowsError([&] { module.query(name); }, ERROR_MOD_NOT_FOUND, "Can't get module handle for \"no-such.dll\"");
    CHECK_FALSE(module.getHandle());
    CHECK_FALSE(module.isOwner());
    expectWindowsError([&] { WindowsModule(name, true); }, ERROR_MOD_NOT_FOUND, "Can't load library \"no-such.dll\"");
}

TEST_CASE("WindowsModule: a failing free throws, out of the destructor too", "[files][module]")
{
    const auto freeTwice = [] {
        const WindowsModule module("resources.dll", true);
        FreeLibrary(module.getHandle());
    };
    expectWindowsError(freeTwice, "Can't free library");
}

TEST_CASE("WindowsModule: procedures may be missing only when said so, file names come in both widths",
          "[files][module]")
{
    const WindowsModule kernel("kernel32.dll", false);
    CHECK(kernel.getProcAddress("GetLastError", false));
    CHECK(kernel.getProcAddress("NoSuchFunction", true) == nullptr);
    expectWindowsError([&] { kernel.getProcAddress("NoSuchFunction", false); }, ERROR_PROC_NOT_FOUND,
                       "Can't get proc address for \"NoSuchFunction\"");
    expectWindowsError([&] { kernel.getProcAddress(MAKEINTRESOURCEA(60000), false); },
                       "Can't get proc address for \"60000\"");

    CHECK(kernel.getFilenameA().toLower().endsWith("\\kernel32.dll"));
    CHECK(kernel.getFilenameW() == tarn::a2w(kernel.getFilenameA(), CP_ACP));
    const WindowsModule nothing(reinterpret_cast<HINSTANCE>(0x10000));
    expectWindowsError([&] { nothing.getFilenameA(); }, "Error in retrieving module file name");
}

TEST_CASE("WindowsModule: resources are looked for as BINARY whatever type is named", "[files][module]")
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

TEST_CASE("WindowsModule: message texts keep their inserts and their line break", "[files][module]")
{
    const WindowsModule messages("messages\\netmsg.dll", true);
    CHECK(messages.getMessageA(2221, 0) == "The user name %1 could not be found.\r\n");
    CHECK(messages.getMessageW(2100, 0x409) == L"The first message of the range.\r\n");
    expectWindowsError([&] { messages.getMessageA(0xABC, 0x409); }, "Can't format message id abc with languag 409");
}

TEST_CASE("VersionInfo: file and product version with their parts, in copies too", "[files][version]")
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
}

TEST_CASE("VersionInfo: each step that fails has its text", "[files][version]")
{
    expectWindowsError([] { VersionInfo("no-such.dll"); }, "Error in GetFileVersionInfoSizeA(no-such.dll,0)");
    expectWindowsError([] { VersionInfo(L"no-such.dll"); }, "Error in GetFileVersionInfoSizeW(no-such.dll,0)");
    // Cut in the name, cut in the value, a name without an end, and a value of another kind.
    for (const char* damaged : {"badversion.dll", "badversion2.dll", "badversion3.dll", "badversion4.dll"}) {
        CAPTURE(damaged);
        expectWindowsError([&] { VersionInfo info(damaged); }, "Error in VerQueryValueA");
    }
}

TEST_CASE("LocalMemory: movable memory is unlocked as often as it was locked, fixed memory never", "[files][memory]")
{
    const HLOCAL block = LocalAlloc(LMEM_MOVEABLE, 16), fixedBlock = LocalAlloc(LMEM_FIXED, 16);
    {
        LocalMemory memory(block, true), fixed(fixedBlock, false);
        CHECK(memory.lock() == memory.lock());
        CHECK(memory.getFlags().lockCount() == 2);
        CHECK(memory.unlock());
        CHECK(memory.lock());

        CHECK(fixed.isFixed());
        CHECK(fixed.lock() == fixedBlock);
        CHECK_FALSE(fixed.unlock());
        fixed.free();
        fixed.free();
    }
    CHECK(LocalFlags(block) == LMEM_INVALID_HANDLE);
}

TEST_CASE("LocalMemory: a block that came here locked stays movable, and freed it is fixed", "[files][memory]")
{
    const HLOCAL block = LocalAlloc(LMEM_MOVEABLE, 16);
    void* const address = LocalLock(block);
    LocalMemory memory(block, true);
    CHECK_FALSE(memory.unlock());
    CHECK(memory.isMovable());
    CHECK(memory.lock() == address);
    {
        const LocalMemory::Access access(memory);
        CHECK(access.data() == memory.lock());
        memory.unlock();
        CHECK(memory.getFlags().lockCount() == 2);
    }
    CHECK(memory.getFlags().lockCount() == 1);
    memory.free();
    CHECK(memory.isFixed());
    CHECK(memory.lock() == nullptr);
}

TEST_CASE("LocalMemory: each failing call has its text", "[files][memory]")
{
    LocalMemory unlocked(LocalAlloc(LMEM_MOVEABLE, 16), true);
    expectWindowsError([&] { unlocked.unlock(); }, "Can't unlock local memory handle");
    LocalMemory discarded(LocalDiscard(LocalAlloc(LMEM_MOVEABLE | LMEM_DISCARDABLE, 16)), true);
    expectWindowsError([&] { discarded.lock(); }, "Can't lock local memory handle");

    const HLOCAL gone = LocalAlloc(LMEM_MOVEABLE, 16);
    LocalFree(gone);
    auto* memory = new (operator new(sizeof(LocalMemory))) LocalMemory(gone, true);
    expectWindowsError([&] { memory->free(); }, ERROR_INVALID_HANDLE, "Can't free local memory handle");
    expectWindowsError([&] { memory->getFlags(); }, ERROR_INVALID_HANDLE, "Can't query flags for local memory handle");
    operator delete(memory);
}
