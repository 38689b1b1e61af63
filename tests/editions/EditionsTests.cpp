#include "Test.h"

#include "../com/Hearing.h"
#include "Sample.h"
#include "ScratchFolder.h"

#include <tarn/COMApartment.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/RegistryKey.h>

// This program against one of the other edition. Where that was not built along, it is one of this edition.

namespace {

std::string program(const std::string& name, const std::string& arguments)
{
    return std::string(OTHER_BIN) + "/" + name + ".exe " + arguments;
}

unsigned long run(const std::string& commandLine)
{
    const Process process(commandLine.c_str(), 0);
    REQUIRE(process.wait(30000) == WindowsHandle::signaled);
    return process.getExitCode();
}

const char* const subkey = "Software\\TarnEditionsTest";

unsigned long registeredIn(HKEY root, unsigned long view)
{
    return RegistryKey(root, subkey, KEY_READ | view).getDWordValue("pointer");
}
} // namespace

TEST_CASE("Editions: what one writes to streams and archives the other reads")
{
    const ScratchFolder folder;
    const std::string ours = folder.file("ours"), theirs = folder.file("theirs");
    writeSample(ours.c_str());
    CHECK(run(program("editions_peer", "read " + ours)) == 0);
    CHECK(run(program("editions_peer", "write " + theirs)) == 0);
    CHECK(isSample(theirs.c_str()));
    CHECK(folder.read("ours").size() == folder.read("theirs").size());
}

TEST_CASE("Editions: a process of the other talks through pipes")
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Pipe input(0, &inheritable), output(0, &inheritable);
    input.keepWriteEnd();
    output.keepReadEnd();
    Process process;
    process.create(program("editions_peer", "double").c_str(), input.getReadEnd(), output.getWriteEnd(),
                   GetStdHandle(STD_ERROR_HANDLE), 0);
    output.getWriteEnd().close();
    input.getWriteEnd() << (1LL << 40) << 0.25 << L"wide";
    long long number = 0;
    double fraction = 0;
    std::wstring text;
    output.getReadEnd() >> number >> fraction >> text;
    CHECK(number == 2LL << 40);
    CHECK(fraction == 0.5);
    CHECK(text == L"widewide");
}

TEST_CASE("Editions: the machine's software has a view for each, the user's is one")
{
    REQUIRE(run(program("editions_peer", std::string("register ") + subkey)) == 0);
    const unsigned long view = OTHER_BITS == 32 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
    CHECK(registeredIn(HKEY_LOCAL_MACHINE, view) == OTHER_BITS / 8);
    CHECK(registeredIn(HKEY_CURRENT_USER, 0) == OTHER_BITS / 8);
    CHECK(RegistryKey::existsKey(HKEY_LOCAL_MACHINE, subkey) == (OTHER_BITS == 8 * sizeof(void*)));
    RegistryKey(HKEY_CURRENT_USER, "Software", KEY_ALL_ACCESS).deleteKeyRecursive("TarnEditionsTest");
    CHECK(RegDeleteKeyExA(HKEY_LOCAL_MACHINE, subkey, view, 0) == ERROR_SUCCESS);
}

TEST_CASE("Editions: a local COM server of the other serves, and tells of errors")
{
    const COMApartment com(GENERATE(COMApartment::singleThreaded, COMApartment::multiThreaded));
    const WindowsHandle ended(CreateEventW(nullptr, TRUE, FALSE, serverEndedEvent));
    REQUIRE(run(program("com_test_local", "-register")) == 0);
    {
        const auto object = COMInterfacePointer<IPersist>::create(CLSID_Persistent, CLSCTX_LOCAL_SERVER);
        CLSID clsid = {};
        CHECK(object->GetClassID(&clsid) == S_OK);
        CHECK(clsid == CLSID_Persistent);
        checkErrorsOf(object.require<IDispatch>());
    }
    CHECK(ended.wait(20000) == WindowsHandle::signaled);
    CHECK(run(program("com_test_local", "-unregister")) == 0);
}
