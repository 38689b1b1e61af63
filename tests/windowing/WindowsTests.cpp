#include <tarn/Window.h>

// After a header of the library, in the order that formatting must not change.
// clang-format off
#include <mmsystem.h>
#include <dbt.h>
#include <vfw.h>
// clang-format on

#include <catch2/catch.hpp>

TEST_CASE("Windows.h: the platform's other headers compile after it")
{
    CHECK(sizeof(DEV_BROADCAST_HDR) == 12);
    CHECK(sizeof(MMTIME) == 12);
    CHECK(sizeof(ICINFO) > 0);
}
