#pragma once

#include "Throw.h"

#include <boost/numeric/conversion/converter.hpp>

namespace tarn {
/// What numericCast throws for a value out of range.
class LossOfRange : public boost::numeric::bad_numeric_cast {
public:
    const char* what() const noexcept override { return "bad numeric cast: loss of range in numeric_cast"; }
};

struct ThrowLossOfRange {
    void operator()(boost::numeric::range_check_result result) const
    {
        if (result != boost::numeric::cInRange)
            throwError(LossOfRange());
    }
};

/// `value` as a `To`. Throws `boost::bad_numeric_cast` "bad numeric cast: loss of range in numeric_cast"
/// (Boost's own cast words the text differently from release to release).
template <class To, class From> To numericCast(From value)
{
    using Traits = boost::numeric::conversion_traits<To, From>;
    return boost::numeric::converter<To, From, Traits, ThrowLossOfRange>::convert(value);
}
} // namespace tarn
