#pragma once

#include <tarn/BasicString.h>

#include <string>

// Messages are narrow, and the ANSI code page cannot hold every name. So a description is carried with a second
// text where that is needed: behind the narrow one come a zero, which ends it for everybody else, a mark, and the
// whole text in UTF-8.

namespace tarn {
/// A description that is put together of texts of either width. As a string it is what the errors are made of.
class Description {
public:
    Description(const char* text) : narrow_(text), whole_(a2w(narrow_, 0)) {}
    Description(const std::string& text) : Description(text.c_str()) {}
    Description(const wchar_t* text) : narrow_(text), whole_(text) {}

    friend Description operator+(Description a, const Description& b)
    {
        a.narrow_ += b.narrow_;
        a.whole_ += b.whole_;
        return a;
    }

    operator std::string() const;

private:
    BasicString<char> narrow_;
    BasicString<wchar_t> whole_;
};

/// What stands behind the narrow text of a description, from the zero on; empty when nothing does.
std::string tailOf(const std::string& description);

/// The whole of a description of these two parts.
BasicString<wchar_t> wholeOf(const char* narrow, const std::string& tail);

/// What an error keeps as its text: the description, ": ", the reason, and a zero in any case, so that a tail can be
/// looked for.
std::string textWithReason(const std::string& description, const char* reason);

/// The whole of what an error keeps that was made by textWithReason() or of a description with a zero behind it.
BasicString<wchar_t> wholeOfKept(const char* text);
} // namespace tarn
