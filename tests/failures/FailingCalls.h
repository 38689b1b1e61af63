#pragma once

#include <tarn/Windows.h>

#include <string>
#include <string_view>
#include <vector>

// Makes the platform's calls fail inside the library, one at a time. The library's import table is patched, so
// that the calls of the test and of the system itself stay as they are.

namespace support {
/// How a call that is made to fail says so: this code as the last error, as the result of calls that return
/// their code, and in the HRESULTs of COM. Nothing else in the tests meets it.
constexpr unsigned long injectedError = ERROR_LICENSE_QUOTA_EXCEEDED;

/// A call of the platform that the library imports.
struct PlatformCall {
    std::string_view name;
    /// What a failure of it leaves behind is its own, and no leak.
    bool leaves;
};

/// The library's calls can be made to fail as long as the object lives. One object at a time.
class FailingCalls {
public:
    FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
    ~FailingCalls();

    /// The calls that the library imports and that can fail.
    static const std::vector<PlatformCall>& calls();
    /// Imports that are neither in the list of calls nor in the list of those that cannot fail.
    static std::vector<std::string> unknownImports();

    /// From now on counts what is called, and lets nothing fail.
    void count();
    /// From now on lets the `at`-th call (from 1) of calls()[call] fail, or with `always` all from then on.
    void fail(std::size_t call, unsigned at, bool always);
    /// No call fails any more; what calls that failed to close have left open is closed.
    void stop();
    /// How often the call was made since count() or fail().
    unsigned counted(std::size_t call) const;
    /// How many calls failed since fail().
    unsigned failed() const;
};
} // namespace support
