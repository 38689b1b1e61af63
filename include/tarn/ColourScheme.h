#pragma once

#include <tarn/Export.h>

namespace tarn {
/// Whether windows are dark or light, and the colours of either, for what a program draws itself:
///
///     struct Sheet : Window {
///         void onPaint() override
///         {
///             BufferedPaint context(*this);
///             context.fillRectangle(scheme.getColour(COLOR_WINDOW), context.getUpdateRectangle());
///         }
///         void onColourSchemeChanged(const ColourScheme& next) override // Call it once after create(), too.
///         {
///             scheme = next;
///             setDarkTitleBar(scheme.isDark());
///             invalidate(true);
///         }
///         ColourScheme scheme = ColourScheme::ofUser();
///     };
///
/// The system draws its own controls and menus light: it documents no way to have them dark.
class TARN_API ColourScheme {
public:
    /// Light: the colours that the user has chosen for the system.
    constexpr ColourScheme() = default;
    /// Dark, whatever the user has chosen.
    static constexpr ColourScheme dark() { return ColourScheme(true); }
    /// As the user wants the windows of programs ("AppsUseLightTheme" of the system's settings). Light where the system
    /// does not let users choose, and with a scheme of high contrast, whose colours are those of the system.
    static ColourScheme ofUser();

    /// For the title bar, and for pictures that there are two of.
    constexpr bool isDark() const { return isDark_; }
    /// An RGB colour for one of the system's, `COLOR_WINDOW` or `COLOR_BTNTEXT` for instance.
    unsigned long getColour(int sysColour) const;

    /// Compares whether they are dark.
    friend constexpr bool operator==(const ColourScheme&, const ColourScheme&) = default;

private:
    explicit constexpr ColourScheme(bool isDark) : isDark_(isDark) {}

    bool isDark_ = false;
};
} // namespace tarn
