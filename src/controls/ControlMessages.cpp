#include "ControlMessages.h"

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"

namespace tarn {
LRESULT ensureSent(const Window& control, LRESULT failed, const char* what, UINT msg, WPARAM wParam, LPARAM lParam)
{
    SetLastError(ERROR_SUCCESS);
    const LRESULT result = control.sendMessageA(msg, wParam, lParam);
    if (isFailure(control, result, failed))
        throwLastError(what);
    return result;
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
