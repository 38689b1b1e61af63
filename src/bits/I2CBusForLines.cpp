#include <tarn/I2CBus.h>
#include <tarn/Windows.h>

namespace tarn {
/// Each with its sleep.
struct I2CBusForLines::I2CBusInternals {
    static void setLines(const I2CBusForLines& bus, bool sda, bool scl)
    {
        bus.lines_->SetLines(sda, scl);
        bus.sleep();
    }
    /// Also waits until no device holds the clock low any more.
    static void raiseClock(const I2CBusForLines& bus)
    {
        bus.lines_->SetSCL(true);
        bus.sleep();
        while (!bus.lines_->GetSCL()) {
        }
    }
    static void lowerClock(const I2CBusForLines& bus)
    {
        bus.lines_->SetSCL(false);
        bus.sleep();
    }
};

void I2CBusForLines::start()
{
    I2CBusInternals::setLines(*this, true, false);
    // A device that stretches the clock is not waited for here, unlike in every other primitive.
    lines_->SetSCL(true);
    sleep();
    lines_->SetSDA(false);
    sleep();
    I2CBusInternals::lowerClock(*this);
}

void I2CBusForLines::stop()
{
    I2CBusInternals::setLines(*this, false, false);
    I2CBusInternals::raiseClock(*this);
    lines_->SetSDA(true);
    sleep();
}

void I2CBusForLines::writeBit(bool bit)
{
    I2CBusInternals::setLines(*this, bit, false);
    I2CBusInternals::raiseClock(*this);
    I2CBusInternals::lowerClock(*this);
}

bool I2CBusForLines::write(unsigned char byte)
{
    for (unsigned int mask = 0x80; mask != 0; mask >>= 1)
        writeBit((byte & mask) != 0);
    return acknowledge();
}

unsigned char I2CBusForLines::read(bool last)
{
    unsigned int result = 0;
    I2CBusInternals::setLines(*this, true, false);
    for (unsigned int mask = 0x80; mask != 0; mask >>= 1) {
        I2CBusInternals::raiseClock(*this);
        if (lines_->GetSDA())
            result |= mask;
        I2CBusInternals::lowerClock(*this);
    }
    writeBit(last);
    return static_cast<unsigned char>(result);
}

bool I2CBusForLines::acknowledge()
{
    I2CBusInternals::setLines(*this, true, false);
    I2CBusInternals::raiseClock(*this);
    const bool level = lines_->GetSDA();
    I2CBusInternals::lowerClock(*this);
    return !level;
}

void I2CBusForLines::sleep() const { Sleep(1); }
} // namespace tarn
