#include "Test.h"

#include "Model.h"
#include "Zones.h"

#include <random>

namespace {
/// Goes the ways that are open to every derived class, and shows what is stored.
struct Derived : GregorianCalendar {
    using GregorianCalendar::GregorianCalendar;
    explicit Derived(const GregorianCalendar& original) : GregorianCalendar(original) {}
    using GregorianCalendar::internalGet;
};

/// A calendar, a derived one and the model, to which the same things happen.
class Trio {
public:
    explicit Trio(unsigned seed) : random_(seed) {}

    void step()
    {
        ++step_;
        const auto field = static_cast<unsigned>(below(Calendar::FieldCount));
        const int kind = below(32);
        switch (kind) {
        case 0:
            return each([&, zone = zones_[static_cast<std::size_t>(below(static_cast<int>(zones_.size())))]](
                            auto& calendar) { calendar.SetTimeZone(zone); });
        case 1:
            return each([cutover = someCutover()](auto& calendar) { calendar.setGregorianChange(cutover); });
        case 2:
            return each([day = 1 + below(7)](auto& calendar) { calendar.setFirstDayOfWeek(day); });
        case 3:
            return each([days = 1 + below(7)](auto& calendar) { calendar.setMinimalDaysInFirstWeek(days); });
        case 4:
            return each([lenient = below(4) != 0](auto& calendar) { calendar.setLenient(lenient); });
        case 5:
            return each([all = below(3) == 0, field](auto& calendar) {
                all ? calendar.Clear() : calendar.Clear(static_cast<int>(field));
            });
        case 6:
            return copy();
        case 7:
            return compareRolled(field);
        case 8:
            return agree("maximum", [field](auto& calendar) {
                return field == Calendar::FieldYear ? 0 : calendar.getActualMaximum(static_cast<int>(field));
            });
        case 9:
            return agree("ISO year", [](auto& calendar) { return calendar.getISOYear(); });
        case 10:
            return compareStored();
        }
        if (kind < 13)
            return each([field, amount = below(400) - 200](auto& calendar) { calendar.add(field, amount); });
        if (kind < 17)
            return each([field, value = someValue(field)](auto& calendar) { calendar.set(field, value); });
        if (kind < 22)
            return setDate();
        if (kind < 25)
            return each([time = someTime()](auto& calendar) { calendar.setTime(time); });
        if (kind < 28)
            return agree("instant", [](auto& calendar) { return std::int64_t(calendar.getTime()); });
        agree("field", [field](auto& calendar) { return calendar.get(field); });
    }

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::int64_t someTime()
    {
        return static_cast<std::int64_t>(random_()) % (below(8) ? 220000000000000 : 99000000000);
    }
    std::int64_t someCutover()
    {
        const std::int64_t cutovers[] = {-12219292800000, -12219292800000,  -6857222399999,
                                         220752000000000, -220752000000000, -719163 * 86400000LL};
        return below(7) ? cutovers[below(6)] : someTime();
    }
    int someValue(unsigned field)
    {
        const int number = static_cast<int>(field);
        const int least = limits_.getMinimum(number), greatest = limits_.getMaximum(number);
        if (field == Calendar::FieldYear)
            return below(8) ? 1 + below(3000) : below(200000) - 100000;
        return below(8) ? least + below(greatest - least + 1) : below(3000) - 1500;
    }

    template <class Action> void each(Action action)
    {
        action(calendar_);
        action(derived_);
        action(model_);
    }
    template <class Question> void agree(const char* what, Question question)
    {
        const std::int64_t expected = question(model_);
        if (question(calendar_) != expected)
            FAIL("step " << step_ << ", " << what << ": " << question(calendar_) << " instead of " << expected);
        if (question(derived_) != expected)
            FAIL("step " << step_ << ", " << what << " of a derived class: " << question(derived_) << " instead of "
                         << expected);
    }

