#include "Controls.h"

#include <tarn/TabControl.h>

TEMPLATE_TEST_CASE("TabControl: tabs of both widths come back as they were set", "", char, wchar_t)
{
    using Text = BasicString<TestType>;
    Host host;
    TabControl tabs;
    expectWindowsError([&] { tabs.addTab(Text("x")); }, "Can't insert tab");
    tabs.create(host, 5, Rect(10, 20, 160, 90), WS_VISIBLE);
    CHECK((tabs.getID() == 5 && tabs.getCurrentSelection() == -1));
    CHECK((tabs.addTab(Text("last")) == 0 && tabs.insertTab(0, Text("first"), address) == 0 && tabs.getCount() == 2));
    const auto textOf = [&](unsigned index) -> Text {
        if constexpr (std::is_same_v<TestType, char>)
            return tabs.getTabTextA(index);
        else
            return tabs.getTabTextW(index);
    };
    CHECK((textOf(0) == Text("first") && tabs.getTabData(0) == address && !tabs.getTabData(1)));
    TCITEMW tab{};
    tab.mask = TCIF_IMAGE;
    CHECK((tabs.addTab(Text("third"), nullptr, 3) == 2 && tabs.sendMessageA(TCM_GETITEMW, 2, LPARAM(&tab))));
    CHECK(tab.iImage == 3);
    const Text longText(600, TestType('x'));
    tabs.setTabText(1, longText);
    CHECK(textOf(1) == longText);

    const HIMAGELIST images = ImageList_Create(8, 8, ILC_COLOR, 1, 1);
    CHECK((!tabs.setImageList(images) && tabs.setImageList(nullptr) == images && ImageList_Destroy(images)));

    tabs.setCurrentSelection(1);
    CHECK((tabs.setCurrentSelection(0) == 1 && tabs.getCurrentSelection() == 0));
    const Rect page = tabs.getPageRectangle();
    CHECK((page.left >= 10 && page.top > 30 && page.right <= 160 && page.bottom <= 90));
    tabs.deleteTab(0);
    CHECK(textOf(0) == longText);
    tabs.deleteAllTabs();
    CHECK(tabs.getCount() == 0);
    expectWindowsError([&] { tabs.deleteTab(0); }, "Can't delete tab");
    expectWindowsError([&] { textOf(0); }, "Can't get tab");
    expectWindowsError([&] { tabs.getTabData(0); }, "Can't get tab");
    expectWindowsError([&] { tabs.setTabText(0, longText); }, "Can't set tab");
}
