#include "Test.h"

#include <tarn/Debug.h>

using Calls = std::vector<std::string>;

namespace {
const std::string prefix = BasicString<char>::fromFormat("[%lu] ", GetCurrentThreadId());
} // namespace

TEST_CASE("trace: each new line begins with the thread's identifier")
{
    trace("\n");
    const DebuggerOutput output;
    for (const char* text : {"x", "y\n", "", static_cast<const char*>(nullptr)})
        trace(text);
    trace(L"z"); // The empty text has begun the line already.
    CHECK(output.calls() == Calls{prefix, "x", "y\n", prefix, "", "", "z"});
}

TEST_CASE("dbg: text reaches the debugger when the stream is flushed or ends, and only then")
{
    trace("\n");
    const DebuggerOutput output;
    dbg << 'a' << 'b';
    CHECK(output.calls().empty());
    dbg << std::endl;
    wdbg << L"wide" << L'\0' << L"r" << std::endl; // A zero does not end the line.
    Calls expected{prefix, "ab\n", prefix, "wide r\n"};
    CHECK(output.calls() == expected);
    {
        DebugBuf<char> buffer;
        std::ostream stream(&buffer);
        stream << 1 << std::flush << std::flush << 2;
        expected.insert(expected.end(), {prefix, "1", ""});
        CHECK(output.calls() == expected);
    }
    const DebugBuf<char> unused;
    expected.push_back("2");
    CHECK(output.calls() == expected);
}
