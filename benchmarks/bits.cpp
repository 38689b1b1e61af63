#include "Growth.h"
#include "Ratios.h"

#include <catch2/catch.hpp>

#include <tarn/BitField.h>
#include <tarn/DeHam48.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

using Bytes = std::vector<unsigned char>;

namespace {
constexpr unsigned megabyte = 1 << 20;

/// Bytes that follow no pattern which a branch predictor could learn.
Bytes noise(unsigned size)
{
    Bytes bytes(size);
    unsigned state = 1;
    for (unsigned char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<unsigned char>(state >> 24);
    }
    return bytes;
}

constexpr std::array<signed char, 256> makeHammingTable()
{
    constexpr unsigned char codes[16] = {0x15, 0x02, 0x49, 0x5E, 0x64, 0x73, 0x38, 0x2F,
                                         0xD0, 0xC7, 0x8C, 0x9B, 0xA1, 0xB6, 0xFD, 0xEA};
    std::array<signed char, 256> table{};
    table.fill(-1);
    for (unsigned value = 0; value < 16; ++value) {
        table[codes[value]] = static_cast<signed char>(value);
        for (unsigned bit = 0; bit < 8; ++bit)
            table[codes[value] ^ (1u << bit)] = static_cast<signed char>(value);
    }
    return table;
}

// Not a part of the measuring around it, which leaves one of two loops without the registers that it needs.
template <class Decode> [[gnu::noinline]] void decodeAll(const Bytes& received, signed char* decoded, Decode decode)
{
    for (const unsigned char byte : received)
        *decoded++ = decode(byte);
}
} // namespace

TEST_CASE("Bit fields against plain memory")
{
    bench::Ratios ratios("Bit fields");
    Bytes bytes(megabyte + 1);
    for (const unsigned offset : {0u, 3u}) {
        tarn::BitField field(bytes.data(), offset, megabyte * 8);
        ratios.row(
            "BitField::set of 1 MB from bit " + std::to_string(offset) + " on / memset", 1.1,
            [&] {
                field.set(true);
                bench::keep(bytes[0]);
            },
            [&] {
                std::memset(bytes.data(), 0xFF, megabyte);
                bench::keep(bytes[0]);
            });
    }

    Bytes from = noise(megabyte + 1);
    tarn::BitField source(from.data(), 3, megabyte * 8);
    ratios.row(
        "Copy of 1 MB, both from bit 3 on / bit by bit", 1.0 / 8,
        [&] {
            tarn::BitField target(bytes.data(), 3, megabyte * 8);
            target = source;
            bench::keep(bytes[0]);
        },
        [&] {
            tarn::BitField target(bytes.data(), 3, megabyte * 8);
            for (unsigned n = 0; n < megabyte * 8; ++n)
                target[n] = source.get(n);
            bench::keep(bytes[0]);
        });
}

TEST_CASE("Hamming decoding against a constant table")
{
    static constexpr std::array<signed char, 256> table = makeHammingTable();
    bench::Ratios ratios("Hamming 8/4 decoding");
    const Bytes received = noise(64 * megabyte);
    ratios.row(
        "DeHam48 over 64 MB, summed / constant table", 1.1,
        [&] {
            int sum = 0;
            for (const unsigned char byte : received)
                sum += tarn::DeHam48(byte);
            bench::keep(sum);
        },
        [&] {
            int sum = 0;
            for (const unsigned char byte : received)
                sum += table[byte];
            bench::keep(sum);
        });

    std::vector<signed char> decoded(received.size());
    ratios.row(
        "DeHam48 over 64 MB, stored / constant table", 1.1,
        [&] { decodeAll(received, decoded.data(), [](unsigned char byte) { return tarn::DeHam48(byte); }); },
        [&] { decodeAll(received, decoded.data(), [](unsigned char byte) { return table[byte]; }); });
}

TEST_CASE("Bit fields: growth", "[.growth]")
{
    const bench::Growth growth("Setting all bits of a field", "bytes");
    growth.line("library", bench::tens(2, 7), [](unsigned size) {
        return [bytes = Bytes(size + 1), size]() mutable {
            tarn::BitField(bytes.data(), 3, size * 8).set(true);
            bench::keep(bytes[0]);
        };
    });
    growth.line("memset", bench::tens(2, 7), [](unsigned size) {
        return [bytes = Bytes(size + 1), size]() mutable {
            std::memset(bytes.data(), 0xFF, size);
            bench::keep(bytes[0]);
        };
    });
}
