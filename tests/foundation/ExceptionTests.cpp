#include <catch2/catch.hpp>

#include <tarn/SETranslator.h>

TEST_CASE("SEHError: an access violation arrives as an exception", "[foundation][seh]")
{
    volatile int* volatile nowhere = nullptr;
    try {
        *nowhere = 1;
        FAIL("the write went through");
    } catch (const tarn::SEHError& error) {
        CHECK(error.getCode() == EXCEPTION_ACCESS_VIOLATION);
    }
}
