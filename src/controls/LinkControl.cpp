#include <tarn/LinkControl.h>

#include "ControlMessages.h"

#include <string_view>

namespace tarn {
namespace {
LinkControl::Link linkOf(const LITEM& item) { return {item.iLink, item.szID, item.szUrl}; }

void setLinkState(const LinkControl& control, int index, UINT mask, bool isOn)
{
    LITEM item{};
    item.mask = LIF_ITEMINDEX | LIF_STATE;
    item.iLink = index;
    item.stateMask = mask;
    item.state = isOn ? mask : 0;
    ensureSent(control, FALSE, "Can't change link", LM_SETITEM, 0, toLParam(&item));
}
} // namespace

void LinkControl::loadClass() { loadControls(ICC_LINK_CLASS); }

void LinkControl::create(HWND parent, unsigned short id, const RECT& rect, const wchar_t* text, unsigned long style)
{
    loadClass();
    createControl(*this, WC_LINK, parent, id, rect, style, text);
}

std::optional<LinkControl::Link> LinkControl::which(const NMHDR& notification)
{
    wchar_t name[8] = L"";
    if (notification.code != NM_CLICK && notification.code != NM_RETURN)
        return std::nullopt;
    GetClassNameW(notification.hwndFrom, name, 8);
    if (std::wstring_view(name) != WC_LINK)
        return std::nullopt;
    return linkOf(reinterpret_cast<const NMLINK&>(notification).item);
}

LinkControl::Link LinkControl::getLink(int index) const
{
    LITEM item{};
    item.mask = LIF_ITEMINDEX | LIF_ITEMID | LIF_URL;
    item.iLink = index;
    ensureSent(*this, FALSE, "Can't get link", LM_GETITEM, 0, toLParam(&item));
    return linkOf(item);
}
void LinkControl::setVisited(int index, bool visited) const { setLinkState(*this, index, LIS_VISITED, visited); }
void LinkControl::setEnabled(int index, bool enabled) const { setLinkState(*this, index, LIS_ENABLED, enabled); }
int LinkControl::getIdealHeight() const
{
    return static_cast<int>(sendMessageA(LM_GETIDEALHEIGHT, static_cast<WPARAM>(getClientSize().cx)));
}
} // namespace tarn
