#include <tarn/I2CBus.h>
#include <tarn/Windows.h>

namespace tarn {
void I2CBusForLines::start()
{
    setLines(true, false);
    // A device that stretches the clock is not waited for here, unlike in every other primitive.
    lines_->SetSCL(true);
    sleep();
    lines_->SetSDA(false);
    sleep();
    lowerClock();
}

void I2CBusForLines::stop()
{
    setLines(false, false);
    raiseClock();
    lines_->SetSDA(true);
    sleep();
}

void I2CBusForLines::writeBit(bool bit)
{
    setLines(bit, false);
    raiseClock();
    lowerClock();
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
    setLines(true, false);
    for (unsigned int mask = 0x80; mask != 0; mask >>= 1) {
        raiseClock();
        if (lines_->GetSDA())
            result |= mask;
        lowerClock();
    }
    writeBit(last);
    return static_cast<unsigned char>(result);
}

bool I2CBusForLines::acknowledge()
{
    setLines(true, false);
    raiseClock();
    const bool level = lines_->GetSDA();
    lowerClock();
    return !level;
}

void I2CBusForLines::sleep() const { Sleep(1); }

void I2CBusForLines::setLines(bool sda, bool scl)
{
    lines_->SetLines(sda, scl);
    sleep();
}

void I2CBusForLines::raiseClock()
{
    lines_->SetSCL(true);
    sleep();
    while (!lines_->GetSCL()) {
    }
}

void I2CBusForLines::lowerClock()
{
    lines_->SetSCL(false);
    sleep();
}
} // namespace tarn
