#include "Test.h"

#include <tarn/BitField.h>

#include <random>

using Bytes = std::vector<unsigned char>;

namespace {
template <class T>
concept SetsAllBits = requires(BitField field, T value)
{
    field.set(value);
};

/// Pages of memory that can be closed one by one, to see which bytes an operation touches.
class Pages {
public:
    explicit Pages(std::size_t reserved)
        : start_(static_cast<unsigned char*>(VirtualAlloc(nullptr, reserved, MEM_RESERVE, PAGE_READWRITE)))
    {
        REQUIRE(start_);
    }
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;
    ~Pages() { VirtualFree(start_, 0, MEM_RELEASE); }

    unsigned char* start() const { return start_; }
    void open(std::size_t offset, DWORD protection) const
    {
        REQUIRE(VirtualAlloc(start_ + offset, size, MEM_COMMIT, protection));
    }

    static constexpr std::size_t size = 4096;

private:
    unsigned char* start_;
};

// One element for each bit of a buffer, the lowest bit of a byte first.
std::vector<bool> modelOf(const Bytes& bytes)
{
    std::vector<bool> bits;
    for (const unsigned char byte : bytes) {
        for (unsigned bit = 0; bit < 8; ++bit)
            bits.push_back((byte >> bit & 1) != 0);
    }
    return bits;
}
} // namespace

TEST_CASE("BitField: bits count from the lowest of the first byte, and stand-ins set them")
{
    Bytes bytes = {0x81, 0x01, 0x00};
    BitField field(bytes.data(), 2);
    const BitField& reader = field;
    CHECK((reader[0] && reader[7] && reader[8]));
    CHECK_FALSE((reader.get(1) || reader.get(6) || reader.get(9)));

    BitField inner(BitField(bytes.data(), 2, 14), 4, 4);
    CHECK((inner[2] = true));
    CHECK_FALSE((field[0] = false));
    CHECK(bytes == Bytes{0x80, 0x01, 0x00});
    inner.set(true);
    CHECK(bytes == Bytes{0xC0, 0x03, 0x00});

    // Assigning a bit's stand-in makes it stand for the other bit.
    BitField::Bit bit = field[1];
    bit = field[6];
    CHECK(bytes[0] == 0xC0);
    bit = false;
    CHECK(bytes[0] == 0x80);

    inner.set(bit); // A bit is a value for all of them, a number is not.
    CHECK(bytes == Bytes{0x00, 0x00, 0x00});
    field.set(true);
    CHECK(bytes == Bytes{0xFF, 0xFF, 0x00});
    STATIC_REQUIRE_FALSE((SetsAllBits<int> || SetsAllBits<unsigned> || SetsAllBits<const char*>));
}

TEST_CASE("BitField: ranges, copies and single bits agree with a naive model")
{
    std::mt19937 random(1);
    const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes(24); // With room on both sides, which must stay as it is.
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random());
        auto model = modelOf(bytes);
        const unsigned count = below(100), offset = 24 + below(30), first = below(20);
        const bool value = below(2) != 0;
        BitField view(BitField(bytes.data(), offset, 120), first, count);
        switch (round % 3) {
        case 0:
            BitField(bytes.data(), offset, 0).set(first, count, value);
            std::fill_n(model.begin() + offset + first, count, value);
            break;
        case 1:
            view.clear();
            std::fill_n(model.begin() + offset + first, count, false);
            break;
        default: // Overlapping mostly, half of them in the same bit phase.
            const unsigned from = below(2) ? below(90) : (offset + first) % 8 + 8 * below(11);
            view = BitField(bytes.data(), from, count);
            for (unsigned n = 0; n < count; ++n)
                model[offset + first + n] = model[from + n];
        }
        REQUIRE(modelOf(bytes) == model);
    }
}

TEST_CASE("BitField: setting touches the byte behind the range, and no other")
{
    const Pages pages(2 * Pages::size);
    pages.open(0, PAGE_READWRITE);
    unsigned char* const end = pages.start() + Pages::size;
    BitField lastByte(end - 1, 0, 8);

    CHECK_THROWS_AS(lastByte.set(true), SEHError); // The next page cannot be read.
    pages.open(Pages::size, PAGE_READONLY);
    CHECK_THROWS_AS(lastByte.set(true), SEHError); // Nor written.
    CHECK_THROWS_AS(BitField(end, 3, 0).clear(), SEHError);
    pages.open(Pages::size, PAGE_READWRITE);
    *end = 0xA5;
    lastByte.set(true);
    CHECK(end[-1] == 0xFF);
    CHECK(*end == 0xA5);
    pages.open(Pages::size, PAGE_NOACCESS);
    lastByte.set(2, 0, true);
    lastByte.set(0, 7, false);
    CHECK(end[-1] == 0x80);
    BitField(end - 1, 0, 8) = BitField(end - 2, 0, 8); // Copies touch nothing but their bits.
    CHECK(end[-1] == 0);
}

TEST_CASE("BitField: the last bits of 512 MB are reached")
{
    constexpr std::size_t buffer = 0x20000000;
    const Pages pages(buffer + Pages::size);
    pages.open(buffer - Pages::size, PAGE_READWRITE);
    pages.open(buffer, PAGE_READWRITE);
    unsigned char* const end = pages.start() + buffer;
    BitField last(BitField(pages.start(), 0x80000000, 0x80000000), 0x7FFFFFEC, 20);
    last.set(true);
    CHECK(Bytes(end - 4, end + 1) == Bytes{0x00, 0xF0, 0xFF, 0xFF, 0x00});
    BitField(pages.start(), 0xFFFFFFFF, 9).set(4, 5, true); // Reaches past the last bit that has a number.
    CHECK(end[0] == 0xF8);
    BitField(last, 0, 12) = BitField(end, 3, 12);
    CHECK(Bytes(end - 3, end) == Bytes{0xF0, 0x01, 0xFF});
}
