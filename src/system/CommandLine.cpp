#include <tarn/CommandLine.h>

#include "../foundation/Check.h"
#include "../foundation/Quoted.h"

#include <shellapi.h>

#include <memory>
#include <string_view>

namespace tarn {
namespace {
constexpr const wchar_t* blanks = L" \t\n\v";

bool endsWithNoCase(std::wstring_view text, std::wstring_view end)
{
    return text.size() >= end.size() && _wcsnicmp(text.data() + text.size() - end.size(), end.data(), end.size()) == 0;
}

bool namesBatchFile(std::wstring_view program)
{
    program = program.substr(0, program.find_last_not_of(L" .") + 1); // As the platform reads file names.
    return endsWithNoCase(program, L".bat") || endsWithNoCase(program, L".cmd");
}

// The first word is read by a rule of its own: a quotation mark begins and ends it, and nothing escapes one.
BasicString<wchar_t> quotedProgram(const wchar_t* program)
{
    const BasicString<wchar_t> name(program);
    if (name.find(L'"') != name.npos)
        throwError(WindowsError(ERROR_INVALID_NAME, "No program is named " + quoted(program)));
    return name.empty() || name.find_first_of(blanks) != name.npos ? L'"' + name + L'"' : name;
}

// Backslashes count twice where a quotation mark follows them, and only there.
void appendQuoted(BasicString<wchar_t>& line, std::wstring_view argument)
{
    line += L'"';
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"')
            line.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        line += c;
    }
    line.append(backslashes, L'\\');
    line += L'"';
}

struct FreeLocal {
    void operator()(wchar_t** words) const { LocalFree(words); }
};
} // namespace

CommandLine::CommandLine(const char* program) : CommandLine(a2w(program, CP_ACP).c_str()) {}
CommandLine::CommandLine(const wchar_t* program)
    : text_(quotedProgram(program)), isBatchFile_(program && namesBatchFile(program))
{
}

CommandLine& CommandLine::add(const char* argument) { return add(a2w(argument, CP_ACP).c_str()); }
CommandLine& CommandLine::add(const wchar_t* argument)
{
    const std::wstring_view text = argument ? argument : L"";
    const bool plain = !text.empty() && text.find_first_of(L" \t\n\v\"") == text.npos;
    if (isBatchFile_) {
        if (text.find_first_of(L"\"%!\r\n") != text.npos)
            throwError(WindowsError(ERROR_INVALID_PARAMETER, "No batch file can be given " + quoted(argument)));
        text_.append(L" \"").append(text).append(L"\""); // The shell knows no escapes.
    } else if (plain) {
        text_.append(L" ").append(text);
    } else {
        text_ += L' ';
        appendQuoted(text_, text);
    }
    return *this;
}

std::vector<BasicString<wchar_t>> CommandLine::split(const wchar_t* commandLine)
{
    int count = 0;
    const std::unique_ptr<wchar_t*, FreeLocal> words(
        ensure(CommandLineToArgvW(commandLine, &count), "Can't split a command line"));
    return std::vector<BasicString<wchar_t>>(words.get(), words.get() + count);
}

std::vector<BasicString<wchar_t>> CommandLine::own() { return split(GetCommandLineW()); }
} // namespace tarn
