#include "Test.h"

#include <tarn/RegistryWatch.h>

#include "ScratchKey.h"

TEST_CASE("RegistryWatch: changes of the key, and below it if asked, are told once each")
{
    const ScratchKey scratch;
    scratch.makeKey(L"below");
    const RegistryKey key(scratch, false);
    RegistryWatch all(key), own(key, false);
    CHECK_FALSE(all.waitForChange(0));
    scratch.storeText(L"below", L"name", L"value");
    CHECK(all.waitForChange(20'000));
    CHECK_FALSE(own.waitForChange(0));
    CHECK_FALSE(all.waitForChange(0));
    scratch.storeText(L"", L"name", L"value");
    CHECK(WindowsHandle::waitForAny({own.getEvent()}, 20'000).first == WindowsHandle::signaled);
    CHECK(all.waitForChange(20'000));
    scratch.makeKey(L"another");
    CHECK(all.waitForChange(20'000));
}

TEST_CASE("RegistryWatch: nothing of it stays, and the key may have been opened for anything")
{
    const ScratchKey scratch;
    const RegistryKey key(scratch, false);
    const unsigned long handles = openHandles();
    RegistryWatch(key).waitForChange(0);
    CHECK(openHandles() == handles);
    const RegistryKey unreadable(key, L"", KEY_SET_VALUE);
    CHECK_NOTHROW(RegistryWatch(unreadable)); // Which opens the key itself.
}
