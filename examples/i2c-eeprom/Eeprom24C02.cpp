#include "Eeprom24C02.h"

namespace {
constexpr unsigned programmingTime = 5000;
constexpr unsigned stretchTime = 20;
constexpr unsigned char pageMask = 7;
} // namespace

void Eeprom24C02::SetSDA(bool high)
{
    masterSDA_ = high;
    followWires();
}

void Eeprom24C02::SetSCL(bool high)
{
    masterSCL_ = high;
    followWires();
}

bool Eeprom24C02::GetSCL()
{
    elapse(1);
    return scl_;
}

void Eeprom24C02::elapse(unsigned microseconds)
{
    now_ += microseconds;
    followWires();
}

// A line is high only when neither side pulls it low.
void Eeprom24C02::followWires()
{
    const bool scl = masterSCL_ && now_ >= stretchUntil_;
    const bool sda = masterSDA_ && !pullsSDA_;
    const bool sclChanged = scl != scl_, sdaChanged = sda != sda_;
    scl_ = scl;
    sda_ = sda;
    if (sclChanged)
        scl ? onClockRise() : onClockFall();
    else if (scl && sdaChanged)
        sda ? onStop() : onStart();
    sda_ = masterSDA_ && !pullsSDA_;
}

void Eeprom24C02::onStart()
{
    state_ = State::address;
    clocks_ = 0;
    written_.clear();
}

void Eeprom24C02::onStop()
{
    for (const auto& [place, byte] : written_)
        memory_[place] = byte;
    if (!written_.empty())
        busyUntil_ = now_ + programmingTime;
    written_.clear();
    state_ = State::idle;
}

void Eeprom24C02::onClockRise()
{
    ++clocks_;
    if (state_ == State::reading) {
        if (clocks_ == 9 && sda_)
            state_ = State::idle; // Not acknowledged: the master wants no more.
    } else if (clocks_ <= 8) {
        shift_ = static_cast<unsigned char>(shift_ << 1 | (sda_ ? 1 : 0));
    }
}

void Eeprom24C02::onClockFall()
{
    pullsSDA_ = false;
    if (clocks_ == 9) {
        clocks_ = 0;
        afterByte();
    } else if (clocks_ == 8 && state_ != State::reading && state_ != State::idle) {
        pullsSDA_ = accept(shift_);
    }
    if (state_ == State::reading && clocks_ < 8)
        sendBit();
}

void Eeprom24C02::sendBit() { pullsSDA_ = (shift_ >> (7 - clocks_) & 1) == 0; }

/// Takes a byte of the master; true acknowledges it.
bool Eeprom24C02::accept(unsigned char byte)
{
    if (state_ == State::address && ((byte ^ address_) > 1 || now_ < busyUntil_)) {
        state_ = State::idle;
        return false;
    }
    if (state_ == State::pointer)
        pointer_ = byte;
    if (state_ == State::writing) {
        // Behind the end of a page its beginning follows.
        written_.emplace_back(pointer_, byte);
        pointer_ = static_cast<unsigned char>((pointer_ & ~pageMask) | ((pointer_ + 1) & pageMask));
    }
    return true;
}

/// Goes on after the ninth clock.
void Eeprom24C02::afterByte()
{
    if (state_ == State::address)
        state_ = (shift_ & 1) ? State::reading : State::pointer;
    else if (state_ == State::pointer)
        state_ = State::writing;
    else if (state_ == State::writing)
        stretchUntil_ = now_ + stretchTime;
    if (state_ == State::reading) {
        shift_ = memory_[pointer_++];
        stretchUntil_ = now_ + stretchTime;
    }
}
