#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace planner {
struct Parameter {
    std::string name; ///< In upper case.
    std::vector<std::string> values;
};

/// A line of an iCalendar file, put together from the pieces that it was folded into: NAME;PARAMETERS:VALUE.
struct ContentLine {
    std::string name; ///< In upper case.
    std::vector<Parameter> parameters;
    std::string value; ///< UTF-8, with its escapes.
    int number = 0;    ///< Of its first piece in the file, from 1.

    const Parameter* find(std::string_view parameter) const;
    /// Throws Exception "Line N: MESSAGE". The message may quote the file, and is UTF-8 therefore.
    [[noreturn]] void refuse(const std::string& message) const;
};

/// Takes the lines from a text, which has to stay. They may end with or without a carriage return.
class ContentLineReader {
public:
    explicit ContentLineReader(std::string_view text);

    /// False at the end; empty lines are passed over. Throws Exception that names the line for one that is
    /// malformed, no UTF-8 or longer than 16 MiB.
    bool next(ContentLine& line);
    std::size_t position() const { return position_; } ///< In bytes.
    int lineNumber() const { return number_; }         ///< How many have been read.

private:
    std::string_view physicalLine();
    bool isContinued() const;
    std::string unfolded(const ContentLine& line);

    std::string_view text_;
    std::size_t position_ = 0;
    int number_ = 0;
};

/// For messages: in quotation marks, and shortened where it is long. UTF-8, too.
std::string quoted(const std::string& text);

/// The value of a text property, and back.
std::wstring unescaped(const ContentLine& line);
std::string escaped(const std::wstring& text);
/// Ends a line, broken into pieces of at most 75 bytes where it is longer, but never inside of a character.
std::string folded(std::string_view line);

std::vector<std::string> split(std::string_view text, char separator);
} // namespace planner
