#pragma once

#include <bitset>
#include <cstddef>
#include <string>
#include <vector>

/// A packet of a teletext service (ETS 300 706) as capture programs store it: the 42 bytes after the
/// framing code, with the bit transmitted first lowest in its byte.
constexpr std::size_t packetSize = 42;

/// What the header packet of a page says.
struct PageHeader {
    unsigned magazine = 0;   ///< 1 to 8, the first digit of the page's number.
    unsigned page = 0;       ///< The other two digits in hexadecimal; 0xFF only fills the time.
    unsigned subcode = 0;    ///< S4 S3 S2 S1, a digit each; the sub-page, or the time of day.
    std::bitset<15> control; ///< C4 to C14, at the index of their number.
    std::string text;        ///< 32 characters; attributes are blanks, characters with wrong parity '?'.
};

struct DecodedPacket {
    enum class Kind {
        header,
        other,  ///< A row of a page, say: no header.
        damaged ///< A protected byte with two wrong bits; nothing but `damagedBytes` counts.
    };

    Kind kind = Kind::other;
    PageHeader header;
    unsigned correctedBits = 0;
    std::vector<unsigned> damagedBytes; ///< Their positions in the packet.
};

/// Decodes the packet of `packetSize` bytes.
DecodedPacket decodePacket(const unsigned char* packet);
