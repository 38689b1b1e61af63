// Writes a text into a simulated 24C02 EEPROM over an I2C bus and reads it back, page by page as such
// chips demand, and asking after each page until the chip has stored it.
//
//     i2c-eeprom [--trace] [TEXT]
//
// With --trace the two lines of the bus are drawn for every transaction but those that ask. The chip
// stretches the clock where it is low for one column more than usual.

#include "SimulatedBus.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {
constexpr unsigned char device = 0xA0;
constexpr unsigned pageSize = 8;

class Session {
public:
    explicit Session(bool traces) : traces_(traces) {}

    void write(unsigned char place, std::string_view text)
    {
        while (!text.empty()) {
            const std::string_view page = text.substr(0, pageSize - place % pageSize);
            writePage(place, page);
            place = static_cast<unsigned char>(place + page.size());
            text.remove_prefix(page.size());
        }
    }

    std::string read(unsigned char place, unsigned count)
    {
        const unsigned char address[] = {device, place};
        std::vector<unsigned char> buffer(count);
        if (!bus_.read(address, 2, buffer.data(), count))
            throw std::runtime_error("the chip does not answer");
        std::printf("Read %u bytes from 0x%02X on\n", count, place);
        trace(lines_.diagram.take());
        return std::string(buffer.begin(), buffer.end());
    }

    bool isPresent(unsigned char address)
    {
        const bool present = bus_.write(&address, 1);
        std::printf("Address 0x%02X: %s\n", address, present ? "acknowledged" : "not acknowledged");
        trace(lines_.diagram.take());
        return present;
    }

    const Eeprom24C02& chip() const { return chip_; }

private:
    void writePage(unsigned char place, std::string_view page)
    {
        std::vector<unsigned char> data = {device, place};
        data.insert(data.end(), page.begin(), page.end());
        if (!bus_.write(data.data(), static_cast<unsigned>(data.size())))
            throw std::runtime_error("the chip refused the page");
        const auto begun = chip_.microseconds();
        std::printf("Wrote %u bytes at 0x%02X", static_cast<unsigned>(page.size()), place);
        const std::string drawing = lines_.diagram.take();
        // The chip acknowledges its address again when it has stored the page.
        unsigned attempts = 1;
        while (!bus_.write(&device, 1))
            ++attempts;
        lines_.diagram.take();
        std::printf(", stored after %.1f ms (asked %u times)\n",
                    static_cast<double>(chip_.microseconds() - begun) / 1000, attempts);
        trace(drawing);
    }

    void trace(const std::string& drawing)
    {
        if (traces_)
            std::printf("%s\n", drawing.c_str());
    }

    bool traces_;
    Eeprom24C02 chip_{device};
    ProbedLines lines_{chip_};
    SimulatedBus bus_{lines_};
};

void dump(const Eeprom24C02& chip, unsigned from, unsigned end)
{
    for (unsigned row = from; row < end; row += 16) {
        std::printf("  %02X ", row);
        for (unsigned i = row; i < row + 16; ++i)
            std::printf(" %02X", chip.memory()[i]);
        std::printf("\n");
    }
}
} // namespace

int main(int argc, char** argv)
{
    constexpr unsigned char place = 0x14;
    bool traces = false, isUsage = false;
    std::string text = "Hello, EEPROM!";
    for (const std::string_view argument : std::vector<std::string_view>(argv + 1, argv + argc)) {
        if (argument == "--trace")
            traces = true;
        else if (argument.empty() || argument.starts_with("--") || argument.size() > 256u - place)
            isUsage = true;
        else
            text = argument;
    }
    if (isUsage) {
        std::fprintf(stderr, "usage: i2c-eeprom [--trace] [TEXT of 1 to %u characters]\n", 256u - place);
        return 2;
    }
    try {
        Session session(traces);
        session.isPresent(device | 2);
        session.write(place, text);
        const std::string back = session.read(place, static_cast<unsigned>(text.size()));
        std::printf("\"%s\"\nThe chip's memory:\n", back.c_str());
        dump(session.chip(), place / 16 * 16, place + static_cast<unsigned>(text.size()));
        if (back != text)
            throw std::runtime_error("what was read is not what was written");
    } catch (const std::exception& e) {
        std::fprintf(stderr, "i2c-eeprom: %s\n", e.what());
        return 1;
    }
    return 0;
}
