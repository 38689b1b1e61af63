#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>

#include <vector>

namespace tarn {
/// A command line made of a program and its arguments, which arrive in the child as they were given, whatever blanks,
/// quotation marks and backslashes are in them. Converts to a wide text, for Process::create() and runProcess().
///
///     CommandLine command(L"C:\\Program Files\\Pack\\pack.exe");
///     command.add(L"-comment").add(L"all of \"today\"");
///     Process child(command, ProcessOptions());
///
/// That holds for programs that split their command line as the platform's `CommandLineToArgvW` or the C runtime
/// does, which is nearly every one. `cmd /c` does not: what stands behind it is a command of the shell. Narrow text is
/// in the ANSI code page.
class TARN_API CommandLine {
public:
    /// The program alone: a path, or a name for the platform to look up. Throws WindowsError "No program is named
    /// "PROGRAM"" for one with a quotation mark, which could not be told from the end of the name.
    ///@{
    explicit CommandLine(const char* program);
    explicit CommandLine(const wchar_t* program);
    ///@}

    /// Behind what there is already. A batch file (.bat, .cmd) gets its arguments from the shell, which replaces
    /// variables everywhere and knows no way to write a quotation mark: throws WindowsError "No batch file can be
    /// given "ARGUMENT"" for one with %, ", ! or a line break, which it might take for commands.
    ///@{
    CommandLine& add(const char* argument);
    CommandLine& add(const wchar_t* argument);
    ///@}

    /// The whole line, valid until the next add().
    ///@{
    const wchar_t* c_str() const { return text_.c_str(); }
    operator const wchar_t*() const { return c_str(); }
    ///@}

    /// The program and the arguments in a command line, as the platform's `CommandLineToArgvW` splits it. An empty
    /// line gives the path of this program (sic). Throws WindowsError "Can't split a command line".
    static std::vector<BasicString<wchar_t>> split(const wchar_t* commandLine);
    /// The name by which this program was started, and its arguments: with every character, where those of main() have
    /// only what is in the code page. Throws as split() does.
    static std::vector<BasicString<wchar_t>> own();

private:
    BasicString<wchar_t> text_;
    bool isBatchFile_;
};
} // namespace tarn
