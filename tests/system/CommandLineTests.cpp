#include "Test.h"

#include <tarn/CommandLine.h>
#include <tarn/RunProcess.h>

#include <random>

namespace {
using Words = std::vector<BasicString<wchar_t>>;

/// A random argument of what is hard to quote.
BasicString<wchar_t> argument(std::mt19937& random)
{
    constexpr std::wstring_view alphabet = L"\"\"\\\\\\ \t\nab'*%\x416\x4E2D";
    BasicString<wchar_t> text;
    for (auto length = random() % 12; length > 0; --length)
        text.push_back(alphabet[random() % alphabet.size()]);
    return text;
}

/// What a program of the C runtime has got.
Words seenByChild(const CommandLine& line)
{
    const RunResult result = runProcess(line);
    Words words;
    for (std::size_t begin = 0; begin < result.output.size(); begin += std::strlen(&result.output[begin]) + 1)
        words.push_back(a2w(&result.output[begin], CP_UTF8));
    return words;
}
} // namespace

TEST_CASE("CommandLine: 100,000 random arguments arrive as they are by the platform's rule and the C runtime's")
{
    std::mt19937 random; // The same each time.
    for (unsigned round = 0; round < 50; ++round) {
        CommandLine line(L"system_child.exe");
        line.add("arguments");
        Words words;
        for (unsigned i = 0; i < 2000; ++i) {
            words.push_back(argument(random));
            line.add(words.back());
        }
        Words split = CommandLine::split(line);
        split.erase(split.begin(), split.begin() + 2);
        CHECK(split == words);
        CHECK(seenByChild(line) == words);
    }
}

TEST_CASE("CommandLine: only what needs it is quoted, and the program by its own rule")
{
    CHECK(CommandLine("prog.exe").add("-x").add("C:\\a b\\").add("\\\"").add("").c_str() ==
          std::wstring(L"prog.exe -x \"C:\\a b\\\\\" \"\\\\\\\"\" \"\""));
    CHECK(CommandLine(L"").c_str() == std::wstring(L"\"\""));
    const CommandLine line = CommandLine(L"C:\\a b\\").add(L"c");
    CHECK(CommandLine::split(line) == Words{L"C:\\a b\\", L"c"});
    expectWindowsError([] { CommandLine(L"a\" b"); }, ERROR_INVALID_NAME, "No program is named \"a\" b\"");
    CHECK(CommandLine::own().front().endsWith(L"test_system.exe"));
}

TEST_CASE("CommandLine: a batch file gets no argument that the shell might run")
{
    CommandLine line(L"C:\\make it.CMD. ");
    line.add(L"a&b").add(L"C:\\");
    CHECK(line.c_str() == std::wstring(L"\"C:\\make it.CMD. \" \"a&b\" \"C:\\\""));
    CommandLine other(L"make.bat");
    for (const char* const argument : {"%PATH%", "a\"&calc", "!x!", "a\nb", "a\rb"})
        expectWindowsError([&] { (argument[1] == '\r' ? other : line).add(argument); }, ERROR_INVALID_PARAMETER,
                           std::string("No batch file can be given \"") + argument + "\"");
}
