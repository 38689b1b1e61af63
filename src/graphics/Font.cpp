#include <tarn/Font.h>

#include "../foundation/Check.h"

#include <type_traits>

namespace tarn {
namespace {
constexpr const char* cannotCreate = "Can't create font";

template <class Ch, class... Parameters> HFONT newFont(const Ch* face, Parameters... parameters)
{
    const auto make = [=] {
        if constexpr (std::is_same_v<Ch, char>)
            return CreateFontA(parameters..., face);
        else
            return CreateFontW(parameters..., face);
    };
    return ensureGDI(make, cannotCreate);
}

Font scaled(LOGFONTW font, const DPI& from, const DPI& to)
{
    for (LONG* const length : {&font.lfHeight, &font.lfWidth})
        *length = MulDiv(*length, static_cast<int>(to.getDots()), static_cast<int>(from.getDots()));
    return {ensureGDI([&] { return CreateFontIndirectW(&font); }, cannotCreate), true};
}
} // namespace

Font::Font(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
           bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
           unsigned long quality, unsigned long pitchAndFamily, const char* face)
{
    create(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet, outPrecision,
           clipPrecision, quality, pitchAndFamily, face);
}
Font::Font(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
           bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
           unsigned long quality, unsigned long pitchAndFamily, const wchar_t* face)
{
    create(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet, outPrecision,
           clipPrecision, quality, pitchAndFamily, face);
}

void Font::create(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
                  bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
                  unsigned long quality, unsigned long pitchAndFamily, const char* face)
{
    close();
    setHandle(newFont(face, height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                      outPrecision, clipPrecision, quality, pitchAndFamily),
              true);
}
void Font::create(int height, int width, int escapement, int orientation, int weight, bool italic, bool underline,
                  bool strikeOut, unsigned long charSet, unsigned long outPrecision, unsigned long clipPrecision,
                  unsigned long quality, unsigned long pitchAndFamily, const wchar_t* face)
{
    close();
    setHandle(newFont(face, height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                      outPrecision, clipPrecision, quality, pitchAndFamily),
              true);
}

Font Font::ofSystem(const DPI& dpi)
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ensureGDI([&] { return SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0); },
              cannotCreate);
    return scaled(metrics.lfMessageFont, DPI::ofSystem(), dpi);
}

Font Font::rescaled(const DPI& from, const DPI& to) const
{
    LOGFONTW font;
    ensureGDI([&] { return GetObjectW(getHandle(), sizeof font, &font); }, cannotCreate);
    return scaled(font, from, to);
}
} // namespace tarn
