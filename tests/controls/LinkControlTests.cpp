#include "Controls.h"

#include <tarn/LinkControl.h>

TEST_CASE("LinkControl: its parent hears which link is followed")
{
    struct : Host {
        LRESULT onNotify(const NMHDR& header) override
        {
            if (const auto link = LinkControl::which(header))
                followed = *link;
            return 0;
        }
        LinkControl::Link followed;
    } host;
    LinkControl links;
    links.create(host, 5, Rect(0, 0, 180, 80),
                 L"<a id=\"m\u00F6re\">More</a> or <a href=\"https://example.org\">the page</a>");
    CHECK((links.getLink(0).id == L"m\u00F6re" && links.getLink(1).url == L"https://example.org"));
    CHECK(links.getIdealHeight() > 0);
    const auto stateOf = [&](int index) {
        LITEM item{};
        item.mask = LIF_ITEMINDEX | LIF_STATE;
        item.iLink = index;
        item.stateMask = LIS_VISITED | LIS_ENABLED;
        links.sendMessageA(LM_GETITEM, 0, reinterpret_cast<LPARAM>(&item));
        return item.state;
    };
    links.setVisited(1, true);
    CHECK((stateOf(0) == LIS_ENABLED && stateOf(1) == (LIS_ENABLED | LIS_VISITED)));
    links.setEnabled(1, false);
    CHECK(stateOf(1) == LIS_VISITED);
    host.show(SW_SHOW);
    links.setFocus();
    links.sendMessageA(WM_KEYDOWN, VK_RETURN);
    CHECK(host.followed.id == L"m\u00F6re");

    NMLINK clicked{};
    clicked.hdr = {links, 5, NM_CLICK};
    clicked.item.iLink = 1;
    CHECK(LinkControl::which(clicked.hdr).value().index == 1);
    const NMHDR other{makeButton(host, 6), 6, NM_CLICK};
    CHECK_FALSE(LinkControl::which(other));
    expectWindowsError([&] { links.getLink(2); }, "Can't get link");
    expectWindowsError([&] { links.setVisited(2, true); }, "Can't change link");
}
