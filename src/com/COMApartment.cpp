#include <tarn/COMApartment.h>

#include <tarn/Exception.h>
#include <tarn/Windows.h>

#include <objbase.h>

namespace tarn {
COMApartment::COMApartment(model threads)
{
    HRESULTHolder::throwOnError(
        CoInitializeEx(nullptr, threads == multiThreaded ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED),
        "Can't initialize COM");
}
COMApartment::~COMApartment() { CoUninitialize(); }
} // namespace tarn
