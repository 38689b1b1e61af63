#pragma once

#include <tarn/Export.h>
#include <tarn/Point.h>
#include <tarn/Rect.h>
#include <tarn/Size.h>
#include <tarn/Windows.h>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace tarn {
/// How many dots a screen has to the inch, and what follows for sizes.
///
/// Sizes in units of 1/96 inch look the same on all screens; at 96 dots they are pixels. Window::getDPI() gives that of
/// a window, and Window::onDPIChanged() tells when it is another: only a program with the manifest that
/// `tarn_add_program` gives it sees more than one value.
class TARN_API DPI {
public:
    /// 96 dots are what screens had when nothing was said.
    explicit constexpr DPI(unsigned dots = 96) : dots_(dots ? dots : 96) {}
    /// That of the main screen when the program began.
    static DPI ofSystem();

    /// 96, 120, 144, 192 or any number between.
    constexpr unsigned getDots() const { return dots_; }

    /// From units to pixels, rounded to the nearest.
    ///@{
    int toPixels(int units) const { return MulDiv(units, static_cast<int>(dots_), 96); }
    Point toPixels(const POINT& units) const { return Point(toPixels(units.x), toPixels(units.y)); }
    Size toPixels(const SIZE& units) const { return Size(toPixels(units.cx), toPixels(units.cy)); }
    Rect toPixels(const RECT& units) const
    {
        return Rect(toPixels(units.left), toPixels(units.top), toPixels(units.right), toPixels(units.bottom));
    }
    ///@}
    /// And back.
    ///@{
    int toUnits(int pixels) const { return MulDiv(pixels, 96, static_cast<int>(dots_)); }
    Point toUnits(const POINT& pixels) const { return Point(toUnits(pixels.x), toUnits(pixels.y)); }
    Size toUnits(const SIZE& pixels) const { return Size(toUnits(pixels.cx), toUnits(pixels.cy)); }
    Rect toUnits(const RECT& pixels) const
    {
        return Rect(toUnits(pixels.left), toUnits(pixels.top), toUnits(pixels.right), toUnits(pixels.bottom));
    }
    ///@}
    /// What a font takes for a height in points: negative, since it is that of the characters.
    int fontHeight(int points) const { return -MulDiv(points, static_cast<int>(dots_), 72); }

    /// The picture for this screen, of some that were drawn for so many dots each, in ascending order: the first that
    /// has enough dots, else the last. `Icon(dpi.choose({{96, ID_SMALL}, {192, ID_LARGE}}), program)`.
    unsigned choose(std::initializer_list<std::pair<unsigned, unsigned>> pictures) const
    {
        const auto isLess = [](const auto& picture, unsigned dots) { return picture.first < dots; };
        const auto found = std::lower_bound(pictures.begin(), pictures.end(), dots_, isLess);
        return found == pictures.end() ? (found - 1)->second : found->second;
    }

    /// Compares the dots.
    friend constexpr bool operator==(const DPI&, const DPI&) = default;

private:
    unsigned dots_;
};
} // namespace tarn
