#include "ContentLines.h"

#include "Text.h"

#include <tarn/BasicString.h>
#include <tarn/Exception.h>

#include <algorithm>

namespace planner {
namespace {
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestPiece = 75;
constexpr std::size_t longestLine = 1u << 24;

bool isNameCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

bool isControl(char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7F'; }

/// Takes a line apart.
class LineParser {
public:
    LineParser(std::string_view text, ContentLine& line) : text_(text), line_(line) {}

    void parse()
    {
        if (std::ranges::any_of(text_, isControl))
            line_.refuse("a control character");
        try {
            fromUTF8(std::string(text_));
        } catch (const std::exception&) {
            line_.refuse("not UTF-8");
        }
        line_.name = name();
        while (at(';'))
            line_.parameters.push_back(parameter());
        if (!at(':'))
            line_.refuse("a colon is missing");
        line_.value = text_;
    }

private:
    bool at(char c)
    {
        if (text_.empty() || text_.front() != c)
            return false;
        text_.remove_prefix(1);
        return true;
    }

    std::string take(std::size_t length)
    {
        const std::string taken(text_.substr(0, length));
        text_.remove_prefix(taken.size());
        return taken;
    }

    std::string name()
    {
        const auto end = std::ranges::find_if_not(text_, isNameCharacter);
        if (end == text_.begin())
            line_.refuse("a name is missing");
        return tarn::BasicString<char>(take(static_cast<std::size_t>(end - text_.begin()))).toUpper();
    }

    Parameter parameter()
    {
        Parameter parameter{name(), {}};
        if (!at('='))
            line_.refuse("the parameter " + parameter.name + " has no value");
        do
            parameter.values.push_back(parameterValue());
        while (at(','));
        return parameter;
    }

    std::string parameterValue()
    {
        if (!at('"'))
            return take(std::min(text_.find_first_of(";:,\""), text_.size()));
        const std::string value = take(std::min(text_.find('"'), text_.size()));
        if (!at('"'))
            line_.refuse("a quotation mark is missing");
        return value;
    }

    std::string_view text_;
    ContentLine& line_;
};
} // namespace

const Parameter* ContentLine::find(std::string_view parameter) const
{
    const auto found = std::ranges::find(parameters, parameter, &Parameter::name);
    return found == parameters.end() ? nullptr : &*found;
}

void ContentLine::refuse(const std::string& message) const
{
    throw tarn::Exception("Line " + std::to_string(number) + ": " + narrow(shortened(fromUTF8(message), 200)));
}

ContentLineReader::ContentLineReader(std::string_view text) : text_(text)
{
    if (text_.starts_with(byteOrderMark))
        position_ = byteOrderMark.size();
}

std::string_view ContentLineReader::physicalLine()
{
    const std::size_t end = std::min(text_.find('\n', position_), text_.size());
    std::string_view line = text_.substr(position_, end - position_);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    position_ = std::min(end + 1, text_.size());
    ++number_;
    return line;
}

bool ContentLineReader::isContinued() const
{
    return position_ < text_.size() && (text_[position_] == ' ' || text_[position_] == '\t');
}

std::string ContentLineReader::unfolded(const ContentLine& line)
{
    std::string text;
    for (std::string_view piece = physicalLine();; piece = physicalLine().substr(1)) {
        if (text.size() + piece.size() > longestLine)
            line.refuse("the line is too long");
        text += piece;
        if (!isContinued())
            return text;
    }
}

bool ContentLineReader::next(ContentLine& line)
{
    std::string text;
    while (text.empty()) {
        if (position_ == text_.size())
            return false;
        line = ContentLine();
        line.number = number_ + 1;
        text = unfolded(line);
    }
    LineParser(text, line).parse();
    return true;
}

std::string quoted(const std::string& text) { return toUTF8(L'"' + shortened(fromUTF8(text), 60) + L'"'); }

std::wstring unescaped(const ContentLine& line)
{
    std::string text;
    for (std::size_t i = 0; i < line.value.size(); ++i) {
        const char c = line.value[i];
        if (c != '\\') {
            text += c;
            continue;
        }
        const char escape = ++i < line.value.size() ? line.value[i] : '\0';
        if (escape == 'n' || escape == 'N')
            text += '\n';
        else if (escape == '\\' || escape == ';' || escape == ',')
            text += escape;
        else
            line.refuse("a backslash without a meaning");
    }
    return fromUTF8(text);
}

std::string escaped(const std::wstring& text)
{
    std::string result;
    for (const char c : toUTF8(text)) {
        if (c == '\n')
            result += "\\n";
        else if (c == '\\' || c == ';' || c == ',')
            result += {'\\', c};
        else if (!isControl(c))
            result += c;
    }
    return result;
}

std::string folded(std::string_view line)
{
    const auto isInsideCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    std::string result;
    for (std::size_t room = longestPiece; line.size() > room; room = longestPiece - 1) {
        std::size_t length = room;
        while (length > 1 && isInsideCharacter(line[length]))
            --length;
        result.append(line.substr(0, length)).append("\r\n ");
        line.remove_prefix(length);
    }
    return result.append(line).append("\r\n");
}

std::vector<std::string> split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}
} // namespace planner
