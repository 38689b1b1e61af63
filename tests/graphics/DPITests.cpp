#include "Test.h"

#include <tarn/DPI.h>
#include <tarn/Font.h>

TEST_CASE("DPI: units become pixels and pixels units, rounded to the nearest")
{
    CHECK((DPI(96).toPixels(-7) == -7 && DPI(144).toPixels(7) == 11 && DPI(192).toPixels(7) == 14));
    CHECK((DPI(144).toUnits(11) == 7 && DPI(120).toUnits(-10) == -8));
    CHECK(DPI(192).toPixels(Rect(1, 2, 3, 4)) == Rect(2, 4, 6, 8));
    CHECK(DPI(192).toUnits(DPI(192).toPixels(Size(5, 6))) == Size(5, 6));
    CHECK(DPI(144).toPixels(Point(2, 4)) == Point(3, 6));
    CHECK((DPI(96).fontHeight(9) == -12 && DPI(144).fontHeight(9) == -18));
    CHECK((DPI(0) == DPI() && DPI::ofSystem().getDots() >= 96));
}

TEST_CASE("DPI: the first picture with enough dots is chosen, else the last")
{
    const auto chosen = [](unsigned dots) { return DPI(dots).choose({{96, 'a'}, {144, 'b'}, {192, 'c'}}); };
    CHECK((chosen(96) == 'a' && chosen(120) == 'b' && chosen(144) == 'b' && chosen(192) == 'c' && chosen(288) == 'c'));
}

TEST_CASE("Font: a font for another screen differs in its size alone")
{
    const auto attributesOf = [](const Font& font) {
        LOGFONTW attributes;
        REQUIRE(GetObjectW(font, sizeof attributes, &attributes));
        return attributes;
    };
    const Font font(-12, 0, 0, 0, FW_BOLD, true, false, false, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
    const LOGFONTW after = attributesOf(font.rescaled(DPI(96), DPI(144)));
    CHECK(after.lfHeight == -18);
    CHECK((after.lfWeight == FW_BOLD && after.lfItalic && BasicString<wchar_t>(after.lfFaceName) == L"Tahoma"));

    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    REQUIRE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0));
    const unsigned dots = DPI::ofSystem().getDots();
    CHECK(attributesOf(Font::ofSystem()).lfHeight == metrics.lfMessageFont.lfHeight);
    CHECK(attributesOf(Font::ofSystem(DPI(2 * dots))).lfHeight == 2 * metrics.lfMessageFont.lfHeight);
}
