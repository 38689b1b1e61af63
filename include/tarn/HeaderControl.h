#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/ListView.h>
#include <tarn/Rect.h>
#include <tarn/Window.h>

#include <vector>

namespace tarn {
/// A row of headings over columns, whose widths the user can change: for a table that a program draws itself, or that
/// of a list view, `HeaderControl(list.getHeader())`. It tells its parent with `HDN_...`, which come to onNotify().
///
/// Items count from 0 and keep their number when the user moves them. Texts are copied. Failures throw WindowsError.
class TARN_API HeaderControl : public Window {
public:
    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id. With `HDS_BUTTONS` items can be clicked, with `HDS_DRAGDROP` moved.
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);
    /// Lies at the top of `space`, in the client coordinates of its parent, and gives what is left below: call it in
    /// the parent's onSize(). Throws "Can't place header".
    Rect adjust(const Rect& space) const;

    /// Before the item `index`, or at the end for an index behind it; gives the new item's index. `width` in pixels,
    /// `format` one of `HDF_LEFT`, `HDF_CENTER`, `HDF_RIGHT`. Throws "Can't insert header item".
    ///@{
    int insertItem(unsigned index, const char* text, int width, int format = HDF_LEFT) const;
    int insertItem(unsigned index, const wchar_t* text, int width, int format = HDF_LEFT) const;
    ///@}
    /// Throws "Can't delete header item".
    void deleteItem(unsigned index) const;
    /// How many items there are.
    int getItemCount() const;

    /// Throws "Can't get header item".
    ///@{
    BasicString<char> getItemTextA(unsigned index) const;
    BasicString<wchar_t> getItemTextW(unsigned index) const;
    int getItemWidth(unsigned index) const;
    ///@}
    /// In client coordinates. Throws "Can't get header item".
    Rect getItemRectangle(unsigned index) const;
    /// Throws "Can't set header item".
    ///@{
    void setItemText(unsigned index, const char* text) const;
    void setItemText(unsigned index, const wchar_t* text) const;
    void setItemWidth(unsigned index, int width) const;
    ///@}
    /// As ListView::setSortArrow(). Throws "Can't set sort arrow".
    void setSortArrow(unsigned index, ListView::sort_arrow arrow) const;
    /// The items' numbers from left to right. Throws "Can't get header item".
    std::vector<int> getOrder() const;
    /// Throws "Can't set header item".
    void setOrder(const std::vector<int>& order) const;
};
} // namespace tarn
