#include "Controls.h"

#include <tarn/HeaderControl.h>

TEST_CASE("HeaderControl: it lies at the top of its space, and its items come back as they were set")
{
    Host host;
    HeaderControl header;
    const auto fails = [](auto call, const char* what) { expectWindowsError(call, what); };
    fails([&] { header.adjust(Rect()); }, "Can't place header");
    fails([&] { header.insertItem(0, "x", 1); }, "Can't insert header item");
    fails([&] { header.getOrder(); }, "Can't get header item");
    const Stubborn mute(HDM_GETITEMCOUNT, -1);
    fails([&] { HeaderControl(mute.getWindowHandle()).getOrder(); }, "Can't get header item");
    header.create(host, 5, Rect(), HDS_BUTTONS | HDS_DRAGDROP);
    const Rect rest = header.adjust(Rect(10, 20, 200, 90));
    const Size size = header.getWindowSize();
    CHECK((size.cx == 190 && size.cy > 5 && rest.top == 20 + size.cy && rest.bottom == 90));

    CHECK((header.insertItem(9, "narrow", 50) == 0 && header.insertItem(0, L"w\u00EFde", 70, HDF_RIGHT) == 0));
    CHECK((header.getItemCount() == 2 && header.getItemTextA(1) == "narrow" && header.getItemTextW(0) == L"w\u00EFde"));
    CHECK((header.getItemWidth(0) == 70 && header.getItemRectangle(1).left == 70));
    const BasicString<wchar_t> longText(600, L'x');
    header.setItemText(0, longText);
    header.setItemText(1, "other");
    header.setItemWidth(0, 30);
    CHECK((header.getItemTextW(0) == longText && header.getItemTextA(1) == "other" && header.getItemWidth(0) == 30));
    header.setOrder({1, 0});
    CHECK((header.getOrder() == std::vector<int>{1, 0} && header.getItemRectangle(1).left == 0));
    header.deleteItem(0);
    CHECK(header.getOrder() == std::vector<int>{0});
    fails([&] { header.deleteItem(1); }, "Can't delete header item");
    fails([&] { header.getItemTextW(1); }, "Can't get header item");
    fails([&] { header.getItemWidth(1); }, "Can't get header item");
    fails([&] { header.setItemText(1, "x"); }, "Can't set header item");
    fails([&] { header.setItemWidth(1, 1); }, "Can't set header item");
    fails([&] { header.setOrder({1, 0}); }, "Can't set header item");
}
