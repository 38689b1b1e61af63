#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

#include <vector>

namespace tarn {
/// The line at the bottom of a window, in one part or several. Parts count from 0; texts are copied.
/// Failures throw WindowsError.
class TARN_API StatusBar : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// At the bottom of `parent`, visible; otherwise as ListView::create(). `SBARS_SIZEGRIP` is a style for it.
    void create(HWND parent, unsigned short id, unsigned long style = 0);
    /// Lies at the bottom again: call it in the parent's onSize().
    void adjust() const;

    /// The right edges of the parts in pixels; -1 for the last one is the end of the bar. Throws "Can't set parts of
    /// status bar".
    void setParts(const std::vector<int>& rightEdges) const;
    /// 1 unless setParts() was called.
    int getPartCount() const;
    /// Throws "Can't set text of status bar".
    ///@{
    void setPartText(unsigned part, const char* text) const;
    void setPartText(unsigned part, const wchar_t* text) const;
    ///@}
    /// Empty for a part that does not exist.
    ///@{
    BasicString<char> getPartTextA(unsigned part) const;
    BasicString<wchar_t> getPartTextW(unsigned part) const;
    ///@}
};
} // namespace tarn
