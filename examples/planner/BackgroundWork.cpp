#include "BackgroundWork.h"

#include <algorithm>

namespace planner {
// Here, and not by the base class, because the members are gone then.
BackgroundWork::~BackgroundWork()
{
    try {
        cancel();
        join();
    } catch (...) { // The base class tries once more.
    }
}

void BackgroundWork::start(HWND listener)
{
    listener_ = listener;
    Thread::start(false);
}

unsigned long BackgroundWork::run()
{
    try {
        work_([this](std::size_t done, std::size_t total) { report(done, total); });
        isDone_ = true;
    } catch (const Cancelled&) {
    } catch (...) {
        error_ = std::current_exception();
    }
    PostMessageW(listener_, finished, 0, 0);
    return 0;
}

void BackgroundWork::report(std::size_t done, std::size_t total)
{
    if (isCancelled_)
        throw Cancelled();
    const auto percent = static_cast<unsigned>(done * 100ULL / std::max<std::size_t>(total, 1));
    if (percent != percent_)
        PostMessageW(listener_, progressed, percent_ = percent, 0);
}

bool BackgroundWork::finish()
{
    join();
    if (error_)
        std::rethrow_exception(error_);
    return isDone_;
}
} // namespace planner
