#pragma once

#include <exception>

namespace tarn {
/// For streams that hold bytes back. What a call throws is kept, and is thrown again by each further one: nobody knows
/// how much has arrived, and writing on would leave a hole.
template <class Call> void keepFailure(std::exception_ptr& failure, Call call)
{
    if (failure)
        std::rethrow_exception(failure);
    try {
        call();
    } catch (...) {
        failure = std::current_exception();
        throw;
    }
}
} // namespace tarn
