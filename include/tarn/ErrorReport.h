#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <exception>

namespace tarn {
/// An exception with those nested in it (`std::throw_with_nested`), as people read it.
struct ErrorReport {
    /// For the user: the texts from the outermost on, "The plan was not saved: Can't write to "C:\...": Disk full."
    /// Where there is a ReadingFailure its text, "The data end too early, at byte 120, in class Style", stands for the
    /// error's.
    BasicString<wchar_t> sentence;
    /// For the log: a line for each exception, with its class and code, and below it that of its ReadingFailure and
    /// those of its ErrorTrace where it has these. Lines are separated, not ended, by a line feed.
    BasicString<wchar_t> paragraph;
};

/// Every character of names is there; with `w2a(text, CP_UTF8)` in files and on terminals, too.
///@{
TARN_API ErrorReport reportOf(const std::exception& error);
/// Of whatever was thrown, in a `catch (...)` say. Empty for null.
TARN_API ErrorReport reportOf(const std::exception_ptr& error = std::current_exception());
///@}
} // namespace tarn
