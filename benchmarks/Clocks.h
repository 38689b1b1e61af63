#pragma once

#include <tarn/Windows.h>

#include <chrono>

namespace bench {
/// What a time is taken by: the time that this thread had a processor, which a busy machine does not lengthen, or, for
/// work that other processes have a part in (Wine's server among them), the time that passes.
enum class Clock { processor, wall };

/// Wine runs on Linux, and knows of a thread's time no more than Linux's ticks of 10 ms. So Linux itself is asked,
/// which knows the nanoseconds. Negative where there is no Linux below.
inline double threadSeconds()
{
    static const bool onLinux = GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr;
    if (!onLinux)
        return -1;
    constexpr INT_PTR threadTime = 3; // CLOCK_THREAD_CPUTIME_ID
    struct {
        LONG_PTR seconds, nanoseconds;
    } time{};
#ifdef _WIN64
    INT_PTR result = 228; // clock_gettime
    asm volatile("syscall" : "+a"(result) : "D"(threadTime), "S"(&time) : "rcx", "r11", "memory");
#else
    INT_PTR result = 265;
    asm volatile("int $0x80" : "+a"(result) : "b"(threadTime), "c"(&time) : "memory");
#endif
    return result == 0 ? static_cast<double>(time.seconds) + static_cast<double>(time.nanoseconds) * 1e-9 : -1;
}

inline double secondsBy(Clock clock)
{
    if (const double seconds = clock == Clock::processor ? threadSeconds() : -1; seconds >= 0)
        return seconds;
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Adds up the times from start() to stop().
class Stopwatch {
public:
    explicit Stopwatch(Clock clock) : clock_(clock) {}
    void start() { started_ = secondsBy(clock_); }
    void stop() { seconds_ += secondsBy(clock_) - started_; }
    double seconds() const { return seconds_; }

private:
    Clock clock_;
    double started_ = 0;
    double seconds_ = 0;
};

/// Seconds that one call of `work` takes, or those of them that it measures with the Stopwatch that it asks for.
template <class Work> double secondsOf(Work& work, Clock clock)
{
    Stopwatch watch(clock);
    if constexpr (requires { work(watch); }) {
        work(watch);
    } else {
        watch.start();
        work();
        watch.stop();
    }
    return watch.seconds();
}
} // namespace bench
