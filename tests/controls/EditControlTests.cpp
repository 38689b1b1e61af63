#include "Controls.h"

#include <tarn/EditControl.h>

TEST_CASE("EditControl: the selection and the read-only state change, the text stays")
{
    const Hosted<EditControl> host(L"EDIT");
    const EditControl& edit = host.control;
    edit.setText(L"hello world");
    const auto selection = [&] { return edit.sendMessageA(EM_GETSEL); };
    edit.setSelection(2, 4);
    CHECK(selection() == MAKELRESULT(2, 4));
    edit.selectAll();
    CHECK(selection() == MAKELRESULT(0, 11));
    edit.clearSelection();
    CHECK(LOWORD(selection()) == HIWORD(selection()));
    CHECK(edit.getTextW() == L"hello world");
    edit.setSelection(0, 5);
    CHECK(edit.getSelection() == std::pair(0, 5));
    edit.replaceSelection(L"\u03B2");
    edit.replaceSelection("ye");
    CHECK((edit.getTextW() == L"\u03B2ye world" && edit.getSelection() == std::pair(3, 3)));
    CHECK(edit.sendMessageA(EM_CANUNDO));
    edit.replaceSelection("x", false);
    CHECK(!edit.sendMessageA(EM_CANUNDO));
    edit.setLimit(10);
    edit.sendMessageA(WM_CHAR, 'x'); // The eleventh character.
    CHECK((edit.getLimit() == 10 && edit.getTextW() == L"\u03B2yex world"));
    edit.setText(L"");
    edit.setNumbersOnly(true);
    edit.sendMessageA(WM_CHAR, 'x');
    edit.sendMessageA(WM_CHAR, '7');
    CHECK(edit.getTextW() == L"7");
    expectWindowsError([] { EditControl().setHint(L"name"); }, "Can't set hint");

    edit.setReadonly(true);
    CHECK(edit.getReadonly());
    edit.setReadonly(false);
    CHECK_FALSE(edit.getReadonly());
    expectWindowsError([] { EditControl().setReadonly(true); }, "Can't set ES_READONLY style");
    CHECK(EditControl().getSelection() == std::pair(0, 0));
}
