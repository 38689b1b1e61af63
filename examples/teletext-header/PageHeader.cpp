#include "PageHeader.h"

#include <tarn/BitField.h>
#include <tarn/DeHam48.h>

#include <algorithm>
#include <bit>
#include <iterator>

namespace {
constexpr unsigned addressBytes = 2;
constexpr unsigned protectedBytes = 10; // The address, and what a header says besides its text.

/// The data bits of the protected bytes, four a byte, one after the other as they are transmitted.
class DataBits {
public:
    void take(unsigned position, unsigned char nibble)
    {
        tarn::BitField(bytes_, position * 4, 4) = tarn::BitField(&nibble, 0, 4);
    }
    unsigned number(unsigned first, unsigned count)
    {
        unsigned char number[2] = {};
        tarn::BitField(number, 0, count) = tarn::BitField(bytes_, first, count);
        return number[0];
    }

private:
    unsigned char bytes_[protectedBytes / 2] = {};
};

/// Takes the protected bytes `first` to `end - 1`; false when one is damaged.
bool unprotect(const unsigned char* packet, unsigned first, unsigned end, DataBits& bits, DecodedPacket& decoded)
{
    for (unsigned i = first; i < end; ++i) {
        const signed char nibble = tarn::DeHam48(packet[i]);
        if (nibble < 0) {
            decoded.damagedBytes.push_back(i);
            continue;
        }
        bits.take(i, static_cast<unsigned char>(nibble));
        // All error-free bytes have an odd number of bits set, so an even number tells of the correction.
        if (std::popcount(packet[i]) % 2 == 0)
            ++decoded.correctedBits;
    }
    if (!decoded.damagedBytes.empty())
        decoded.kind = DecodedPacket::Kind::damaged;
    return decoded.damagedBytes.empty();
}

char character(unsigned char byte)
{
    if (std::popcount(byte) % 2 == 0)
        return '?';
    const char c = static_cast<char>(byte & 0x7F);
    return c < ' ' ? ' ' : c;
}

PageHeader readHeader(DataBits& bits)
{
    PageHeader header;
    const unsigned magazine = bits.number(0, 3);
    header.magazine = magazine == 0 ? 8 : magazine;
    header.page = bits.number(8, 8);
    header.subcode = bits.number(16, 4) | bits.number(20, 3) << 4 | bits.number(24, 4) << 8 | bits.number(28, 2) << 12;
    header.control[4] = bits.number(23, 1) != 0;
    for (unsigned c = 5; c <= 14; ++c)
        header.control[c] = bits.number(25 + c, 1) != 0;
    return header;
}
} // namespace

DecodedPacket decodePacket(const unsigned char* packet)
{
    DecodedPacket decoded;
    DataBits bits;
    if (!unprotect(packet, 0, addressBytes, bits, decoded))
        return decoded;
    const unsigned row = bits.number(3, 5);
    if (row != 0 || !unprotect(packet, addressBytes, protectedBytes, bits, decoded))
        return decoded;
    decoded.kind = DecodedPacket::Kind::header;
    decoded.header = readHeader(bits);
    std::transform(packet + protectedBytes, packet + packetSize, std::back_inserter(decoded.header.text), character);
    return decoded;
}
