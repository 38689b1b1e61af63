#include "Windows.h"

#include <tarn/AccessibleItems.h>
#include <tarn/BStr.h>
#include <tarn/COMApartment.h>
#include <tarn/COMInterfacePointer.h>

namespace {
struct Dice : OpenWindow, AccessibleItems {
    Dice() { begin(*this); }
    int getItemCount() const override { return 2; }
    Item getItem(int index) const override
    {
        if (isBroken)
            throw std::runtime_error("in a handler");
        const unsigned long state = index == 1 ? STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED : 0;
        return {index ? L"five" : L"six", ROLE_SYSTEM_STATICTEXT, state, Rect(10 * index, 5, 10 * index + 10, 25),
                index ? L"Roll" : L""};
    }
    void pressItem(int index) override { pressed = index; }
    bool isBroken = false;
    int pressed = -1;
};

using Accessible = COMInterfacePointer<IAccessible>;

Accessible accessibleOf(HWND window)
{
    Accessible result;
    REQUIRE(SUCCEEDED(
        AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), result.putVoid())));
    return result;
}

VARIANT child(long number)
{
    VARIANT result{};
    result.vt = VT_I4;
    result.lVal = number;
    return result;
}

std::wstring nameOf(const Accessible& object, long number)
{
    BSTR name = nullptr;
    object->get_accName(child(number), &name);
    const std::wstring text = name ? name : L"none";
    SysFreeString(name);
    return text;
}

long numberFrom(const Accessible& object, HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, VARIANT*), long number)
{
    VARIANT result{};
    return FAILED((object.get()->*get)(child(number), &result)) ? -1 : result.lVal;
}
} // namespace

TEST_CASE("AccessibleItems: a screen reader gets the names, roles, states and places of what a window draws")
{
    const COMApartment com;
    Dice dice;
    dice.setText(L"Dic\u00E9");
    const Accessible object = accessibleOf(dice);
    LONG count = 0, left = 0, top = 0, width = 0, height = 0;
    CHECK((object->get_accChildCount(&count) == S_OK && count == 2));
    CHECK(
        (nameOf(object, CHILDID_SELF) == L"Dic\u00E9" && nameOf(object, 1) == L"six" && nameOf(object, 2) == L"five"));
    CHECK(numberFrom(object, &IAccessible::get_accRole, CHILDID_SELF) == ROLE_SYSTEM_LIST);
    CHECK(numberFrom(object, &IAccessible::get_accRole, 1) == ROLE_SYSTEM_STATICTEXT);
    CHECK(numberFrom(object, &IAccessible::get_accState, 2) == (STATE_SYSTEM_FOCUSED | STATE_SYSTEM_SELECTED));
    CHECK(numberFrom(object, &IAccessible::get_accRole, 3) == -1);
    const Point corner = dice.toScreen(Point(10, 5));
    CHECK(object->accLocation(&left, &top, &width, &height, child(2)) == S_OK);
    CHECK((left == corner.x && top == corner.y && width == 10 && height == 20));
    VARIANT found{};
    CHECK((object->accHitTest(corner.x, corner.y, &found) == S_OK && found.lVal == 2));
    CHECK((object->accHitTest(corner.x + 50, corner.y, &found) == S_OK && found.lVal == CHILDID_SELF));
    CHECK((object->accHitTest(corner.x - 5000, corner.y, &found) == S_FALSE && found.vt == VT_EMPTY));
    CHECK((object->get_accFocus(&found) == S_OK && found.lVal == 2));
    CHECK((object->get_accSelection(&found) == S_OK && found.lVal == 2));
    BStr action, none;
    CHECK((object->get_accDefaultAction(child(2), action.put()) == S_OK && action.toString() == L"Roll"));
    CHECK(object->get_accDefaultAction(child(1), none.put()) == DISP_E_MEMBERNOTFOUND);
    COMInterfacePointer<IDispatch> parent;
    CHECK((object->get_accParent(parent.put()) == S_OK && parent.as<IAccessible>()));
    CHECK(numberFrom(object, &IAccessible::get_accState, CHILDID_SELF) ==
          (STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_INVISIBLE));
    CHECK(object->accDoDefaultAction(child(1)) == DISP_E_MEMBERNOTFOUND);
    CHECK((object->accDoDefaultAction(child(2)) == S_OK && dice.pressed == 1));
}

TEST_CASE("AccessibleItems: what has ended answers no more, and what a handler throws fails the question")
{
    const COMApartment com;
    auto dice = std::make_unique<Dice>();
    const Accessible object = accessibleOf(*dice);
    dice->isBroken = true;
    expectError<std::runtime_error>([&] { nameOf(object, 1); }, "in a handler");
    dice->isBroken = false;
    CHECK(nameOf(object, 1) == L"six");
    dice->tell(EVENT_OBJECT_FOCUS, 1);
    SECTION("with its window") { dice->destroy(); }
    SECTION("by itself") { dice->end(); }
    SECTION("with the object") { dice.reset(); }
    LONG count = 9;
    CHECK((object->get_accChildCount(&count) == CO_E_OBJNOTCONNECTED && count == 0));
}
