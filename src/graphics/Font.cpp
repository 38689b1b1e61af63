#include <tarn/Font.h>

#include "../foundation/Check.h"

#include <type_traits>

namespace tarn {
namespace {
template <class Ch, class... Parameters> HFONT newFont(const Ch* face, Parameters... parameters)
{
    const auto make = [=] {
        if constexpr (std::is_same_v<Ch, char>)
            return CreateFontA(parameters..., face);
        else
            return CreateFontW(parameters..., face);
    };
    return ensureGDI(make, "Can't create font");
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

Font Font::rescaled(const DPI& from, const DPI& to) const
{
    constexpr const char* failed = "Can't create font";
    LOGFONTW font;
    ensureGDI([&] { return GetObjectW(getHandle(), sizeof font, &font); }, failed);
    for (LONG* const length : {&font.lfHeight, &font.lfWidth})
        *length = MulDiv(*length, static_cast<int>(to.getDots()), static_cast<int>(from.getDots()));
    return {ensureGDI([&] { return CreateFontIndirectW(&font); }, failed), true};
}
} // namespace tarn
