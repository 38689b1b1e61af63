#include <tarn/MessageLoop.h>

#include "HandlerScope.h"

namespace tarn {
bool handleDialogMessage(HWND dialog, MSG& msg)
{
    return dialog && runningLoop([&] { return IsDialogMessageW(dialog, &msg); }, endSystemLoops);
}

bool handleAccelerator(HWND window, HACCEL accelerators, MSG& msg)
{
    return runningLoop([&] { return TranslateAcceleratorW(window, accelerators, &msg); }, endSystemLoops) != 0;
}
} // namespace tarn
