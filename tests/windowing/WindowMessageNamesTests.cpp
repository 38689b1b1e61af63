#include "Test.h"

#include <tarn/WindowMessageNames.h>

#include <locale>

TEST_CASE("getWMIdentifier: a message has its name, or is shown by its range and number")
{
    const std::pair<UINT, const char*> messages[] = {
        {0, "WM_NULL"},
        {WM_KEYDOWN, "WM_KEYDOWN"},
        {WM_KEYLAST, "WM_KEYLAST"},
        {WM_USERCHANGED, "WM_USERCHANGED"},
        {WM_WININICHANGE, "WM_WININICHANGE"},
        {WM_APPCOMMAND, "WM_APPCOMMAND"},
        {0x357, "Unknown window message 855"},
        {0x358, "WM_PENWINFIRST+0"},
        {0x35F, "WM_PENWINFIRST+7"},
        {0x365, "WM_PENWINFIRST+5"},
        {0x37F, "WM_PENWINFIRST+31"},
        {0x38F, "WM_PENWINFIRST+15"},
        {0x390, "Unknown window message 912"},
        {0x400, "WM_USER+0"},
        {0x8000, "WM_APP"},
        {0x8001, "WM_USER+31745"},
        {0xFFFFFFFF, "WM_USER+4294966271"},
    };
    struct Grouping : std::numpunct<char> {
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale former = std::locale::global(std::locale(std::locale(), new Grouping));
    for (const auto& [msg, name] : messages)
        CHECK(getWMIdentifier(msg) == name);
    std::locale::global(former);
}
