#include <tarn/ColourScheme.h>

#include <tarn/Window.h>

#include "../foundation/FunctionOf.h"
#include "../foundation/SystemLibrary.h"

#include <optional>

// Dark windows, as far as the system's own calls go.

namespace tarn {
namespace {
/// What dark windows have in the place of the system's colours, which are those of light ones.
std::optional<unsigned long> darkColour(int sysColour)
{
    switch (sysColour) {
    case COLOR_WINDOW:
    case COLOR_SCROLLBAR:
        return RGB(32, 32, 32);
    case COLOR_BTNFACE:
    case COLOR_3DLIGHT:
    case COLOR_MENU:
    case COLOR_MENUBAR:
    case COLOR_INFOBK:
        return RGB(44, 44, 44);
    case COLOR_WINDOWTEXT:
    case COLOR_BTNTEXT:
    case COLOR_MENUTEXT:
    case COLOR_INFOTEXT:
        return RGB(240, 240, 240);
    case COLOR_WINDOWFRAME:
    case COLOR_GRAYTEXT:
        return RGB(150, 150, 150);
    case COLOR_BTNHIGHLIGHT:
        return RGB(90, 90, 90);
    case COLOR_BTNSHADOW:
        return RGB(24, 24, 24);
    case COLOR_3DDKSHADOW:
        return RGB(0, 0, 0);
    case COLOR_HOTLIGHT:
        return RGB(120, 190, 255);
    default:
        return std::nullopt;
    }
}

bool hasHighContrast()
{
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON);
}
} // namespace

ColourScheme ColourScheme::ofUser()
{
    DWORD isLight = 1, size = sizeof isLight;
    // Older systems do not have the value: what cannot be read is left as it is.
    RegGetValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                 L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &isLight, &size);
    return ColourScheme(!isLight && !hasHighContrast());
}

unsigned long ColourScheme::getColour(int sysColour) const
{
    return (isDark_ ? darkColour(sysColour) : std::nullopt).value_or(GetSysColor(sysColour));
}

bool Window::setDarkTitleBar(bool isDark) const
{
    // Loaded when asked for, as hardly a program does.
    static const auto setAttribute = functionOf<HRESULT WINAPI(HWND, DWORD, const void*, DWORD)>(
        loadSystemLibrary(L"dwmapi.dll"), "DwmSetWindowAttribute");
    constexpr DWORD useImmersiveDarkMode = 20;
    const BOOL wanted = isDark;
    return setAttribute && SUCCEEDED(setAttribute(hwnd_, useImmersiveDarkMode, &wanted, sizeof wanted));
}
} // namespace tarn
