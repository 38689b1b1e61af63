#pragma once

#include "Eeprom24C02.h"
#include "TimingDiagram.h"

#include <tarn/I2CBus.h>

/// A probe clipped to the lines of the chip: draws a column for each sleep and for each rise of the clock
/// that the master had to wait for.
class ProbedLines final : public tarn::I2CLines {
public:
    explicit ProbedLines(Eeprom24C02& chip) : chip_(chip) {}

    void SetSDA(bool high) override { chip_.SetSDA(high); }
    void SetSCL(bool high) override { chip_.SetSCL(high); }
    bool GetSDA() override { return chip_.GetSDA(); }
    bool GetSCL() override
    {
        const bool level = chip_.GetSCL();
        if (level != diagram.scl())
            sample();
        return level;
    }
    void sleep(unsigned microseconds)
    {
        chip_.elapse(microseconds);
        sample();
    }

    TimingDiagram diagram;

private:
    void sample() { diagram.sample(chip_.sda(), chip_.scl()); }

    Eeprom24C02& chip_;
};

/// The bus in simulated time: 15 us a bit, which is slow enough for every such chip.
class SimulatedBus final : public tarn::I2CBusForLines {
public:
    explicit SimulatedBus(ProbedLines& probed) : I2CBusForLines(&probed), probed_(probed) {}

    void sleep() const override { probed_.sleep(5); }

private:
    ProbedLines& probed_;
};
