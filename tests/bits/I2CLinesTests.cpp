#include "Test.h"

#include <tarn/I2CBus.h>

#include <string_view>

namespace {
/// Lines that write down each call: D for SDA and C for SCL with the level set, ? for a look at SCL, ! for
/// one at SDA, and a point for each sleep. A device lets SDA follow `answers`, one level for each look, and
/// holds SCL low for `stretchedPolls` looks after every rise.
class RecordedLines final : public I2CLines {
public:
    void SetSDA(bool high) override { calls += high ? "D1" : "D0"; }
    void SetSCL(bool high) override
    {
        pollsLeft_ = high ? stretchedPolls : 0;
        calls += high ? "C1" : "C0";
    }
    bool GetSDA() override
    {
        calls += '!';
        return answers.at(answered_++) == '1';
    }
    bool GetSCL() override
    {
        calls += '?';
        return pollsLeft_-- == 0;
    }

    std::string calls;
    std::string_view answers;
    unsigned stretchedPolls = 0;

private:
    unsigned pollsLeft_ = 0;
    std::size_t answered_ = 0;
};

class RecordedBus final : public I2CBusForLines {
public:
    RecordedBus(RecordedLines& lines) : I2CBusForLines(&lines), recorded_(lines) {}

    void sleep() const override { recorded_.calls += '.'; }

private:
    RecordedLines& recorded_;
};

struct Fixture {
    RecordedLines lines;
    RecordedBus bus{lines};
};

// A written bit on the lines.
const std::string one = "D1C0.C1.?C0.", zero = "D0C0.C1.?C0.";
} // namespace

TEST_CASE_METHOD(Fixture,
                 "I2CBusForLines: SDA falls for a start and rises for a stop, and only a start waits for no clock")
{
    lines.stretchedPolls = 9;
    bus.start();
    CHECK(lines.calls == "D1C0.C1.D0.C0.");
    lines.calls.clear();
    lines.stretchedPolls = 3; // Polled without a sleep.
    bus.writeBit(true);
    bus.writeBit(false);
    bus.stop();
    CHECK(lines.calls == "D1C0.C1.????C0.D0C0.C1.????C0.D0C0.C1.????D1.");
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: a byte goes out from its highest bit and is acknowledged by low")
{
    lines.answers = "01";
    CHECK(bus.write(0xA5));
    CHECK(lines.calls == one + zero + one + zero + zero + one + zero + one + "D1C0.C1.?!C0.");
    CHECK_FALSE(bus.acknowledge());
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: a byte comes in from its highest bit, then the answer to it")
{
    const bool last = GENERATE(false, true);
    lines.answers = "10100101";
    CHECK(bus.read(last) == 0xA5);
    std::string expected = "D1C0.";
    for (int bit = 0; bit < 8; ++bit)
        expected += "C1.?!C0.";
    CHECK(lines.calls == expected + (last ? one : zero));
}
