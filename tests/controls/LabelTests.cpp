#include "Controls.h"

#include <tarn/Font.h>
#include <tarn/Label.h>
#include <tarn/Rect.h>

using tarn::Label;

TEST_CASE("Label: it shows its text in the font of its parent")
{
    struct Parent : support::Host {
        LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
        {
            return msg == WM_GETFONT ? reinterpret_cast<LRESULT>(font) : Host::onMessage(msg, wParam, lParam);
        }
        HFONT font = static_cast<HFONT>(GetStockObject(ANSI_FIXED_FONT));
    } parent;
    Label wide, narrow;
    wide.create(parent, 7, tarn::Rect(1, 2, 60, 20), L"&\u03B2");
    narrow.create(parent, 8, tarn::Rect(1, 30, 60, 50), "&Name", WS_VISIBLE | SS_RIGHT);
    CHECK((parent.getTextW(7) == L"&\u03B2" && parent.getTextW(8) == L"&Name"));
    CHECK((wide.getFont() == parent.font && narrow.getFont() == parent.font));
    CHECK((narrow.getStyle() & (SS_RIGHT | WS_VISIBLE)) == (SS_RIGHT | WS_VISIBLE));
    narrow.setFont(nullptr);
    CHECK(narrow.getFont() == nullptr);
    parent.font = nullptr; // Then it is the system's, one for all.
    narrow.create(parent, 8, RECT(), "Name");
    wide.create(parent, 7, RECT(), L"Name");
    LOGFONTW used, expected;
    const tarn::Font system = tarn::Font::ofSystem();
    REQUIRE(GetObjectW(system, sizeof expected, &expected));
    REQUIRE(narrow.getFont() != nullptr);
    REQUIRE(GetObjectW(narrow.getFont(), sizeof used, &used));
    CHECK((used.lfHeight == expected.lfHeight && wide.getFont() == narrow.getFont()));
    support::expectWindowsError([] { Label().create(nullptr, 7, RECT(), "none"); }, "Can't create window");
}
