#include <tarn/AutoRedraw.h>

#include "../foundation/Closing.h"
#include "../windowing/HandlerScope.h"

namespace tarn {
namespace {
// How many guards a window has is kept with the window itself.
constexpr const wchar_t* depthName = L"tarn::AutoRedraw";

INT_PTR depthOf(HWND window) { return reinterpret_cast<INT_PTR>(GetPropW(window, depthName)); }
void setDepth(HWND window, INT_PTR depth) { SetPropW(window, depthName, reinterpret_cast<HANDLE>(depth)); }

// Switching redrawing on would show a hidden window.
bool isHidden(HWND window) { return (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) == 0; }
} // namespace

AutoRedraw::AutoRedraw(HWND window) : window_(depthOf(window) == 0 && isHidden(window) ? nullptr : window)
{
    if (!window_)
        return;
    const INT_PTR depth = depthOf(window_);
    if (depth == 0)
        runningHandlers([&] { SendMessageW(window_, WM_SETREDRAW, FALSE, 0); });
    setDepth(window_, depth + 1);
}

AutoRedraw::~AutoRedraw() noexcept(false)
{
    const INT_PTR depth = window_ ? depthOf(window_) - 1 : -1; // A window that is gone has no guards.
    if (depth > 0)
        setDepth(window_, depth);
    if (depth != 0)
        return;
    RemovePropW(window_, depthName);
    closeAtEnd([this] {
        runningHandlers([this] {
            SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
            RedrawWindow(window_, nullptr, nullptr, RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
        });
    });
}
} // namespace tarn
