#include <tarn/RadioButtonGroup.h>

#include <tarn/Window.h>

#include "../foundation/Check.h"

namespace tarn {
namespace {
// Other controls may use the same style bits for something else, so they are asked what they are.
bool isRadioButton(const Window& sibling) { return (sibling.sendMessageA(WM_GETDLGCODE) & DLGC_RADIOBUTTON) != 0; }

bool beginsGroup(HWND sibling) { return (GetWindowLongW(sibling, GWL_STYLE) & WS_GROUP) != 0; }

/// Visits the buttons of a group by their positions, until `visit` returns true.
template <class Visit> void walk(HWND first, Visit visit)
{
    int position = 0;
    for (HWND hwnd = first; hwnd && (hwnd == first || !beginsGroup(hwnd)); hwnd = GetWindow(hwnd, GW_HWNDNEXT)) {
        const Window button(hwnd);
        if (isRadioButton(button) && visit(button, position++))
            return;
    }
}
} // namespace

void RadioButtonGroup::create(Window& parent, int firstId)
{
    first_ = ensure(GetDlgItem(parent, firstId), "Can't retrieve radio button handle for group");
}

int RadioButtonGroup::getSelection() const
{
    int selection = -1;
    walk(first_, [&](const Window& button, int position) {
        const bool isChecked = button.sendMessageA(BM_GETCHECK) == BST_CHECKED;
        if (isChecked)
            selection = position;
        return isChecked;
    });
    return selection;
}

void RadioButtonGroup::setSelection(int selection) const
{
    walk(first_, [&](const Window& button, int position) {
        button.sendMessageA(BM_SETCHECK, position == selection ? BST_CHECKED : BST_UNCHECKED);
        return false;
    });
}
} // namespace tarn
