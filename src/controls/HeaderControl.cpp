#include <tarn/HeaderControl.h>

#include "ControlMessages.h"
#include "ItemApi.h"
#include "ItemText.h"

namespace tarn {
namespace {
constexpr const char* cannotGetHeading = "Can't get header item";
constexpr const char* cannotSetHeading = "Can't set header item";

template <class Ch>
int insertHeading(const HeaderControl& header, unsigned index, const Ch* text, int width, int format)
{
    typename ItemApi<Ch>::Heading heading{};
    heading.mask = HDI_TEXT | HDI_WIDTH | HDI_FORMAT;
    heading.pszText = textOf(text);
    heading.cxy = width;
    heading.fmt = format | HDF_STRING;
    return static_cast<int>(
        ensureSent(header, -1, "Can't insert header item", ItemApi<Ch>::insertHeading, index, toLParam(&heading)));
}

template <class Ch> BasicString<Ch> textOfHeading(const HeaderControl& header, unsigned index)
{
    return readItemText<Ch>([&](Ch* buffer, int size) {
        typename ItemApi<Ch>::Heading heading{};
        heading.mask = HDI_TEXT;
        heading.pszText = buffer;
        heading.cchTextMax = size;
        ensureSent(header, FALSE, cannotGetHeading, ItemApi<Ch>::getHeading, index, toLParam(&heading));
        return heading.pszText;
    });
}

template <class Ch> void setTextOfHeading(const HeaderControl& header, unsigned index, const Ch* text)
{
    typename ItemApi<Ch>::Heading heading{};
    heading.mask = HDI_TEXT;
    heading.pszText = textOf(text);
    ensureSent(header, FALSE, cannotSetHeading, ItemApi<Ch>::setHeading, index, toLParam(&heading));
}
} // namespace

void HeaderControl::create(HWND parent, unsigned short id, const RECT& rect, unsigned long style)
{
    createControl(*this, WC_HEADERW, parent, id, rect, style);
}
Rect HeaderControl::adjust(const Rect& space) const
{
    Rect rest = space;
    WINDOWPOS place{};
    HDLAYOUT layout{&rest, &place};
    ensureSent(*this, FALSE, "Can't place header", HDM_LAYOUT, 0, toLParam(&layout));
    setPosition(place.hwndInsertAfter, Rect(Point(place.x, place.y), Size(place.cx, place.cy)), place.flags);
    return rest;
}

int HeaderControl::insertItem(unsigned index, const char* text, int width, int format) const
{
    return insertHeading(*this, index, text, width, format);
}
int HeaderControl::insertItem(unsigned index, const wchar_t* text, int width, int format) const
{
    return insertHeading(*this, index, text, width, format);
}
void HeaderControl::deleteItem(unsigned index) const
{
    ensureSent(*this, FALSE, "Can't delete header item", HDM_DELETEITEM, index);
}
int HeaderControl::getItemCount() const { return static_cast<int>(sendMessageA(HDM_GETITEMCOUNT)); }

BasicString<char> HeaderControl::getItemTextA(unsigned index) const { return textOfHeading<char>(*this, index); }
BasicString<wchar_t> HeaderControl::getItemTextW(unsigned index) const { return textOfHeading<wchar_t>(*this, index); }
int HeaderControl::getItemWidth(unsigned index) const
{
    HDITEMW heading{};
    heading.mask = HDI_WIDTH;
    ensureSent(*this, FALSE, cannotGetHeading, HDM_GETITEMW, index, toLParam(&heading));
    return heading.cxy;
}
Rect HeaderControl::getItemRectangle(unsigned index) const
{
    Rect rect;
    ensureSent(*this, FALSE, cannotGetHeading, HDM_GETITEMRECT, index, toLParam(&rect));
    return rect;
}
void HeaderControl::setItemText(unsigned index, const char* text) const { setTextOfHeading(*this, index, text); }
void HeaderControl::setItemText(unsigned index, const wchar_t* text) const { setTextOfHeading(*this, index, text); }
void HeaderControl::setItemWidth(unsigned index, int width) const
{
    HDITEMW heading{};
    heading.mask = HDI_WIDTH;
    heading.cxy = width;
    ensureSent(*this, FALSE, cannotSetHeading, HDM_SETITEMW, index, toLParam(&heading));
}

void HeaderControl::setSortArrow(unsigned index, ListView::sort_arrow arrow) const
{
    constexpr const char* failed = "Can't set sort arrow";
    const auto count = static_cast<unsigned>(ensureSent(*this, -1, failed, HDM_GETITEMCOUNT));
    for (unsigned i = 0; i < count; ++i) {
        HDITEMW heading{};
        heading.mask = HDI_FORMAT;
        ensureSent(*this, FALSE, failed, HDM_GETITEMW, i, toLParam(&heading));
        heading.fmt = (heading.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | (i == index ? arrow : ListView::no_arrow);
        ensureSent(*this, FALSE, failed, HDM_SETITEMW, i, toLParam(&heading));
    }
}

std::vector<int> HeaderControl::getOrder() const
{
    std::vector<int> order(static_cast<std::size_t>(ensureSent(*this, -1, cannotGetHeading, HDM_GETITEMCOUNT)));
    if (!order.empty())
        ensureSent(*this, FALSE, cannotGetHeading, HDM_GETORDERARRAY, order.size(), toLParam(order.data()));
    return order;
}
void HeaderControl::setOrder(const std::vector<int>& order) const
{
    ensureSent(*this, FALSE, cannotSetHeading, HDM_SETORDERARRAY, order.size(), toLParam(order.data()));
}
} // namespace tarn
