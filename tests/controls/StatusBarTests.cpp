#include "Controls.h"

#include <tarn/StatusBar.h>

TEST_CASE("StatusBar: it lies at the bottom and shows texts in its parts")
{
    Host host;
    StatusBar bar;
    bar.create(host, 5);
    const auto isAtBottom = [&] {
        return bar.getWindowRectangle().bottom == host.toScreen(Point(0, host.getClientSize().cy)).y;
    };
    CHECK(isAtBottom());
    host.setSize(300, 200, SWP_NOZORDER);
    bar.adjust();
    CHECK(isAtBottom());

    bar.setParts({60, 120, -1});
    CHECK(bar.getPartCount() == 3);
    bar.setPartText(0, "narrow");
    bar.setPartText(2, L"w\u00EFde");
    CHECK((bar.getPartTextW(0) == L"narrow" && bar.getPartTextA(1).empty() && bar.getPartTextW(2) == L"w\u00EFde"));
    CHECK((bar.getPartTextA(0) == "narrow" && bar.getPartTextW(3).empty()));
    expectWindowsError([&] { bar.setPartText(3, "x"); }, "Can't set text of status bar");
    expectWindowsError([] { StatusBar().setParts({-1}); }, "Can't set parts of status bar");
    CHECK(StatusBar().getPartTextA(0).empty());
    const Stubborn other(SB_GETTEXTW, 1); // It answers for a part that there is not.
    CHECK(StatusBar(other.getWindowHandle()).getPartTextW(0).empty());
}
