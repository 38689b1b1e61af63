#include "../foundation/SETranslation.h"
#include "../system/ThreadLocalSlot.h"

#include <tarn/Exception.h>
#include <tarn/SETranslator.h>

namespace tarn {
namespace {
// Keeps, for each thread, the translator that was in force before the library's.
ThreadLocalSlot& savedTranslators()
{
    static ThreadLocalSlot slot;
    return slot;
}

void installTranslator() { savedTranslators().set(reinterpret_cast<void*>(setSETranslator(&SEHError::translate))); }

void restoreTranslator() { setSETranslator(reinterpret_cast<SETranslator>(savedTranslators().get())); }

void onEntry(DWORD reason)
{
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        savedTranslators().allocate();
        startSETranslation();
        installTranslator();
        break;
    case DLL_THREAD_ATTACH:
        installTranslator();
        break;
    case DLL_THREAD_DETACH:
        restoreTranslator();
        break;
    case DLL_PROCESS_DETACH:
        restoreTranslator();
        stopSETranslation();
        break;
    }
}
} // namespace
} // namespace tarn

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    OutputDebugStringA("Tarn++ DllMain");
    try {
        tarn::onEntry(reason);
    } catch (...) { // The loader could do nothing with it, and a thread without a translator still runs.
    }
    return TRUE;
}
