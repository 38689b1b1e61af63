#pragma once

#include <bit>
#include <string>

namespace support {
/// A byte of the Hamming 8/4 code, from the equations of its check bits.
inline unsigned char hamming48(unsigned value)
{
    const unsigned d1 = value & 1, d2 = value >> 1 & 1, d3 = value >> 2 & 1, d4 = value >> 3 & 1;
    const unsigned p1 = 1 ^ d1 ^ d3 ^ d4, p2 = 1 ^ d1 ^ d2 ^ d4, p3 = 1 ^ d1 ^ d2 ^ d3;
    const unsigned p4 = 1 ^ p1 ^ d1 ^ p2 ^ d2 ^ p3 ^ d3 ^ d4;
    return static_cast<unsigned char>(p1 | d1 << 1 | p2 << 2 | d2 << 3 | p3 << 4 | d3 << 5 | p4 << 6 | d4 << 7);
}

/// The bytes of a packet that come first: whose magazine (1 to 8) and which row.
inline std::string packetAddress(unsigned magazine, unsigned row)
{
    const char bytes[] = {static_cast<char>(hamming48((magazine & 7) | (row & 1) << 3)),
                          static_cast<char>(hamming48(row >> 1))};
    return std::string(bytes, 2);
}

/// Text with odd parity, filled up with blanks to `length`.
inline std::string oddParity(std::string text, std::size_t length)
{
    text.resize(length, ' ');
    for (char& c : text)
        c = static_cast<char>(std::popcount(static_cast<unsigned char>(c)) % 2 ? c : c | 0x80);
    return text;
}

/// A header packet. `control` has bit n set for control bit n, 4 to 14.
inline std::string headerPacket(unsigned magazine, unsigned page, unsigned subcode, unsigned control,
                                const std::string& text)
{
    const unsigned nibbles[] = {page,         page >> 4,
                                subcode,      (subcode >> 4 & 7) | (control >> 4 & 1) << 3,
                                subcode >> 8, (subcode >> 12 & 3) | (control >> 5 & 3) << 2,
                                control >> 7, control >> 11};
    std::string packet = packetAddress(magazine, 0);
    for (const unsigned nibble : nibbles)
        packet += static_cast<char>(hamming48(nibble & 15));
    return packet + oddParity(text, 32);
}

/// `packet` with the bits of `mask` wrong in one byte.
inline std::string disturbed(std::string packet, std::size_t position, int mask)
{
    packet[position] = static_cast<char>(packet[position] ^ mask);
    return packet;
}
} // namespace support
