#include <tarn/TimeText.h>

#include "../foundation/Quoted.h"
#include "../foundation/Throw.h"
#include "Arithmetic.h"

#include <tarn/Exception.h>

#include <cstdio>
#include <optional>
#include <string>

namespace tarn {
namespace {
struct Unit {
    char letter;
    std::int64_t millis;
};
constexpr Unit dateUnits[] = {{'W', 7 * millisPerDay}, {'D', millisPerDay}};
constexpr Unit timeUnits[] = {{'H', millisPerHour}, {'M', millisPerMinute}, {'S', 1000}};

/// Gathers a duration, all of one sign, so that the least number of 64 bits can be read, too.
template <class Ch> class DurationReader {
public:
    explicit DurationReader(const Ch* text) : next_(text) {}

    std::optional<std::int64_t> read()
    {
        isNegative_ = skip('-');
        if (!isNegative_)
            skip('+');
        if (!skip('P'))
            return std::nullopt;
        bool isRight = readUnits(dateUnits);
        if (isRight && skip('T')) {
            const int before = parts_;
            isRight = readUnits(timeUnits) && parts_ > before;
        }
        return isRight && parts_ > 0 && *next_ == 0 ? std::optional(sum_) : std::nullopt;
    }

private:
    bool skip(char c) { return *next_ == static_cast<Ch>(c) && (++next_, true); }
    bool isDigit() const { return *next_ >= '0' && *next_ <= '9'; }
    bool add(std::int64_t count, std::int64_t millis)
    {
        std::int64_t part = 0;
        return !__builtin_mul_overflow(isNegative_ ? -count : count, millis, &part) &&
               !__builtin_add_overflow(sum_, part, &sum_);
    }

    /// Parts in the order of their units; false for one that is none of them, or too large.
    template <std::size_t count> bool readUnits(const Unit (&units)[count])
    {
        for (const Unit* unit = units; isDigit(); ++unit, ++parts_) {
            std::int64_t number = 0;
            for (; isDigit(); ++next_)
                if (__builtin_mul_overflow(number, 10, &number) ||
                    __builtin_add_overflow(number, *next_ - '0', &number))
                    return false;
            std::int64_t fraction = 0;
            const bool hasFraction = skip('.') || skip(',');
            if (hasFraction && !isDigit())
                return false;
            for (int digit = 100; hasFraction && isDigit(); ++next_, digit /= 10)
                fraction += (*next_ - '0') * digit;
            while (unit != units + count && *next_ != static_cast<Ch>(unit->letter))
                ++unit;
            if (unit == units + count || (hasFraction && unit->letter != 'S') || !add(number, unit->millis) ||
                !add(fraction, 1))
                return false;
            ++next_;
        }
        return true;
    }

    const Ch* next_;
    bool isNegative_ = false;
    int parts_ = 0;
    std::int64_t sum_ = 0;
};

template <class Ch> std::int64_t parse(const Ch* text)
{
    const auto duration = DurationReader<Ch>(text).read();
    if (!duration)
        throwError(Exception("Not an ISO 8601 duration of weeks to seconds: " + quoted(text)));
    return *duration;
}
} // namespace

BasicString<char> formatISODurationA(std::int64_t milliseconds)
{
    const std::uint64_t all =
        milliseconds < 0 ? -static_cast<std::uint64_t>(milliseconds) : static_cast<std::uint64_t>(milliseconds);
    std::string text = milliseconds < 0 ? "-P" : "P";
    if (const std::uint64_t days = all / millisPerDay)
        text += std::to_string(days) + 'D';
    auto left = static_cast<unsigned int>(all % millisPerDay);
    if (left == 0)
        return all == 0 ? "PT0S" : text;
    text += 'T';
    for (const Unit& unit : timeUnits) {
        const auto millis = static_cast<unsigned int>(unit.millis);
        const unsigned int count = left / millis;
        left %= millis;
        char fraction[8] = "";
        if (unit.letter == 'S' && left > 0)
            std::snprintf(fraction, sizeof fraction, ".%03u", left);
        if (count > 0 || fraction[0])
            text += std::to_string(count) + fraction + unit.letter;
    }
    return text;
}
BasicString<wchar_t> formatISODurationW(std::int64_t milliseconds)
{
    return BasicString<wchar_t>(formatISODurationA(milliseconds).c_str());
}

std::int64_t parseISODuration(const char* text) { return parse(text); }
std::int64_t parseISODuration(const wchar_t* text) { return parse(text); }
} // namespace tarn
