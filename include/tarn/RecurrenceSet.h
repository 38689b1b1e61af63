#pragma once

#include <tarn/Export.h>
#include <tarn/RecurrenceRule.h>
#include <tarn/Time.h>
#include <tarn/TimeZone.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

namespace tarn {
/// The instants at which something takes place that repeats: a first start, a rule, and single instants more or less,
/// as iCalendar (RFC 5545, section 3.8.5) has them.
///
///     const TimeZone zone = TimeZone::named("Europe/Berlin");
///     RecurrenceSet meetings(parseISOTime("2026-01-05T09:00", zone), zone);
///     meetings.setRule(parseRecurrenceRule("FREQ=MONTHLY;BYDAY=1MO"));
///     for (const Time& start : meetings.between(from, to))
///         std::cout << formatISOTimeA(start, zone) << '\n';
///
/// A value. The rule goes by what clocks in the zone show, so that the meeting is at nine in summer and in winter, and
/// by the dates of a GregorianCalendar, which are Julian before 1582-10-15. A day that a month does not have is left
/// out. A time that clocks show twice is the first of the two; one that they leave out is as much later as they are put
/// on: half past two is half past three on that day.
class TARN_API RecurrenceSet {
public:
    class Iterator;

    /// Takes place once, at the instant `start`. Of what is for days and no time of theirs, and of what goes by
    /// whatever clock there is, give what a UTC clock shows, and UTC.
    explicit RecurrenceSet(const Time& start, const TimeZone& zone = TimeZone());

    /// Repeats the start, which counts as the first one also when the rule does not name it. Throws as
    /// RecurrenceRule::validate().
    void setRule(const RecurrenceRule& rule);
    /// Takes place at this instant, too (RDATE).
    void add(const Time& time);
    /// Does not take place at this instant (EXDATE), though a rule's COUNT counts it.
    void exclude(const Time& time);
    /// Leaves out times that clocks leave out, and does not count them, where they would be moved. RFC 5545 says so in
    /// one place (3.3.10), and in another (3.3.5) what is said above.
    void leaveOutMissing(bool on = true) { leavesOutMissing_ = on; }

    /// The first start, the zone, and the rule if there is one.
    ///@{
    const Time& getStart() const { return start_; }
    const TimeZone& getZone() const { return zone_; }
    const std::optional<RecurrenceRule>& getRule() const { return rule_; }
    ///@}

    /// All of them, in the order of time. A rule without an end goes on to the end of the year 9999. One that names no
    /// more ends, when there has been none for 12,000 years at the latest.
    ///@{
    Iterator begin() const;
    std::default_sentinel_t end() const { return {}; }
    ///@}
    /// Those from an instant on, itself included, `for (const Time& time : set.from(Time::now()))`; far from the start,
    /// too, this is quick for a rule without COUNT.
    Iterator from(const Time& time) const;
    /// Those from an instant on, up to another, itself not included.
    std::vector<Time> between(const Time& first, const Time& end) const;

private:
    class Walk;

    Time start_;
    TimeZone zone_;
    std::optional<RecurrenceRule> rule_;
    std::vector<Time> added_, excluded_; // In the order of time.
    bool leavesOutMissing_ = false;
};

/// Finds one after the other. Copies go on together, and none needs the set any more.
class TARN_API RecurrenceSet::Iterator {
public:
    /// What the standard asks of an input iterator; and a range for a loop over what is left.
    ///@{
    using value_type = Time;
    using difference_type = std::ptrdiff_t;

    const Time& operator*() const;
    const Time* operator->() const { return &**this; }
    Iterator& operator++();
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const;
    Iterator begin() const { return *this; }
    std::default_sentinel_t end() const { return {}; }
    ///@}

private:
    friend class RecurrenceSet;
    explicit Iterator(std::shared_ptr<Walk> walk);

    std::shared_ptr<Walk> walk_;
};
} // namespace tarn
