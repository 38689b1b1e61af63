#include <catch2/catch.hpp>

#include "PageHeader.h"
#include "TeletextEncoder.h"

#include <fstream>
#include <iterator>

using support::disturbed;
using support::headerPacket;
using Kind = DecodedPacket::Kind;

namespace {
DecodedPacket decode(const std::string& packet)
{
    REQUIRE(packet.size() == packetSize);
    return decodePacket(reinterpret_cast<const unsigned char*>(packet.data()));
}

constexpr unsigned bit(unsigned control) { return 1u << control; }

/// What the example's capture holds: clean packets, corrected ones and lost ones.
std::string capture()
{
    const std::string index = headerPacket(1, 0x00, 0, bit(4) | bit(11),
                                           "TARN 100 Sat 21 Nov \x03"
                                           "12:34:56");
    const std::string news = headerPacket(1, 0x50, 0, bit(4) | bit(5) | bit(7),
                                          "TARN 150 NEWSFLASH  \x03"
                                          "12:34:57");
    const std::string text = headerPacket(8, 0x88, 0, bit(4) | bit(6) | bit(8) | bit(14), "");
    const std::string alarm = headerPacket(2, 0x01, 0x2359, bit(10) | bit(12),
                                           "TARN 201 Alarm page \x03"
                                           "12:34:58");
    return index + support::packetAddress(1, 1) + support::oddParity("Welcome to the first row", 40) +
           disturbed(disturbed(index, 2, 0x10), 9, 0x02) + news + disturbed(news, 3, 0x41) + text +
           disturbed(text, 1, 0x88) + disturbed(disturbed(alarm, 0, 0x80), 12, 0x04) +
           headerPacket(1, 0xFF, 0x3F7F, bit(9),
                        "TARN 100 Sat 21 Nov \x03"
                        "12:34:59");
}
} // namespace

TEST_CASE("Teletext: a header packet gives its page, sub-code, control bits and text", "[bits][teletext]")
{
    const DecodedPacket packet = decode(headerPacket(8, 0xA7, 0x2359, bit(5) | bit(8) | bit(14), "TARN \x07 887"));
    CHECK(packet.kind == Kind::header);
    CHECK(packet.header.magazine == 8);
    CHECK(packet.header.page == 0xA7);
    CHECK(packet.header.subcode == 0x2359);
    CHECK(packet.header.control.to_ulong() == (bit(5) | bit(8) | bit(14)));
    CHECK(packet.header.text == "TARN   887                      ");
    CHECK(packet.correctedBits == 0);
}

TEST_CASE("Teletext: any wrong bit of a header is corrected, two in a byte are reported", "[bits][teletext]")
{
    const std::string good = headerPacket(3, 0x45, 0x1278, bit(4) | bit(11), "TARN 345");
    for (unsigned position = 0; position < 10; ++position) {
        for (int mask = 1; mask < 0x100; mask <<= 1) {
            CAPTURE(position, mask);
            const DecodedPacket one = decode(disturbed(good, position, mask));
            CHECK((one.kind == Kind::header && one.correctedBits == 1));
            CHECK((one.header.magazine == 3 && one.header.page == 0x45 && one.header.subcode == 0x1278));
            const DecodedPacket two = decode(disturbed(good, position, mask | (mask == 1 ? 0x80 : mask >> 1)));
            CHECK((two.kind == Kind::damaged && two.damagedBytes == std::vector<unsigned>{position}));
        }
    }
    CHECK(decode(disturbed(good, 11, 0x20)).header.text.substr(0, 8) == "T?RN 345");
}

TEST_CASE("Teletext: the example's capture is what the encoder makes", "[bits][teletext]")
{
    std::ifstream file(TELETEXT_CAPTURE, std::ios::binary);
    CHECK((std::string(std::istreambuf_iterator<char>(file), {}) == capture()));
    CHECK(decode(capture().substr(packetSize, packetSize)).kind == Kind::other);
}

// Run it by this name to make the capture anew.
TEST_CASE("write capture", "[.]") { std::ofstream(TELETEXT_CAPTURE, std::ios::binary) << capture(); }
