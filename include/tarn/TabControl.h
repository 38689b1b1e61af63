#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Rect.h>
#include <tarn/Window.h>

namespace tarn {
/// A row of tabs, of which one is selected. What belongs to a tab is shown by the program, in getPageRectangle(), when
/// `TCN_SELCHANGE` comes to its parent's onNotify(). For whole dialogs behind tabs take a PropertySheet.
///
/// Tabs count from 0, and -1 means none. Texts are copied. Failures throw WindowsError.
class TARN_API TabControl : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create().
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);

    /// Before the tab `index`, or at the end for an index behind it; gives the new tab's index. `image` counts in the
    /// list of setImageList(). Throws "Can't insert tab".
    ///@{
    int insertTab(unsigned index, const char* text, const void* data = nullptr, int image = -1) const;
    int insertTab(unsigned index, const wchar_t* text, const void* data = nullptr, int image = -1) const;
    ///@}
    /// At the end.
    ///@{
    int addTab(const char* text, const void* data = nullptr, int image = -1) const;
    int addTab(const wchar_t* text, const void* data = nullptr, int image = -1) const;
    ///@}
    /// Throws "Can't delete tab".
    void deleteTab(unsigned index) const;
    /// Throws "Can't delete tab".
    void deleteAllTabs() const;
    /// How many tabs there are.
    int getCount() const;

    /// Throws "Can't get tab".
    ///@{
    BasicString<char> getTabTextA(unsigned index) const;
    BasicString<wchar_t> getTabTextW(unsigned index) const;
    void* getTabData(unsigned index) const;
    ///@}
    /// Throws "Can't set tab".
    ///@{
    void setTabText(unsigned index, const char* text) const;
    void setTabText(unsigned index, const wchar_t* text) const;
    ///@}

    /// -1 when none is selected.
    int getCurrentSelection() const;
    /// Gives the tab selected before. The parent does not hear of it.
    int setCurrentSelection(unsigned index) const;
    /// The room for what belongs to a tab, in the coordinates of the control's parent.
    Rect getPageRectangle() const;
    /// Gives the list before. The control destroys neither: keep an ImageList as long as it is shown.
    HIMAGELIST setImageList(HIMAGELIST list) const;
};
} // namespace tarn
