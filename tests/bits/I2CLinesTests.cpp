#include <catch2/catch.hpp>

#include <tarn/I2CBus.h>

#include <string>
#include <string_view>

namespace {
/// Lines that write down each call: D for SDA and C for SCL with the level set, ? for a look at SCL, ! for
/// one at SDA, and a point for each sleep. A device lets SDA follow `answers`, one level for each look, and
/// holds SCL low for `stretchedPolls` looks after every rise.
class RecordedLines final : public tarn::I2CLines {
public:
    void SetSDA(bool high) override
    {
        sda_ = high ? '-' : '_';
        calls += high ? "D1" : "D0";
    }
    void SetSCL(bool high) override
    {
        scl_ = high ? '-' : '_';
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
    void sleep()
    {
        calls += '.';
        sda += sda_;
        scl += scl_;
    }

    std::string calls, sda, scl; // The two levels have a column for each sleep.
    std::string_view answers;
    unsigned stretchedPolls = 0;

private:
    char sda_ = '?', scl_ = '?';
    unsigned pollsLeft_ = 0;
    std::size_t answered_ = 0;
};

class RecordedBus final : public tarn::I2CBusForLines {
public:
    RecordedBus(RecordedLines& lines) : I2CBusForLines(&lines), recorded_(lines) {}

    void sleep() const override { recorded_.sleep(); }

private:
    RecordedLines& recorded_;
};

struct Fixture {
    RecordedLines lines;
    RecordedBus bus{lines};
};
} // namespace

TEST_CASE_METHOD(Fixture, "I2CBusForLines: start lets SDA fall while SCL is high and waits for no clock", "[bits][i2c]")
{
    lines.stretchedPolls = 9;
    bus.start();
    CHECK(lines.sda == "--__");
    CHECK(lines.scl == "_--_");
    CHECK(lines.calls == "D1C0.C1.D0.C0.");
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: stop lets SDA rise while SCL is high", "[bits][i2c]")
{
    bus.stop();
    CHECK(lines.sda == "__-");
    CHECK(lines.scl == "_--");
    CHECK(lines.calls == "D0C0.C1.?D1.");
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: a stretched clock is polled without a sleep", "[bits][i2c]")
{
    lines.stretchedPolls = 3;
    bus.writeBit(true);
    bus.writeBit(false);
    CHECK(lines.sda == "---___");
    CHECK(lines.scl == "_-__-_");
    CHECK(lines.calls == "D1C0.C1.????C0.D0C0.C1.????C0.");
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: acknowledge releases SDA and takes low for yes", "[bits][i2c]")
{
    lines.answers = "01";
    CHECK(bus.acknowledge());
    CHECK(lines.calls == "D1C0.C1.?!C0.");
    CHECK_FALSE(bus.acknowledge());
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: a byte goes out from its highest bit, then the acknowledge", "[bits][i2c]")
{
    lines.answers = "0";
    CHECK(bus.write(0xA5));
    //                  1  0  1  0  0  1  0  1  ack
    CHECK(lines.sda == "---___---______---___------");
    CHECK(lines.scl == "_-__-__-__-__-__-__-__-__-_");
}

TEST_CASE_METHOD(Fixture, "I2CBusForLines: a byte comes in from its highest bit, then the answer to it", "[bits][i2c]")
{
    lines.answers = "1010010110100101";
    CHECK(bus.read(false) == 0xA5);
    //                    the device's bits ack
    CHECK(lines.sda == "-----------------___");
    CHECK(lines.scl == "_-_-_-_-_-_-_-_-__-_");
    std::string expected = "D1C0.";
    for (int bit = 0; bit < 8; ++bit)
        expected += "C1.?!C0.";
    expected += "D0C0.C1.?C0.";
    CHECK(lines.calls == expected);
    lines.sda.clear();
    CHECK(bus.read(true) == 0xA5);
    CHECK(lines.sda == "--------------------");
}
