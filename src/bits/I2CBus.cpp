#include <tarn/I2CBus.h>

namespace tarn {
void I2CLines::SetLines(bool sda, bool scl)
{
    SetSDA(sda);
    SetSCL(scl);
}

bool I2CBus::write(const unsigned char* data, unsigned int count)
{
    start();
    for (unsigned int i = 0; i < count; ++i) {
        if (!write(data[i])) {
            stop();
            return false;
        }
    }
    stop();
    return true;
}

bool I2CBus::read(const unsigned char* address, unsigned int addressCount, unsigned char* buffer, unsigned int count)
{
    constexpr unsigned char readFlag = 1;
    const auto stopUnacknowledged = [this] {
        stop();
        return false;
    };
    if (count == 0)
        return true;
    if (addressCount > 1) {
        start();
        if (!write(static_cast<unsigned char>(address[0] & ~readFlag)))
            return stopUnacknowledged();
        for (unsigned int i = 1; i < addressCount - 1; ++i) {
            if (!write(address[i]))
                return stopUnacknowledged();
        }
        write(address[addressCount - 1]); // Goes on whatever the device answers: the read address decides.
    }
    start();
    if (!write(static_cast<unsigned char>(address[0] | readFlag)))
        return stopUnacknowledged();
    for (unsigned int i = 0; i < count - 1; ++i)
        buffer[i] = read(false);
    buffer[count - 1] = read(true);
    stop();
    return true;
}
} // namespace tarn
