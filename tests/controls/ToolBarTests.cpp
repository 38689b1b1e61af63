#include "Controls.h"

#include <tarn/ToolBar.h>

TEST_CASE("ToolBar: it lies at the top, and its buttons are known by their commands")
{
    struct : Host {
        void onCommand(Window*, unsigned short, unsigned short button) override { pressed = button; }
        unsigned short pressed = 0;
    } host;
    ToolBar bar;
    expectWindowsError([&] { bar.addButton(1, "x"); }, "Can't add tool bar button");
    bar.create(host, 5);
    const HIMAGELIST images = ImageList_Create(8, 8, ILC_COLOR, 1, 1);
    CHECK((!bar.setImageList(images) && bar.setImageList(nullptr) == images && ImageList_Destroy(images)));
    for (const bool isLarge : {true, false}) {
        int width = 0, height = 0;
        bar.create(host, 5, TBSTYLE_FLAT | TBSTYLE_LIST);
        bar.useStandardImages(isLarge);
        ImageList_GetIconSize(HIMAGELIST(bar.sendMessageA(TB_GETIMAGELIST)), &width, &height);
        CHECK(width == (isLarge ? 24 : 16));
    }
    bar.addButton(10, "narrow", STD_FILENEW);
    bar.addSeparator();
    bar.addButton(11, L"w\u00EFde", I_IMAGENONE, BTNS_CHECK);
    bar.adjust();
    TBBUTTON first{};
    CHECK((bar.sendMessageA(TB_GETBUTTON, 0, LPARAM(&first)) && first.iBitmap == STD_FILENEW));
    CHECK((bar.getButtonCount() == 3 && bar.getWindowSize().cx >= host.getClientSize().cx));
    CHECK(bar.getWindowRectangle().top <= host.toScreen(Point(0, 0)).y);
    CHECK((bar.getButtonTextA(10) == "narrow" && bar.getButtonTextW(11) == L"w\u00EFde"));

    bar.enableButton(10, false);
    bar.setButtonChecked(11, true);
    CHECK((!bar.isButtonEnabled(10) && bar.isButtonEnabled(11) && bar.isButtonChecked(11) && !bar.isButtonChecked(10)));
    bar.sendMessageA(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(bar.getClientSize().cx - 1, 5)); // Beside the buttons.
    CHECK(host.pressed == 0);
    RECT button{};
    bar.sendMessageA(TB_GETRECT, 11, reinterpret_cast<LPARAM>(&button));
    for (const UINT msg : {WM_LBUTTONDOWN, WM_LBUTTONUP})
        bar.sendMessageA(msg, MK_LBUTTON, MAKELPARAM(button.left + 2, button.top + 2));
    CHECK((host.pressed == 11 && !bar.isButtonChecked(11)));
    bar.deleteButton(1);
    CHECK(bar.getButtonCount() == 2);
    expectWindowsError([&] { bar.deleteButton(2); }, "Can't delete tool bar button");
    expectWindowsError([&] { bar.getButtonTextA(1); }, "Can't get tool bar button");
    expectWindowsError([&] { bar.enableButton(1, true); }, "Can't change tool bar button");
    expectWindowsError([&] { bar.setButtonChecked(1, true); }, "Can't change tool bar button");
    CHECK((!bar.isButtonEnabled(1) && !bar.isButtonChecked(1)));
    const Stubborn other(TB_ISBUTTONENABLED, TRUE); // Some answer with another number than this.
    CHECK(ToolBar(other.getWindowHandle()).isButtonEnabled(1));
}
