#pragma once

#include "ICalendar.h"

#include <tarn/Thread.h>

#include <atomic>

namespace planner {
/// Work on a thread of its own, which tells a window by messages how far it is and that it is done. It
/// touches no window itself.
class BackgroundWork : public tarn::Thread {
public:
    enum Message : UINT {
        progressed = WM_APP, ///< wParam: percent.
        finished
    };

    explicit BackgroundWork(std::function<void(const Progress&)> work) : work_(std::move(work)) {}
    ~BackgroundWork() override;

    void start(HWND listener);
    void cancel() { isCancelled_ = true; } ///< The work ends at its next step, if there is one.
    /// Waits for the end: true when the work was done, false when it was cancelled before. Throws what it threw.
    bool finish();

    unsigned long run() override;

private:
    struct Cancelled {};
    void report(std::size_t done, std::size_t total);

    std::function<void(const Progress&)> work_;
    HWND listener_ = nullptr;
    std::atomic<bool> isCancelled_ = false;
    unsigned percent_ = 0;
};
} // namespace planner
