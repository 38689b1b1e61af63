#include <tarn/TabControl.h>

#include "ControlMessages.h"
#include "ItemApi.h"
#include "ItemText.h"

#include <climits>

namespace tarn {
namespace {
template <class Ch> int insertInto(const TabControl& tabs, unsigned index, const Ch* text, const void* data, int image)
{
    typename ItemApi<Ch>::Tab tab{};
    tab.mask = TCIF_TEXT | TCIF_PARAM | TCIF_IMAGE;
    tab.pszText = textOf(text);
    tab.lParam = toLParam(data);
    tab.iImage = image;
    return static_cast<int>(ensureSent(tabs, -1, "Can't insert tab", ItemApi<Ch>::insertTab, index, toLParam(&tab)));
}

template <class Ch> BasicString<Ch> textOfTab(const TabControl& tabs, unsigned index)
{
    return readItemText<Ch>([&](Ch* buffer, int size) {
        typename ItemApi<Ch>::Tab tab{};
        tab.mask = TCIF_TEXT;
        tab.pszText = buffer;
        tab.cchTextMax = size;
        ensureSent(tabs, FALSE, "Can't get tab", ItemApi<Ch>::getTab, index, toLParam(&tab));
        return tab.pszText;
    });
}

template <class Ch> void setTextOfTab(const TabControl& tabs, unsigned index, const Ch* text)
{
    typename ItemApi<Ch>::Tab tab{};
    tab.mask = TCIF_TEXT;
    tab.pszText = textOf(text);
    ensureSent(tabs, FALSE, "Can't set tab", ItemApi<Ch>::setTab, index, toLParam(&tab));
}
} // namespace

void TabControl::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_TABCONTROLW, parent, id, rect, style);
}

int TabControl::insertTab(unsigned index, const char* text, const void* data, int image) const
{
    return insertInto(*this, index, text, data, image);
}
int TabControl::insertTab(unsigned index, const wchar_t* text, const void* data, int image) const
{
    return insertInto(*this, index, text, data, image);
}
int TabControl::addTab(const char* text, const void* data, int image) const
{
    return insertTab(INT_MAX, text, data, image);
}
int TabControl::addTab(const wchar_t* text, const void* data, int image) const
{
    return insertTab(INT_MAX, text, data, image);
}

void TabControl::deleteTab(unsigned index) const
{
    ensureSent(*this, FALSE, "Can't delete tab", TCM_DELETEITEM, index);
}
void TabControl::deleteAllTabs() const { ensureSent(*this, FALSE, "Can't delete tab", TCM_DELETEALLITEMS); }
int TabControl::getCount() const { return static_cast<int>(sendMessageA(TCM_GETITEMCOUNT)); }

BasicString<char> TabControl::getTabTextA(unsigned index) const { return textOfTab<char>(*this, index); }
BasicString<wchar_t> TabControl::getTabTextW(unsigned index) const { return textOfTab<wchar_t>(*this, index); }
void* TabControl::getTabData(unsigned index) const
{
    TCITEMW tab{};
    tab.mask = TCIF_PARAM;
    ensureSent(*this, FALSE, "Can't get tab", TCM_GETITEMW, index, toLParam(&tab));
    return toPointer(tab.lParam);
}
void TabControl::setTabText(unsigned index, const char* text) const { setTextOfTab(*this, index, text); }
void TabControl::setTabText(unsigned index, const wchar_t* text) const { setTextOfTab(*this, index, text); }

int TabControl::getCurrentSelection() const { return static_cast<int>(sendMessageA(TCM_GETCURSEL)); }
int TabControl::setCurrentSelection(unsigned index) const
{
    return static_cast<int>(sendMessageA(TCM_SETCURSEL, static_cast<WPARAM>(static_cast<int>(index))));
}

Rect TabControl::getPageRectangle() const
{
    Rect rect = getWindowRectangle();
    MapWindowPoints(nullptr, GetParent(*this), reinterpret_cast<POINT*>(static_cast<RECT*>(&rect)), 2);
    sendMessageA(TCM_ADJUSTRECT, FALSE, toLParam(&rect));
    return rect;
}

HIMAGELIST TabControl::setImageList(HIMAGELIST list) const
{
    return static_cast<HIMAGELIST>(toPointer(sendMessageA(TCM_SETIMAGELIST, 0, toLParam(list))));
}
} // namespace tarn
