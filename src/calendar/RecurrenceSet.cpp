#include <tarn/RecurrenceSet.h>

#include "Arithmetic.h"
#include "RecurrenceStarts.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <utility>

namespace tarn {
namespace {
constexpr std::int64_t noEnd = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t clocksApart = 2 * millisPerDay; // Clocks are not put on or back by more.

void insert(std::vector<Time>& times, const Time& time)
{
    const auto place = std::ranges::lower_bound(times, time);
    if (place == times.end() || *place != time)
        times.insert(place, time);
}

/// The instants at which clocks show local times.
class LocalClock {
public:
    explicit LocalClock(const TimeZone& zone) : zone_(zone), isConstant_(!zone.UseDaylightTime()) {}

    std::int64_t localOf(std::int64_t time) const
    {
        if (isConstant_)
            return wrappingAdd(time, std::int64_t(zone_.GetStandardOffset()));
        const TimeZone::Offsets offsets = zone_.offsetsAt(time);
        return wrappingAdd(time, std::int64_t(offsets.standard) + offsets.daylight);
    }
    TimeZone::Instants instantsOf(std::int64_t local) const
    {
        if (!isConstant_)
            return zone_.instantsOf(local);
        const Time time = wrappingSubtract(local, std::int64_t(zone_.GetStandardOffset()));
        return {1, time, time};
    }

private:
    TimeZone zone_;
    bool isConstant_;
};

/// The instants of a rule in the order of time, the first start at their head.
class RuleInstants {
public:
    /// Those at and behind `end` need not be found.
    RuleInstants(const RecurrenceRule& rule, std::int64_t start, const TimeZone& zone, bool leavesOutMissing,
                 std::int64_t end)
        : clock_(zone), starts_(rule, clock_.localOf(start)), leavesOutMissing_(leavesOutMissing), next_(start),
          left_(rule.count), isCounted_(rule.count != 0), last_(rule.until ? lastOf(*rule.until) : noEnd)
    {
        if (const std::int64_t last = std::min(last_, end); last < noEnd - 2 * clocksApart)
            starts_.endAt(wrappingAdd(clock_.localOf(last), clocksApart));
    }

    /// Leaves out what lies before, the first start, too, as far as that is quick.
    void skipTo(std::int64_t time)
    {
        if (isCounted_ || time <= next_)
            return;
        starts_.skipTo(wrappingSubtract(clock_.localOf(time), clocksApart));
        advance();
    }

    bool atEnd() const { return atEnd_; }
    std::int64_t get() const { return next_; }
    void advance()
    {
        std::int64_t time = 0;
        do {
            atEnd_ = (isCounted_ && left_ <= 1) || !take(time);
            if (atEnd_)
                return;
        } while (time <= next_); // Two local times may be one instant, when clocks are put on.
        next_ = time;
        --left_;
        atEnd_ = next_ > last_;
    }

private:
    std::int64_t lastOf(const RecurrenceRule::Until& until) const
    {
        using Kind = RecurrenceRule::Until::Kind;
        if (until.kind == Kind::utc)
            return until.time;
        const std::int64_t restOfDay = until.kind == Kind::day ? millisPerDay - 1 : 0;
        return clock_.instantsOf(wrappingAdd(std::int64_t(until.time), restOfDay)).later;
    }

    // Missing times come later than those behind them, so they wait until it is their turn.
    bool take(std::int64_t& time)
    {
        if (!hasShown_)
            findShown();
        const bool isMoved = !moved_.empty() && (!hasShown_ || moved_.front() < shown_);
        if (isMoved) {
            time = moved_.front();
            moved_.pop_front();
        } else {
            time = shown_;
        }
        const bool isThere = isMoved || hasShown_;
        hasShown_ = hasShown_ && isMoved;
        return isThere;
    }

    void findShown()
    {
        for (std::int64_t local = 0; !hasShown_ && starts_.next(local);) {
            const TimeZone::Instants instants = clock_.instantsOf(local);
            hasShown_ = instants.count != 0;
            if (hasShown_)
                shown_ = instants.earlier;
            else if (!leavesOutMissing_)
                moved_.push_back(instants.later);
        }
    }

    LocalClock clock_;
    RecurrenceStarts starts_;
    bool leavesOutMissing_;
    std::int64_t next_;
    std::int64_t left_; // With the one that is next.
    bool isCounted_;
    std::int64_t last_;
    bool atEnd_ = false;

    std::deque<std::int64_t> moved_; // Missing times, where clocks are put on to.
    std::int64_t shown_ = 0;
    bool hasShown_ = false;
};
} // namespace

/// Where an iterator is.
class RecurrenceSet::Walk {
public:
    Walk(const RecurrenceSet& set, std::int64_t from, std::int64_t end) : added_(set.added_), excluded_(set.excluded_)
    {
        if (set.rule_) {
            rule_.emplace(*set.rule_, set.start_, set.zone_, set.leavesOutMissing_, end);
            rule_->skipTo(from);
        } else {
            insert(added_, set.start_);
        }
        do
            next();
        while (!atEnd_ && time_ < from);
    }

    const Time& get() const { return time_; }
    bool atEnd() const { return atEnd_; }
    void next()
    {
        do
            nextOfAll();
        while (!atEnd_ && std::ranges::binary_search(excluded_, time_));
    }

private:
    void nextOfAll()
    {
        const bool hasRule = rule_ && !rule_->atEnd(), hasAdded = at_ < added_.size();
        atEnd_ = !hasRule && !hasAdded;
        if (atEnd_)
            return;
        time_ = std::min(hasRule ? rule_->get() : noEnd, hasAdded ? std::int64_t(added_[at_]) : noEnd);
        if (hasRule && rule_->get() == time_)
            rule_->advance();
        if (hasAdded && added_[at_] == time_)
            ++at_;
    }

    std::optional<RuleInstants> rule_;
    std::vector<Time> added_;
    const std::vector<Time> excluded_;
    std::size_t at_ = 0;
    Time time_;
    bool atEnd_ = false;
};

RecurrenceSet::RecurrenceSet(const Time& start, const TimeZone& zone) : start_(start), zone_(zone) {}

void RecurrenceSet::setRule(const RecurrenceRule& rule)
{
    rule.validate();
    rule_ = rule;
}

void RecurrenceSet::add(const Time& time) { insert(added_, time); }
void RecurrenceSet::exclude(const Time& time) { insert(excluded_, time); }

RecurrenceSet::Iterator RecurrenceSet::begin() const { return from(std::numeric_limits<std::int64_t>::min()); }

RecurrenceSet::Iterator RecurrenceSet::from(const Time& time) const
{
    return Iterator(std::make_shared<Walk>(*this, time, noEnd));
}

std::vector<Time> RecurrenceSet::between(const Time& first, const Time& end) const
{
    std::vector<Time> found;
    for (const Time& time : Iterator(std::make_shared<Walk>(*this, first, end))) {
        if (time >= end)
            break;
        found.push_back(time);
    }
    return found;
}

RecurrenceSet::Iterator::Iterator(std::shared_ptr<Walk> walk) : walk_(std::move(walk)) {}

const Time& RecurrenceSet::Iterator::operator*() const { return walk_->get(); }

RecurrenceSet::Iterator& RecurrenceSet::Iterator::operator++()
{
    walk_->next();
    return *this;
}

bool RecurrenceSet::Iterator::operator==(std::default_sentinel_t) const { return walk_->atEnd(); }
} // namespace tarn
