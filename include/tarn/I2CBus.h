#pragma once

#include <tarn/Export.h>

namespace tarn {
/// The two open-drain lines of an I2C bus, supplied by the application for its hardware.
///
/// True is high, that is, released; false is low, driven. The levels read back are those on the wire,
/// which a device may hold low. Destroy it through its own type: there is no virtual destructor.
class TARN_API I2CLines {
public:
    I2CLines() = default;
    /// The interface has no state of its own.
    ///@{
    I2CLines(const I2CLines&) = default;
    I2CLines& operator=(const I2CLines&) = default;
    ///@}

    /// Drives the line low, or releases it so that it can go high.
    ///@{
    virtual void SetSDA(bool high) = 0;
    virtual void SetSCL(bool high) = 0;
    ///@}
    /// SDA first, then SCL. Override it where the hardware can change both at once.
    virtual void SetLines(bool sda, bool scl);
    /// The level on the wire.
    ///@{
    virtual bool GetSDA() = 0;
    virtual bool GetSCL() = 0;
    ///@}

protected:
    ~I2CLines() = default;
};

/// The master of an I2C bus: whole transactions over a few primitives that a derived class implements,
/// be it by toggling lines (I2CBusForLines) or with a controller chip.
///
/// There are no exceptions and no retries: false says that a byte was not acknowledged, and the bus has
/// been stopped then. One transaction at a time; nothing is locked. Destroy it through its own type: there
/// is no virtual destructor.
class TARN_API I2CBus {
public:
    I2CBus() = default;
    /// The class has no state of its own.
    ///@{
    I2CBus(const I2CBus&) = default;
    I2CBus& operator=(const I2CBus&) = default;
    ///@}

    /// Begins a transaction, or with a transaction under way repeats the start.
    virtual void start() = 0;
    /// Ends the transaction and leaves the bus free.
    virtual void stop() = 0;
    /// Clocks one bit out.
    virtual void writeBit(bool bit) = 0;

    /// Sends `count` bytes between a start and a stop. `data[0]` is the device's address byte as it goes
    /// out, with bit 0 cleared for writing; with no bytes at all only start and stop are sent.
    virtual bool write(const unsigned char* data, unsigned int count);
    /// Sends one byte; true when it was acknowledged.
    virtual bool write(unsigned char byte) = 0;

    /// Sends the sub-address bytes `address[1]` to `address[addressCount - 1]`, if any, then reads `count`
    /// bytes after a repeated start. `address[0]` is the device's address byte; its bit 0 does not matter.
    ///
    /// `addressCount` must be at least 1. With `count` 0 nothing happens on the bus. Whether the last
    /// sub-address byte was acknowledged is ignored; when that matters, send it with write() first.
    virtual bool read(const unsigned char* address, unsigned int addressCount, unsigned char* buffer,
                      unsigned int count);
    /// Receives one byte and acknowledges it, unless it is the `last` one.
    virtual unsigned char read(bool last) = 0;

    /// An address is not taken for a bit: reading and writing many bytes takes their count, too.
    ///@{
    template <class T> void writeBit(T*) = delete;
    template <class T> unsigned char read(T*) = delete;
    ///@}

    /// Clocks the ninth bit of a byte; true when the device acknowledged it.
    virtual bool acknowledge() = 0;
    /// Waits between two line changes.
    virtual void sleep() const = 0;

protected:
    ~I2CBus() = default;
};

/// An I2C bus that toggles two lines in software.
///
/// A device that holds the clock low is waited for, and without end: a stuck clock line hangs the caller.
/// Only start() does not wait for the clock. The lines are not owned and must outlive the bus; a copy uses
/// the same ones.
class TARN_API I2CBusForLines : public I2CBus {
public:
    /// The lines are the application's, and not null.
    I2CBusForLines(I2CLines* lines) : lines_(lines) {}

    using I2CBus::read;
    using I2CBus::write;
    using I2CBus::writeBit;

    void start() override;
    void stop() override;
    void writeBit(bool bit) override;
    bool write(unsigned char byte) override;
    unsigned char read(bool last) override;
    bool acknowledge() override;
    /// One millisecond, so that a bit takes at least three. Override it for another speed.
    void sleep() const override;

protected:
    /// Without lines: set them before the first use.
    I2CBusForLines() = default;

    /// What the bus toggles; not owned.
    I2CLines* lines_ = nullptr;

private:
    struct I2CBusInternals; // Derived classes see private names, and should see none that a program has.
};
} // namespace tarn
