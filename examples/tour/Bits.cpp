#include "Tour.h"

#include <tarn/BitField.h>
#include <tarn/DeHam48.h>
#include <tarn/I2CBus.h>

#include <iostream>
#include <string>

namespace {
std::string bitsOf(const tarn::BitField& field, unsigned count)
{
    std::string text;
    for (unsigned n = 0; n < count; ++n)
        text += field[n] ? '1' : '0';
    return text;
}

void showBitField()
{
    unsigned char bytes[3] = {};
    tarn::BitField field(bytes, 0, 16);
    field.set(3, 7, true);
    std::cout << "Bits 3 to 9 of 16, lowest first: " << bitsOf(field, 16) << '\n';
    tarn::BitField inner(field, 6, 6);
    inner[1] = false;
    inner[5] = true;
    std::cout << "Through a view of bits 6 to 11:  " << bitsOf(field, 16) << '\n';
    tarn::BitField(field, 10, 6) = inner;
    std::cout << "The view copied to bit 10:       " << bitsOf(field, 16) << '\n';
}

void showDecoding(const char* what, unsigned char byte)
{
    std::cout << "Hamming 8/4, byte of the value 9 " << what << ": " << int(tarn::DeHam48(byte)) << '\n';
}

/// Lines with nobody else on the bus: nothing pulls SDA low, so nothing is acknowledged.
class EmptyLines final : public tarn::I2CLines {
public:
    void SetSDA(bool high) override { sda_ = high; }
    void SetSCL(bool high) override { scl_ = high; }
    bool GetSDA() override { return sda_; }
    bool GetSCL() override { return scl_; }

private:
    bool sda_ = true, scl_ = true;
};

/// Draws the lines instead of waiting.
class DrawnBus final : public tarn::I2CBusForLines {
public:
    DrawnBus(tarn::I2CLines& lines) : I2CBusForLines(&lines) {}

    void sleep() const override
    {
        sda += lines_->GetSDA() ? '-' : '_';
        scl += lines_->GetSCL() ? '-' : '_';
    }

    mutable std::string sda, scl;
};

void showBus()
{
    EmptyLines lines;
    DrawnBus bus(lines);
    const unsigned char address = 0xA0;
    const bool answered = bus.write(&address, 1);
    std::cout << "I2C, address A0 on an empty bus " << (answered ? "(answered)" : "(no answer)") << ":\n"
              << "  SDA " << bus.sda << "\n  SCL " << bus.scl << '\n';
}

void show()
{
    showBitField();
    showDecoding("as sent             ", 0xC7);
    showDecoding("with one wrong bit  ", 0xC7 ^ 0x20);
    showDecoding("with two wrong bits ", 0xC7 ^ 0x21);
    showBus();
}

const tour::Section section(40, "Bits and buses", show);
} // namespace
