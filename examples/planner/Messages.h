#pragma once

#include <tarn/Windows.h>

#include <string>

namespace planner {
/// How the program speaks to its user: in message boxes, and while a script runs on the output.
class Messages {
public:
    void setScripted(bool isScripted) { isScripted_ = isScripted; }

    /// The one place where errors end; to be called while one is being handled. While a script runs it
    /// throws the error on, which ends the program.
    void error(HWND owner) const;
    void tell(HWND owner, const std::wstring& text) const;

    /// Yes or no. Scripts answer it, as the next one.
    static bool confirm(HWND owner, const std::wstring& question);
    /// IDYES or IDNO for the two buttons with these texts, or IDCANCEL.
    static int ask(HWND owner, const std::wstring& question, const wchar_t* yes, const wchar_t* no);

private:
    bool isScripted_ = false;
};
} // namespace planner
