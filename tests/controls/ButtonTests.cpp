#include "Controls.h"

#include <tarn/Bitmap.h>
#include <tarn/Button.h>
#include <tarn/RadioButtonGroup.h>

namespace {
struct DrawnButton : Button {
    void onDrawItem(const DRAWITEMSTRUCT& item) override { drawnId = item.CtlID; }

    UINT drawnId = 0;
};
} // namespace

TEST_CASE("Button: its former picture comes back without an owner")
{
    const Hosted<Button> host(L"BUTTON", BS_BITMAP);
    const Bitmap first(2, 2, 1, 1, nullptr), second(2, 2, 1, 1, nullptr);
    CHECK(host.control.setImage(first).isNull());
    const Bitmap former = host.control.setImage(second);
    CHECK((former.getHandle() == first.getHandle() && !former.isOwner()));
}

TEST_CASE("Button: it is checked in three states, and its object draws it")
{
    Hosted<DrawnButton> host(L"BUTTON", BS_AUTO3STATE);
    DrawnButton& button = host.control;
    button.setCheck(Window::indeterminate);
    CHECK(button.getCheck() == Window::indeterminate);
    DRAWITEMSTRUCT item{};
    item.CtlID = Host::id;
    item.hwndItem = button;
    CHECK(host.sendMessageA(WM_DRAWITEM, Host::id, reinterpret_cast<LPARAM>(&item)) == TRUE);
    CHECK(button.drawnId == Host::id);
}

TEST_CASE("RadioButtonGroup: positions count the radio buttons up to the next group")
{
    Host host;
    constexpr unsigned long radio = BS_AUTORADIOBUTTON, edit = ES_MULTILINE | ES_LOWERCASE;
    unsigned short id = 0;
    for (const unsigned long style : {radio | WS_GROUP, 0ul, radio, edit, radio, radio | WS_GROUP, radio})
        Host::makeChild(host, style == edit ? L"EDIT" : style ? L"BUTTON" : L"STATIC", ++id, style);
    RadioButtonGroup group, next;
    group.create(host, 1);
    next.create(host, 6);
    CHECK((group.getSelection() == -1 && RadioButtonGroup().getSelection() == -1));
    next.setSelection(0);
    group.setSelection(1);
    CHECK(host.isChecked(3));
    group.setSelection(2);
    CHECK((group.getSelection() == 2 && host.isChecked(5) && !host.isChecked(3)));
    group.setSelection(3);
    CHECK((group.getSelection() == -1 && next.getSelection() == 0));
    expectWindowsError([&] { group.create(host, 50); }, "Can't retrieve radio button handle for group");
}
