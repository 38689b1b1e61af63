#include "Controls.h"

#include <tarn/Bitmap.h>
#include <tarn/Button.h>
#include <tarn/EditControl.h>
#include <tarn/RadioButtonGroup.h>

using namespace tarn;

namespace {
class DrawnButton : public Button {
public:
    void onDrawItem(const DRAWITEMSTRUCT& item) override { drawnId = item.CtlID; }

    UINT drawnId = 0;
};

/// Two groups; the first one has a label and an edit field between its three buttons.
void addGroups(const Window& host)
{
    constexpr unsigned long radio = BS_AUTORADIOBUTTON;
    support::Host::makeChild(host, L"BUTTON", 1, radio | WS_GROUP);
    support::Host::makeChild(host, L"STATIC", 2, SS_SIMPLE);
    support::Host::makeChild(host, L"BUTTON", 3, radio);
    support::Host::makeChild(host, L"EDIT", 4, ES_MULTILINE | ES_LOWERCASE);
    support::Host::makeChild(host, L"BUTTON", 5, radio);
    support::Host::makeChild(host, L"BUTTON", 6, radio | WS_GROUP);
    support::Host::makeChild(host, L"BUTTON", 7, radio);
}
} // namespace

TEST_CASE("Button: check state and picture are set and read", "[controls]")
{
    support::Host host;
    Button button;
    host.add(button, L"BUTTON", BS_AUTO3STATE);
    CHECK(button.getCheck() == Window::unchecked);
    button.setCheck(Window::indeterminate);
    CHECK(button.getCheck() == Window::indeterminate);

    host.add(button, L"BUTTON", BS_BITMAP, 101);
    const Bitmap first(2, 2, 1, 1, nullptr), second(2, 2, 1, 1, nullptr);
    CHECK(button.setImage(first).isNull());
    const Bitmap former = button.setImage(second);
    CHECK(former.getHandle() == first.getHandle());
    CHECK_FALSE(former.isOwner());
}

TEST_CASE("Button: its object draws it", "[controls]")
{
    support::Host host;
    DrawnButton button;
    host.add(button, L"BUTTON", BS_OWNERDRAW);
    DRAWITEMSTRUCT item{};
    item.CtlID = support::Host::id;
    item.hwndItem = button;
    CHECK(host.sendMessageA(WM_DRAWITEM, support::Host::id, reinterpret_cast<LPARAM>(&item)) == TRUE);
    CHECK(button.drawnId == support::Host::id);
}

TEST_CASE("RadioButtonGroup: positions count the radio buttons up to the next group", "[controls]")
{
    support::Host host;
    addGroups(host);
    RadioButtonGroup group, next;
    group.create(host, 1);
    next.create(host, 6);
    CHECK(group.getSelection() == -1);
    next.setSelection(0);
    group.setSelection(1);
    CHECK(host.isChecked(3));
    group.setSelection(2);
    CHECK(group.getSelection() == 2);
    CHECK((host.isChecked(5) && !host.isChecked(3)));
    group.setSelection(3);
    CHECK(group.getSelection() == -1);
    CHECK(next.getSelection() == 0);
    next = group;
    next.setSelection(0);
    CHECK(group.getSelection() == 0);

    support::expectFailure([&] { group.create(host, 50); }, "Can't retrieve radio button handle for group");
    CHECK(RadioButtonGroup().getSelection() == -1);
}

TEST_CASE("EditControl: the selection and the read-only state change, the text stays", "[controls]")
{
    support::Host host;
    EditControl edit;
    host.add(edit, L"EDIT");
    edit.setText(L"hello world");
    const auto selection = [&] {
        DWORD start = 0, end = 0;
        edit.sendMessageA(EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        return std::pair(start, end);
    };
    edit.setSelection(2, 4);
    CHECK(selection() == std::pair<DWORD, DWORD>(2, 4));
    edit.selectAll();
    CHECK(selection() == std::pair<DWORD, DWORD>(0, 11));
    edit.clearSelection();
    CHECK(selection().first == selection().second);
    CHECK(edit.getTextW() == L"hello world");

    edit.setReadonly(true);
    CHECK(edit.getReadonly());
    edit.setReadonly(false);
    CHECK_FALSE(edit.getReadonly());
    support::expectFailure([] { EditControl().setReadonly(true); }, "Can't set ES_READONLY style");
}
