#include "Controls.h"

#include <tarn/ComboBox.h>
#include <tarn/ListBox.h>

#include <stdexcept>

using namespace tarn;

namespace {
struct ComboTraits {
    using Box = ComboBox;
    static constexpr const wchar_t* className = L"COMBOBOX";
    static constexpr unsigned long plain = CBS_DROPDOWNLIST, drawn = CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED;
    static constexpr unsigned long variable = CBS_DROPDOWNLIST | CBS_OWNERDRAWVARIABLE | CBS_HASSTRINGS;
    static constexpr UINT add = CB_ADDSTRING, getText = CB_GETLBTEXT;
    static constexpr const char* cannotAdd = "Unspecified error in adding a string to a combo box";
    static constexpr const char* cannotAddItem = "Unspecified error in adding an owner draw item to a combo box";
    static constexpr const char* cannotDelete = "Error when deleting a combo box item";
    static constexpr const char* cannotSetData = "Can't set combo box item data";
};
struct ListTraits {
    using Box = ListBox;
    static constexpr const wchar_t* className = L"LISTBOX";
    static constexpr unsigned long plain = 0, drawn = LBS_OWNERDRAWFIXED;
    static constexpr unsigned long variable = LBS_OWNERDRAWVARIABLE | LBS_HASSTRINGS;
    static constexpr UINT add = LB_ADDSTRING, getText = LB_GETTEXT;
    static constexpr const char* cannotAdd = "Can't add string to listbox";
    static constexpr const char* cannotAddItem = "Can't add item to listbox";
    static constexpr const char* cannotDelete = "Can't delete listbox item";
    static constexpr const char* cannotSetData = "Can't set listbox item data";
};

template <class Traits> std::wstring textOf(const Window& box, int index)
{
    wchar_t text[100] = L"";
    SendMessageW(box, Traits::getText, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    return text;
}
} // namespace

TEMPLATE_TEST_CASE("Boxes: texts of both widths are added, found, selected and deleted", "[controls]", ComboTraits,
                   ListTraits)
{
    support::Host host;
    typename TestType::Box box;
    host.add(box, TestType::className, TestType::plain);
    CHECK(box.addString("one") == 0);
    CHECK(box.addString(L"tw\u00F6 \u03B2") == 1);
    CHECK(box.addString("three") == 2);
    CHECK(textOf<TestType>(box, 1) == L"tw\u00F6 \u03B2");
    CHECK(box.getCount() == 3);

    CHECK(box.findString("T") == 1);
    CHECK(box.findString("t", 1) == 2);
    CHECK(box.findString("one", 1) == 0);
    CHECK(box.findString(L"tw\u00F6 \u03B2") == 1);
    CHECK(box.findString("four") == -1);

    CHECK(box.getCurrentSelection() == -1);
    CHECK(box.setCurrentSelection(2) == 2);
    CHECK(box.getCurrentSelection() == 2);
    box.setCurrentSelection(static_cast<unsigned>(-1));
    CHECK(box.getCurrentSelection() == -1);

    box.setItemData(1, &host);
    CHECK(box.getItemData(1) == &host);
    CHECK(box.deleteString(0) == 2);
    CHECK(box.getItemData(0) == &host);
    support::expectFailure([&] { box.deleteString(2); }, TestType::cannotDelete);
    support::expectFailure([&] { box.setItemData(2, nullptr); }, TestType::cannotSetData);
    box.resetContent();
    CHECK(box.getCount() == 0);
}

TEMPLATE_TEST_CASE("Boxes: each line of a string resource becomes an item", "[controls]", ComboTraits, ListTraits)
{
    support::Host host;
    typename TestType::Box box;
    host.add(box, TestType::className, TestType::plain);
    const HINSTANCE program = GetModuleHandleW(nullptr);
    CHECK(box.addString(support::stringResource, program) == 2);
    REQUIRE(box.getCount() == 3);
    CHECK(textOf<TestType>(box, 0) == L"alpha");
    CHECK(textOf<TestType>(box, 1) == L"beta");
    CHECK(textOf<TestType>(box, 2) == L" gamma");
    CHECK(box.addString(4711, program) == -1);
    CHECK(box.getCount() == 3);
}

TEMPLATE_TEST_CASE("Boxes: an owner-drawn box without strings takes values", "[controls]", ComboTraits, ListTraits)
{
    support::Host host;
    typename TestType::Box box;
    host.add(box, TestType::className, TestType::drawn);
    CHECK(box.addItem(&host) == 0);
    CHECK(box.getItemData(0) == &host);
    CHECK((box.isOwnerDraw() && box.isOwnerDrawFixed()));
    CHECK_FALSE((box.isOwnerDrawVariable() || box.hasStrings()));

    host.add(box, TestType::className, TestType::variable, 101);
    CHECK((box.isOwnerDraw() && box.isOwnerDrawVariable() && box.hasStrings()));
    CHECK_FALSE(box.isOwnerDrawFixed());
}

TEMPLATE_TEST_CASE("Boxes: a full box is a failed allocation, any other refusal a runtime error", "[controls]",
                   ComboTraits, ListTraits)
{
    const support::Stubborn full(TestType::add, CB_ERRSPACE), broken(TestType::add, CB_ERR);
    const typename TestType::Box fullBox(full.getWindowHandle()), brokenBox(broken.getWindowHandle()), gone;
    support::expectError<BadAllocation>([&] { fullBox.addString("a"); }, "bad allocation");
    support::expectError<BadAllocation>([&] { fullBox.addString(L"a"); }, "bad allocation");
    support::expectError<BadAllocation>([&] { fullBox.addItem(nullptr); }, "bad allocation");
    support::expectError<std::runtime_error>([&] { brokenBox.addString("a"); }, TestType::cannotAdd);
    support::expectError<std::runtime_error>([&] { brokenBox.addString(L"a"); }, TestType::cannotAdd);
    support::expectError<std::runtime_error>([&] { brokenBox.addItem(nullptr); }, TestType::cannotAddItem);
    support::expectError<std::runtime_error>([&] { gone.addString("a"); }, TestType::cannotAdd);
}
