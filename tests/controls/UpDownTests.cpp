#include "Controls.h"

#include <tarn/EditControl.h>
#include <tarn/UpDown.h>

TEST_CASE("UpDown: the number is that of its buddy, within the range")
{
    Host host;
    EditControl field;
    field.create(host, 5, Rect(10, 10, 60, 30), 0);
    UpDown arrows;
    arrows.create(host, 6, Rect(70, 10, 80, 30), UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_NOTHOUSANDS);
    CHECK(arrows.setBuddy(field) == nullptr);
    CHECK((arrows.getBuddy() == field.getWindowHandle() && field.getWindowSize().cx < 50)); // It made room.
    arrows.setRange(-5, 100'000);
    CHECK(arrows.getRange() == std::pair(-5, 100'000));
    CHECK(UpDown().getRange() == std::pair(0, 0));
    arrows.setPosition(70'000);
    CHECK((arrows.getPosition() == 70'000 && field.getTextW() == L"70000"));
    field.setText(L"-2");
    CHECK((arrows.getPosition() == -2 && arrows.setPosition(-6) == -2 && arrows.getPosition() == -5));
    field.setText(L"none");
    expectWindowsError([&] { arrows.getPosition(); }, ERROR_INVALID_DATA, "Can't get position of up-down control");
    UpDown alone;
    alone.create(host, 7, Rect(70, 40, 80, 60), 0);
    alone.setPosition(12);
    CHECK(alone.getPosition() == 12);
}
