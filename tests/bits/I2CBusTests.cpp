#include "Test.h"

#include <tarn/I2CBus.h>

#include <cstdio>

using Bytes = std::vector<unsigned char>;

namespace {
/// Writes down the primitives that a transaction consists of; refuses to acknowledge the byte given.
class LoggedBus final : public I2CBus {
public:
    explicit LoggedBus(int refused) : refused_(refused) {}

    using I2CBus::read;
    using I2CBus::write;

    void start() override { log += "start "; }
    void stop() override { log += "stop"; }
    void writeBit(bool) override {}
    bool write(unsigned char byte) override
    {
        char text[4];
        std::snprintf(text, sizeof text, "%02X ", unsigned(byte));
        log += text;
        return byte != refused_;
    }
    unsigned char read(bool last) override
    {
        log += last ? "last " : "more ";
        return ++received_;
    }
    bool acknowledge() override { return true; }
    void sleep() const override {}

    std::string log;

private:
    int refused_;
    unsigned char received_ = 0;
};

std::string written(const Bytes& data, int refused = -1)
{
    LoggedBus bus(refused);
    const bool done = bus.write(data.data(), static_cast<unsigned>(data.size()));
    return bus.log + (done ? "" : " failed");
}

std::string readFrom(const Bytes& address, unsigned count, int refused = -1)
{
    LoggedBus bus(refused);
    Bytes buffer(count + 1);
    const bool done = bus.read(address.data(), static_cast<unsigned>(address.size()), buffer.data(), count);
    for (unsigned i = 0; i <= count; ++i)
        CHECK(buffer[i] == (done && i < count ? i + 1 : 0));
    return bus.log + (done ? "" : " failed");
}
} // namespace

TEST_CASE("I2CBus: write sends its bytes between start and stop, up to the first refused one")
{
    CHECK(written({0xA0, 0x10, 0x55}) == "start A0 10 55 stop");
    CHECK(written({}) == "start stop");
    CHECK(written({0xA0, 0x10, 0x55}, 0x10) == "start A0 10 stop failed");
}

template <class Bus>
concept TakesAddressForBit = requires(Bus bus, unsigned char* data)
{
    bus.read(data);
}
|| requires(Bus bus, unsigned char* data) { bus.writeBit(data); };

TEST_CASE("I2CBus: read sends the sub-address, starts again and acknowledges all but the last byte")
{
    CHECK(readFrom({0xA1, 0x10}, 3) == "start A0 10 start A1 more more last stop");
    CHECK(readFrom({0xA0, 0x12, 0x34}, 1) == "start A0 12 34 start A1 last stop");
    CHECK(readFrom({0xA0}, 2) == "start A1 more last stop");
    CHECK(readFrom({0xA0, 0x10}, 0).empty());
    STATIC_REQUIRE_FALSE((TakesAddressForBit<I2CBus&> || TakesAddressForBit<I2CBusForLines&>));

    CHECK(readFrom({0xA0, 0x10}, 1, 0xA0) == "start A0 stop failed");
    CHECK(readFrom({0xA0, 0x12, 0x34}, 1, 0x12) == "start A0 12 stop failed");
    CHECK(readFrom({0xA0, 0x12, 0x34}, 1, 0x34) == "start A0 12 34 start A1 last stop");
    CHECK(readFrom({0xA0, 0x10}, 1, 0xA1) == "start A0 10 start A1 stop failed");
}
