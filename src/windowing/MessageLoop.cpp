#include <tarn/MessageLoop.h>

#include "HandlerScope.h"

namespace tarn {
bool handleDialogMessage(HWND dialog, MSG& msg)
{
    return dialog && runningSystemLoops([&] { return IsDialogMessageW(dialog, &msg); });
}

bool handleAccelerator(HWND window, HACCEL accelerators, MSG& msg)
{
    return runningSystemLoops([&] { return TranslateAcceleratorW(window, accelerators, &msg); }) != 0;
}
} // namespace tarn
