#include "BackgroundWork.h"

#include <algorithm>

namespace planner {
namespace {
constexpr unsigned long wasCancelled = 0, wasDone = 1; // What the thread ends with.
}

// Here, and not by the base class, because the members are gone then.
BackgroundWork::~BackgroundWork()
{
    cancel();
    join();
}

void BackgroundWork::start(HWND listener)
{
    listener_ = listener;
    Thread::start();
}

unsigned long BackgroundWork::run()
{
    const struct Finish {
        ~Finish() { PostMessageW(listener, finished, 0, 0); }
        HWND listener;
    } whateverHappens{listener_};
    try {
        work_([this](std::size_t done, std::size_t total) { report(done, total); });
        return wasDone;
    } catch (const Cancelled&) {
        return wasCancelled;
    }
}

void BackgroundWork::report(std::size_t done, std::size_t total)
{
    if (isCancelled_)
        throw Cancelled();
    const auto percent = static_cast<unsigned>(done * 100ULL / std::max<std::size_t>(total, 1));
    if (percent != percent_)
        PostMessageW(listener_, progressed, percent_ = percent, 0);
}

bool BackgroundWork::finish() { return joinOrThrow() == wasDone; }
} // namespace planner
