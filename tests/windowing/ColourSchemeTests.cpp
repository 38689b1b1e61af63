#include "Diverted.h"
#include "Windows.h"

#include <tarn/ColourScheme.h>
#include <tarn/RegistryKey.h>

#include <optional>

namespace {
/// What the user has chosen, until the test is over.
class ChosenScheme {
public:
    ChosenScheme()
        : key_(RegistryKey::createOwned(
              HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize", KEY_ALL_ACCESS)),
          former_(key_.findDWordValue(name))
    {
    }
    ~ChosenScheme() { choose(former_); }

    void choose(std::optional<unsigned long> isLight) const
    {
        if (isLight)
            key_.setValue(name, *isLight);
        else if (key_.existsValue(name))
            key_.deleteValue(name);
    }

private:
    static constexpr const wchar_t* name = L"AppsUseLightTheme";
    RegistryKey key_;
    std::optional<unsigned long> former_;
};

BOOL WINAPI tellHighContrast(UINT what, UINT, void* data, UINT change)
{
    auto* const contrast = static_cast<HIGHCONTRASTW*>(data);
    contrast->dwFlags = HCF_HIGHCONTRASTON;
    return what == SPI_GETHIGHCONTRAST && contrast->cbSize == sizeof *contrast && change == 0;
}
} // namespace

TEST_CASE("ColourScheme: it is the user's, light where nothing is said, and has colours that can be read")
{
    const ChosenScheme user;
    user.choose(1);
    CHECK(ColourScheme::ofUser() == ColourScheme());
    user.choose(std::nullopt);
    CHECK(!ColourScheme::ofUser().isDark());
    user.choose(0);
    CHECK(ColourScheme::ofUser() == ColourScheme::dark());
    {
        const Diverted calls(L"user32.dll", "SystemParametersInfoW", &tellHighContrast);
        CHECK(ColourScheme::ofUser() == ColourScheme()); // Its colours are the system's own.
    }

    const auto brightness = [](unsigned long colour) {
        return GetRValue(colour) + GetGValue(colour) + GetBValue(colour);
    };
    const std::pair<int, int> textsOn[] = {{COLOR_WINDOWTEXT, COLOR_WINDOW}, {COLOR_BTNTEXT, COLOR_BTNFACE},
                                           {COLOR_MENUTEXT, COLOR_MENU},     {COLOR_INFOTEXT, COLOR_INFOBK},
                                           {COLOR_GRAYTEXT, COLOR_BTNFACE},  {COLOR_HOTLIGHT, COLOR_WINDOW}};
    for (const auto& [text, ground] : textsOn) {
        CHECK(brightness(ColourScheme::dark().getColour(text)) >
              brightness(ColourScheme::dark().getColour(ground)) + 250);
        CHECK(ColourScheme().getColour(text) == GetSysColor(text));
    }
}

TEST_CASE("ColourScheme: a window hears of a change, after the setting")
{
    struct Listener : Window {
        void onSettingsChanged(UINT, const wchar_t* section) override { heard += section ? section : L"-"; }
        void onColourSchemeChanged(const ColourScheme& scheme) override
        {
            heard += scheme.isDark() ? L" dark " : L" light ";
        }
        std::wstring heard;
    } window;
    open(window);
    const ChosenScheme user;
    user.choose(0);
    const auto send = [&](UINT what, const wchar_t* section) {
        SendMessageW(window, WM_SETTINGCHANGE, what, reinterpret_cast<LPARAM>(section));
    };
    send(0, L"ImmersiveColorSet");
    send(0, L"intl");
    user.choose(1);
    send(SPI_SETHIGHCONTRAST, nullptr);
    CHECK(window.heard == L"ImmersiveColorSet dark intl- light ");
}

namespace {
struct {
    HWND window;
    DWORD attribute;
    BOOL value;
    HRESULT result;
} titleBar;

HRESULT WINAPI setAttribute(HWND window, DWORD attribute, const void* value, DWORD size)
{
    titleBar.window = window;
    titleBar.attribute = attribute;
    titleBar.value = size == sizeof(BOOL) ? *static_cast<const BOOL*>(value) : -1;
    return titleBar.result;
}
} // namespace

TEST_CASE("Window: the title bar is asked to be dark, and one that cannot be is no failure")
{
    const Diverted calls(L"dwmapi.dll", "DwmSetWindowAttribute", &setAttribute);
    const OpenWindow window;
    CHECK(window.setDarkTitleBar(true));
    CHECK((titleBar.window == window && titleBar.attribute == 20 && titleBar.value == TRUE));
    titleBar.result = E_INVALIDARG; // As Windows before 2020 says.
    CHECK_FALSE(window.setDarkTitleBar(false));
    CHECK(titleBar.value == FALSE);
}
