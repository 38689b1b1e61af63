#include "Test.h"

#include "PageHeader.h"

#include <fstream>
#include <iterator>

using Kind = DecodedPacket::Kind;

namespace {
std::string capture()
{
    std::ifstream file(TELETEXT_CAPTURE, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

DecodedPacket decode(const std::string& bytes, std::size_t number)
{
    REQUIRE(bytes.size() >= (number + 1) * packetSize);
    return decodePacket(reinterpret_cast<const unsigned char*>(bytes.data()) + number * packetSize);
}

constexpr unsigned long bit(unsigned control) { return 1ul << control; }
} // namespace

TEST_CASE("Teletext: the example's capture gives pages, sub-codes, control bits and texts")
{
    // The eighth has a character of wrong parity.
    const auto& [number, magazine, page, subcode, control, corrected, text] =
        GENERATE(table<unsigned, unsigned, unsigned, unsigned, unsigned long, unsigned, const char*>({
            {0, 1, 0x00, 0, bit(4) | bit(11), 0, "TARN 100 Sat 21 Nov  12:34:56   "},
            {2, 1, 0x00, 0, bit(4) | bit(11), 2, "TARN 100 Sat 21 Nov  12:34:56   "},
            {3, 1, 0x50, 0, bit(4) | bit(5) | bit(7), 0, "TARN 150 NEWSFLASH   12:34:57   "},
            {5, 8, 0x88, 0, bit(4) | bit(6) | bit(8) | bit(14), 0, "                                "},
            {7, 2, 0x01, 0x2359, bit(10) | bit(12), 1, "TA?N 201 Alarm page  12:34:58   "},
            {8, 1, 0xFF, 0x3F7F, bit(9), 0, "TARN 100 Sat 21 Nov  12:34:59   "},
        }));
    const DecodedPacket packet = decode(capture(), number);
    CHECK(packet.kind == Kind::header);
    CHECK(packet.header.magazine == magazine);
    CHECK(packet.header.page == page);
    CHECK(packet.header.subcode == subcode);
    CHECK(packet.header.control.to_ulong() == control);
    CHECK(packet.correctedBits == corrected);
    CHECK(packet.header.text == text);
}

TEST_CASE("Teletext: rows of text and headers damaged beyond repair are told apart")
{
    const std::string bytes = capture();
    CHECK(bytes.size() == 9 * packetSize);
    CHECK(decode(bytes, 1).kind == Kind::other);
    for (const auto& [number, lost] : {std::pair(4u, 3u), std::pair(6u, 1u)}) {
        CHECK(decode(bytes, number).kind == Kind::damaged);
        CHECK(decode(bytes, number).damagedBytes == std::vector{lost});
    }
}