    void setDate()
    {
        constexpr Calendar::Field names[] = {Calendar::FieldYear,      Calendar::FieldMonth,  Calendar::FieldDayOfMonth,
                                             Calendar::FieldHourOfDay, Calendar::FieldMinute, Calendar::FieldSecond};
        int v[6];
        for (int i = 0; i < 6; ++i)
            v[i] = someValue(names[i]);
        const int count = below(4) ? 6 : below(2) ? 5 : 3;
        for (GregorianCalendar* calendar : {&calendar_, static_cast<GregorianCalendar*>(&derived_)}) {
            if (count == 6)
                calendar->set(v[0], v[1], v[2], v[3], v[4], v[5]);
            else if (count == 5)
                calendar->set(v[0], v[1], v[2], v[3], v[4]);
            else
                calendar->set(v[0], v[1], v[2]);
        }
        for (int i = 0; i < count; ++i)
            model_.set(names[i], v[i]);
    }
    /// Copies know what the original had put off; so does the original.
    void copy()
    {
        const std::unique_ptr<GregorianCalendar> clone(static_cast<GregorianCalendar*>(calendar_.Clone()));
        switch (below(3)) {
        case 0:
            derived_ = Derived(calendar_);
            break;
        case 1:
            calendar_ = *clone;
            break;
        default:
            calendar_ = std::as_const(calendar_); // Itself.
        }
    }
    /// The model does not roll: it takes over what two ways of rolling agree on.
    void compareRolled(unsigned field)
    {
        const int amount = below(2000) - 1000;
        calendar_.roll(field, amount);
        derived_.roll(field, amount);
        compareStored(derived_);
        const std::int64_t time = derived_.getTime();
        if (calendar_.getTime() != time)
            FAIL("step " << step_ << ", rolled to " << calendar_.getTime() << " instead of " << time);
        each([time](auto& calendar) { calendar.setTime(time); });
    }
    void compareStored()
    {
        compareStored(model_);
        agree("set", [](auto& calendar) {
            int set = 0;
            for (int field = 0; field < Calendar::FieldCount; ++field)
                set |= calendar.isSet(field) << field;
            return set;
        });
    }
    static int stored(const Model& model, unsigned field) { return model.raw(field); }
    static int stored(const Derived& calendar, unsigned field) { return calendar.internalGet(field); }
    template <class Other> void compareStored(const Other& other) const
    {
        const Derived copy(calendar_);
        for (unsigned field = 0; field < Calendar::FieldCount; ++field)
            if (copy.internalGet(field) != stored(other, field))
                FAIL("step " << step_ << ", stored field " << field << ": " << copy.internalGet(field) << " instead of "
                             << stored(other, field));
    }

    std::mt19937_64 random_;
    int step_ = 0;
    const std::vector<TimeZone> zones_ = zones::all();
    GregorianCalendar limits_{TimeZone()};
    GregorianCalendar calendar_{TimeZone()};
    Derived derived_{TimeZone()};
    Model model_{TimeZone()};
};

void run(unsigned firstSeed, int calendars, int steps)
{
    for (int i = 0; i < calendars; ++i) {
        const unsigned seed = firstSeed + static_cast<unsigned>(i);
        INFO("calendar " << seed);
        Trio trio(seed);
        for (int step = 0; step < steps; ++step)
            trio.step();
    }
}
} // namespace

TEST_CASE("GregorianCalendar: does what its model does, whatever happens to it") { run(1, 200, 2000); }

TEST_CASE("GregorianCalendar: every day of 2,500 years has its model's date and week")
{
    GregorianCalendar calendar((TimeZone()));
    Model model((TimeZone()));
    for (std::int64_t day = -865264; day < 48000; ++day) { // From 400 BC.
        calendar.setTime(day * 86400000);
        model.setTime(day * 86400000);
        for (unsigned field = 0; field < Calendar::FieldAmPm; ++field)
            if (calendar.get(field) != model.raw(field))
                FAIL(zones::text(calendar) << ", field " << field << " instead of " << model.raw(field));
    }
}

// By hand, some minutes: test_calendar.exe "[model-long]"
TEST_CASE("GregorianCalendar: does what its model does, 50 million times", "[.][model-long]")
{
    run(1000, 5000, 10000);
}
