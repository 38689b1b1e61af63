#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Time.h>

#include <memory>
#include <vector>

namespace tarn {
/// The system's event log, for what those who run a machine have to know: what went wrong, what was begun and ended.
///
///     const EventLog events(L"Backup");
///     events.report(EventLog::warning, L"The disk is nearly full");
///
/// Whoever installs the program calls registerSource() first; without that the texts are kept, but the system's viewer
/// says that it finds no description for them. A program's own log is a LogFile, which may pass on what is important.
/// Several threads may use an object. Can be moved. Failures throw WindowsError.
class TARN_API EventLog {
public:
    /// How much it matters.
    enum Severity { information, warning, error };
    struct Entry;

    /// As `source`, on this machine. Throws "Can't open event log".
    explicit EventLog(const wchar_t* source);

    /// Texts may have up to 31,839 characters. `id` is yours, 1 to 1000. Throws "Can't report event".
    void report(Severity severity, const wchar_t* text, unsigned long id = 1) const;

    /// Makes a source known, or no longer, which needs an administrator's rights. Throw "Can't register event source".
    ///@{
    static void registerSource(const wchar_t* source);
    static void unregisterSource(const wchar_t* source);
    ///@}

    /// What a source has reported, the latest first, up to so many. Throws "Can't read event log".
    static std::vector<Entry> read(const wchar_t* source, std::size_t most);

private:
    struct Close {
        TARN_API void operator()(void* log) const noexcept;
    };
    std::unique_ptr<void, Close> log_;
};

/// What was reported.
struct EventLog::Entry {
    /// What is no error and no warning counts as information.
    Severity severity = information;
    /// The whole number, of which a program's own id is the low half.
    unsigned long id = 0;
    /// To a second.
    Time time;
    /// One for report(), perhaps others for programs that report in other ways.
    std::vector<BasicString<wchar_t>> texts;
};
} // namespace tarn
