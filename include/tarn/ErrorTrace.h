#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <exception>
#include <span>
#include <typeinfo>
#include <vector>

namespace tarn {
/// Where an error of the library was thrown: the calls that led there, and the thread.
///
/// Errors carry it while the program asks for it, also through threads and `std::exception_ptr`, but not as copies of
/// their class (`catch (tarn::WindowsError error)`). It is for reports, so most programs need no more than enable() and
/// ErrorReport.h.
class TARN_API ErrorTrace {
public:
    /// Whether errors that the library throws from now on, on all threads, carry their trace, faults included. They do
    /// not at first: a throw takes longer with it, as much as the search for the handler takes once more.
    ///@{
    static void enable(bool on = true) noexcept;
    static bool isEnabled() noexcept;
    ///@}

    /// What an error carries; null for one without. Lives as long as the error.
    static const ErrorTrace* of(const std::exception& error) noexcept;

    /// Addresses within the instructions that were calling, as `addr2line` and debuggers take them, the innermost
    /// first: that of the fault, or of what the library threw for. In 32-bit programs they end at the first function of
    /// the system, which has no tables to go on by.
    std::span<const void* const> getFrames() const noexcept { return {frames_, count_}; }
    /// A line for each: "planner.exe+0x16dc", and where symbols are found the function's name, and its file and line.
    /// Takes its time, and finds what "dbghelp.dll" does.
    std::vector<BasicString<wchar_t>> describeFrames() const;
    /// The thread that threw.
    unsigned long getThreadID() const noexcept { return thread_; }
    /// The error's class; `typeid` of an error with a trace is that of a class derived from it.
    virtual const std::type_info& getErrorType() const noexcept = 0;

protected:
    /// For the call that returns to this address, or its callers alone when it is not found.
    explicit ErrorTrace(const void* returnAddress) noexcept;
    /// It has no state but its own.
    ///@{
    ErrorTrace(const ErrorTrace&) = default;
    ErrorTrace& operator=(const ErrorTrace&) = default;
    virtual ~ErrorTrace();
    ///@}

private:
    static constexpr unsigned int maxFrames = 32;

    const void* frames_[maxFrames] = {};
    unsigned int count_ = 0;
    unsigned long thread_;
};
} // namespace tarn
