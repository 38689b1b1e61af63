#include "ControlMessages.h"

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"

namespace tarn {
LRESULT ensureSent(const Window& control, LRESULT failed, const char* what, UINT msg, WPARAM wParam, LPARAM lParam)
{
    return ensureClearing([&] { return control.sendMessageA(msg, wParam, lParam); },
                          [&](LRESULT result) { return isFailure(control, result, failed); }, what);
}

LRESULT sendText(const Window& control, UINT msg, WPARAM wParam, const char* text)
{
    return control.sendMessageA(msg, wParam, toLParam(text));
}

LRESULT sendText(const Window& control, UINT msg, WPARAM wParam, const wchar_t* text)
{
    return runningLoop([&] { return SendMessageW(control, msg, wParam, toLParam(text)); }, endSystemLoops);
}
} // namespace tarn
