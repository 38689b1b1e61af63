#include "Test.h"

#include "SimulatedBus.h"

#include <initializer_list>

namespace {
struct Board {
    bool write(std::initializer_list<unsigned char> data)
    {
        return bus.write(data.begin(), static_cast<unsigned>(data.size()));
    }
    /// Writes and waits until the chip has stored the bytes.
    void store(std::initializer_list<unsigned char> data)
    {
        REQUIRE(write(data));
        CHECK_FALSE(write({0xA0})); // Busy.
        chip.elapse(5000);
    }
    std::string read(unsigned char place, unsigned count)
    {
        const unsigned char address[] = {0xA0, place};
        std::string text(count, '\0');
        REQUIRE(bus.read(address, 2, reinterpret_cast<unsigned char*>(text.data()), count));
        return text;
    }

    Eeprom24C02 chip;
    ProbedLines lines{chip};
    SimulatedBus bus{lines};
};
} // namespace

TEST_CASE_METHOD(Board, "I2CBusForLines: a chip that stretches the clock is written and read back")
{
    CHECK_FALSE(write({0xA2}));
    store({0xA0, 0x06, 'a', 'b', 'c', 'd'}); // The page's end is followed by its beginning.
    CHECK(read(6, 2) == "ab");
    CHECK(read(0, 3) == "cd\xFF");
    store({0xA0, 0xFF, 'z'});
    CHECK(read(0xFF, 3) == "zcd");
}
