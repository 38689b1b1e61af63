#include <tarn/Window.h>

#include <catch2/catch.hpp>

#include <set>

using namespace tarn;

TEST_CASE("getWMIdentifier: a listed message has its name", "[window][names]")
{
    CHECK(getWMIdentifier(0) == "WM_NULL");
    CHECK(getWMIdentifier(WM_KEYDOWN) == "WM_KEYDOWN");
    CHECK(getWMIdentifier(WM_KEYLAST) == "WM_KEYLAST");
    CHECK(getWMIdentifier(WM_USERCHANGED) == "WM_USERCHANGED");
    CHECK(getWMIdentifier(WM_WININICHANGE) == "WM_WININICHANGE");
    CHECK(getWMIdentifier(WM_APPCOMMAND) == "WM_APPCOMMAND");
    CHECK(getWMIdentifier(0x8000) == "WM_APP");
    std::set<std::string> names;
    for (UINT msg = 0; msg <= 0xFFFF; ++msg) {
        const BasicString<char> name = getWMIdentifier(msg);
        if (name.startsWith("WM_") && !name.contains("+"))
            names.insert(name);
    }
    CHECK(names.size() == 202);
}

TEST_CASE("getWMIdentifier: a message without a name is shown by its range and number", "[window][names]")
{
    CHECK(getWMIdentifier(0x357) == "Unknown window message 855");
    CHECK(getWMIdentifier(0x358) == "WM_PENWINFIRST+0");
    CHECK(getWMIdentifier(0x35F) == "WM_PENWINFIRST+7");
    CHECK(getWMIdentifier(0x365) == "WM_PENWINFIRST+5");
    CHECK(getWMIdentifier(0x37F) == "WM_PENWINFIRST+31");
    CHECK(getWMIdentifier(0x38F) == "WM_PENWINFIRST+15");
    CHECK(getWMIdentifier(0x390) == "Unknown window message 912");
    CHECK(getWMIdentifier(0x400) == "WM_USER+0");
    CHECK(getWMIdentifier(0x401) == "WM_USER+1");
    CHECK(getWMIdentifier(0x8001) == "WM_USER+31745");
    CHECK(getWMIdentifier(0xFFFFFFFF) == "WM_USER+4294966271");
}
