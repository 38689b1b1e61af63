#include "Controls.h"

#include <tarn/ComboBox.h>
#include <tarn/ListBox.h>

namespace {
/// Where the two kinds of box differ.
struct Kind {
    const wchar_t* className;
    unsigned long plain, drawn, variable;
    UINT add, getText;
    const char *cannotAdd, *cannotAddItem, *cannotDelete, *cannotSetData, *cannotGetText;
};
template <class Box>
constexpr Kind kind = {L"LISTBOX",
                       0,
                       LBS_OWNERDRAWFIXED,
                       LBS_OWNERDRAWVARIABLE | LBS_HASSTRINGS,
                       LB_ADDSTRING,
                       LB_GETTEXT,
                       "Can't add string to listbox",
                       "Can't add item to listbox",
                       "Can't delete listbox item",
                       "Can't set listbox item data",
                       "Can't get listbox item text"};
template <>
constexpr Kind kind<ComboBox> = {L"COMBOBOX",
                                 CBS_DROPDOWNLIST,
                                 CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED,
                                 CBS_DROPDOWNLIST | CBS_OWNERDRAWVARIABLE | CBS_HASSTRINGS,
                                 CB_ADDSTRING,
                                 CB_GETLBTEXT,
                                 "Unspecified error in adding a string to a combo box",
                                 "Unspecified error in adding an owner draw item to a combo box",
                                 "Error when deleting a combo box item",
                                 "Can't set combo box item data",
                                 "Can't get combo box item text"};

template <class Box> std::wstring textOf(const Box& box, int index)
{
    wchar_t text[100] = L"";
    SendMessageW(box, kind<Box>.getText, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    return text;
}
} // namespace

TEMPLATE_TEST_CASE("Boxes: texts of both widths are added, found, selected and deleted", "", ComboBox, ListBox)
{
    const Hosted<TestType> host(kind<TestType>.className, kind<TestType>.plain);
    const TestType& box = host.control;
    CHECK((box.addString("one") == 0 && box.addString(L"tw\u00F6 \u03B2") == 1 && box.addString("three") == 2));
    CHECK((box.getCount() == 3 && textOf(box, 1) == L"tw\u00F6 \u03B2"));
    CHECK((box.findString("t") == 1 && box.findString("T", 1) == 2 && box.findString("one", 1) == 0));
    CHECK((box.findString(L"tw\u00F6 \u03B2") == 1 && box.findString("four") == -1));

    CHECK((box.getCurrentSelection() == -1 && box.setCurrentSelection(2) == 2 && box.getCurrentSelection() == 2));
    box.setCurrentSelection(static_cast<unsigned>(-1));
    CHECK(box.getCurrentSelection() == -1);

    CHECK((box.insertString(1, L"new \u03B2") == 1 && box.insertString(static_cast<unsigned>(-1), "end") == 4));
    CHECK((box.getStringW(1) == L"new \u03B2" && box.getStringA(4) == "end" && box.getStringA(0) == "one"));
    expectWindowsError([&] { (void)box.getStringW(9); }, kind<TestType>.cannotGetText);
    box.deleteString(4);
    box.deleteString(1);

    box.setItemData(1, address);
    CHECK((box.deleteString(0) == 2 && box.getItemData(0) == address));
    expectWindowsError([&] { box.deleteString(2); }, kind<TestType>.cannotDelete);
    expectWindowsError([&] { box.setItemData(2, nullptr); }, kind<TestType>.cannotSetData);
    box.resetContent();
    const HINSTANCE program = GetModuleHandleW(nullptr);
    CHECK((box.addString(stringResource, program) == 2 && box.addString(4711, program) == -1));
    REQUIRE(box.getCount() == 3);
    CHECK((textOf(box, 0) == L"alpha" && textOf(box, 1) == L"beta" && textOf(box, 2) == L" gamma"));
}

TEST_CASE("ListBox: several items can be selected, or one")
{
    const unsigned long style = GENERATE(LBS_MULTIPLESEL, 0ul);
    const Hosted<ListBox> host(L"LISTBOX", style);
    const ListBox& box = host.control;
    for (const char* text : {"a", "b", "c"})
        box.addString(text);
    CHECK(box.getSelectedItems().empty());
    if (style) {
        box.setSelected(static_cast<unsigned>(-1), true);
        box.setSelected(1, false);
        expectWindowsError([&] { box.setSelected(9, true); }, "Can't select listbox item");
        CHECK((box.isSelected(0) && !box.isSelected(1) && box.getSelectedItems() == std::vector<int>{0, 2}));
    } else {
        box.setCurrentSelection(0);
        CHECK((box.isSelected(0) && !box.isSelected(9) && box.getSelectedItems() == std::vector<int>{0}));
    }
}

TEMPLATE_TEST_CASE("Boxes: an owner-drawn box without strings takes values", "", ComboBox, ListBox)
{
    const Hosted<TestType> fixed(kind<TestType>.className, kind<TestType>.drawn);
    const TestType& box = fixed.control;
    CHECK((box.addItem(address) == 0 && box.getItemData(0) == address));
    CHECK((box.isOwnerDraw() && box.isOwnerDrawFixed() && !box.isOwnerDrawVariable() && !box.hasStrings()));

    const Hosted<TestType> variable(kind<TestType>.className, kind<TestType>.variable);
    const TestType& other = variable.control;
    CHECK((other.isOwnerDraw() && !other.isOwnerDrawFixed() && other.isOwnerDrawVariable() && other.hasStrings()));
}

TEMPLATE_TEST_CASE("Boxes: a full box is a failed allocation, any other refusal a runtime error", "", ComboBox, ListBox)
{
    const Stubborn full(kind<TestType>.add, CB_ERRSPACE), broken(kind<TestType>.add, CB_ERR);
    const TestType fullBox(full.getWindowHandle()), brokenBox(broken.getWindowHandle()), gone;
    expectError<BadAllocation>([&] { fullBox.addString("a"); }, "bad allocation");
    expectError<BadAllocation>([&] { fullBox.addItem(nullptr); }, "bad allocation");
    expectError<std::runtime_error>([&] { brokenBox.addString("a"); }, kind<TestType>.cannotAdd);
    expectError<std::runtime_error>([&] { brokenBox.addString(L"a"); }, kind<TestType>.cannotAdd);
    expectError<std::runtime_error>([&] { brokenBox.addItem(nullptr); }, kind<TestType>.cannotAddItem);
    expectError<std::runtime_error>([&] { gone.addString("a"); }, kind<TestType>.cannotAdd);
    const Stubborn mute(std::is_same_v<TestType, ListBox> ? LB_GETTEXTLEN : CB_GETLBTEXTLEN, CB_ERR);
    SetLastError(ERROR_FILE_NOT_FOUND); // That of another call is none of this one.
    const TestType muteBox(mute.getWindowHandle());
    expectWindowsError([&] { (void)muteBox.getStringW(0); }, ERROR_SUCCESS, kind<TestType>.cannotGetText);
}
