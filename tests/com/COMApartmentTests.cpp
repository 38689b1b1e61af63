#include "Test.h"

#include <tarn/COMApartment.h>
#include <tarn/COMInterfacePointer.h>

#include <shlobj.h>

#include <thread>

namespace {
/// Whether the thread has COM.
bool hasCOM()
{
    try {
        return COMInterfacePointer<IShellLinkW>::create(CLSID_ShellLink) != nullptr;
    } catch (const COMError& error) {
        CHECK(error.getHRESULT() == CO_E_NOTINITIALIZED);
        return false;
    }
}
} // namespace

TEST_CASE("COMApartment: a thread has COM as long as the outermost one lives")
{
    const auto model = GENERATE(COMApartment::singleThreaded, COMApartment::multiThreaded);
    const auto other =
        model == COMApartment::singleThreaded ? COMApartment::multiThreaded : COMApartment::singleThreaded;
    std::thread([&] {
        CHECK_FALSE(hasCOM());
        {
            const COMApartment outer(model);
            {
                const COMApartment inner(model);
            }
            CHECK(hasCOM());
            const auto error = thrownBy<COMError>([&] { COMApartment failing(other); });
            CHECK(error.getHRESULT() == RPC_E_CHANGED_MODE);
            CHECK(std::string(error.what()).starts_with("Can't initialize COM: "));
            CHECK(hasCOM()); // What failed does not end what is there.
        }
        CHECK_FALSE(hasCOM());
    }).join();
}
