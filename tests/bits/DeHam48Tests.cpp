#include "Test.h"

#include <tarn/DeHam48.h>
#include <tarn/Export.h>

#include <array>

namespace tarn::detail {
extern TARN_API const std::array<signed char, 256> deHam48Table; // What programs of 0.1.0 read.
}

TEST_CASE("DeHam48: every byte gives its code's value, corrected by one bit, or -1")
{
    constexpr std::array<unsigned char, 16> codes = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                                     0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};
    std::array<int, 256> expected{};
    expected.fill(-1);
    for (unsigned value = 0; value < 16; ++value) {
        expected[codes[value]] = static_cast<int>(value);
        for (unsigned bit = 0; bit < 8; ++bit)
            expected[codes[value] ^ (1u << bit)] = static_cast<int>(value);
    }
    for (unsigned byte = 0; byte < 256; ++byte) {
        CAPTURE(byte);
        CHECK(DeHam48(static_cast<unsigned char>(byte)) == expected[byte]);
        CHECK(tarn::detail::deHam48Table[byte] == expected[byte]);
    }
}
