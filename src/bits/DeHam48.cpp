#include <tarn/DeHam48.h>

#include <bit>

namespace tarn {
namespace {
constexpr unsigned char codes[16] = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                     0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};

// Any two codes differ in at least four bits, so that no byte is within one bit of two of them.
constexpr signed char decode(unsigned int byte)
{
    for (signed char value = 0; value < 16; ++value) {
        if (std::popcount(byte ^ codes[value]) <= 1)
            return value;
    }
    return -1;
}

constexpr std::array<signed char, 256> decodeAll()
{
    std::array<signed char, 256> table{};
    for (unsigned int byte = 0; byte < 256; ++byte)
        table[byte] = decode(byte);
    return table;
}
} // namespace

// Computed by the compiler, so that the table is whole before the first call and no thread can meet it
// half filled; and a loop over DeHam48 runs no check of whether it has been filled.
constinit const std::array<signed char, 256> detail::deHam48Table = decodeAll();
} // namespace tarn
