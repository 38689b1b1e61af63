#pragma once

#include <tarn/I2CBus.h>

#include <array>
#include <utility>
#include <vector>

/// A simulated 24C02: 256 bytes of EEPROM in pages of 8 on an I2C bus, seen through the bus's two lines.
///
/// It acknowledges nothing while it is programming, 5 ms from the stop of a write on, and holds the clock
/// low for 20 us after each data byte and before the first one read. Time passes in elapse(), and by 1 us
/// whenever the master looks at the clock.
class Eeprom24C02 final : public tarn::I2CLines {
public:
    /// `address` is the device's address byte for writing: 0xA0 to 0xAE, after its pins A2 to A0.
    explicit Eeprom24C02(unsigned char address = 0xA0) : address_(address) { memory_.fill(0xFF); }

    void SetSDA(bool high) override;
    void SetSCL(bool high) override;
    bool GetSDA() override { return sda_; }
    bool GetSCL() override;
    void elapse(unsigned microseconds);

    bool sda() const { return sda_; } ///< The level on the wire, without a look that takes time.
    bool scl() const { return scl_; }
    unsigned long long microseconds() const { return now_; }
    const std::array<unsigned char, 256>& memory() const { return memory_; }

private:
    enum class State { idle, address, pointer, writing, reading };

    void followWires();
    void onStart();
    void onStop();
    void onClockRise();
    void onClockFall();
    void sendBit();
    bool accept(unsigned char byte);
    void afterByte();

    std::array<unsigned char, 256> memory_;
    std::vector<std::pair<unsigned char, unsigned char>> written_; // Place and byte, until the stop.
    unsigned long long now_ = 0, busyUntil_ = 0, stretchUntil_ = 0;
    bool masterSDA_ = true, masterSCL_ = true, pullsSDA_ = false;
    bool sda_ = true, scl_ = true;
    State state_ = State::idle;
    unsigned char address_;
    unsigned char pointer_ = 0;
    unsigned char shift_ = 0; // The byte on its way, in or out.
    unsigned clocks_ = 0;     // How often the clock has risen for this byte.
};
