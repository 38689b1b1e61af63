#pragma once

#include "ICalendar.h"

#include <tarn/Thread.h>

#include <atomic>
#include <exception>

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
    void cancel() { isCancelled_ = true; } ///< The work ends at its next step.
    bool isCancelled() const { return isCancelled_; }
    /// Throws what ended the work, if anything did. Call it when the thread is joined.
    void rethrow() const;

    unsigned long run() override;

private:
    struct Cancelled {};
    void report(std::size_t done, std::size_t total);

    std::function<void(const Progress&)> work_;
    HWND listener_ = nullptr;
    std::atomic<bool> isCancelled_ = false;
    unsigned percent_ = 0;
    std::exception_ptr error_;
};
} // namespace planner
