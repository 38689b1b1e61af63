#pragma once

#include <tarn/Export.h>

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <string>

namespace tarn {
/// Sends `text` to the debugger, with "[thread identifier] " before it when it begins a line.
///
/// The narrow and the wide form share the memory of whether a line is begun, which is reliable while one
/// thread traces at a time. An empty text, or a null one, makes the next one continue the line without a prefix.
///@{
TARN_API void trace(const char* text);
TARN_API void trace(const wchar_t* text);
///@}

/// The buffer under dbg and wdbg: collects text and passes it to trace when the stream is flushed (by
/// `std::flush` or `std::endl`) or the buffer destroyed. A flush with nothing pending traces the empty
/// text; a zero is traced as a blank. Takes no lock: give each thread that traces a buffer and a stream of its own.
template <class Ch, class Traits = std::char_traits<Ch>> class DebugBuf : public std::basic_streambuf<Ch, Traits> {
public:
    DebugBuf() = default;
    DebugBuf(const DebugBuf&) = delete;
    DebugBuf& operator=(const DebugBuf&) = delete;
    ~DebugBuf() override
    {
        if (!pending_.empty())
            DebugBuf::sync();
    }

protected:
    /// What a stream calls to pass its text on and to flush; neither fails.
    ///@{
    typename Traits::int_type overflow(typename Traits::int_type c = Traits::eof()) override
    {
        if (Traits::eq_int_type(c, Traits::eof()))
            return static_cast<typename Traits::int_type>(sync());
        pending_ += Traits::to_char_type(c);
        return c;
    }

    int sync() override
    {
        std::replace(pending_.begin(), pending_.end(), Ch(), Ch(' ')); // Which would end the text.
        trace(pending_.c_str());
        pending_.clear();
        return 0;
    }
    ///@}

private:
    std::basic_string<Ch> pending_;
};

/// Narrow text to the debugger.
extern TARN_API std::ostream dbg;
/// Wide text to the debugger.
extern TARN_API std::wostream wdbg;
} // namespace tarn
