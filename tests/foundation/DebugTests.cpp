#include <catch2/catch.hpp>

#include "DebuggerOutput.h"

#include <tarn/BasicString.h>
#include <tarn/Debug.h>
#include <tarn/Windows.h>

using support::DebuggerOutput;
using Calls = std::vector<std::string>;

namespace {
const std::string prefix = tarn::BasicString<char>::fromFormat("[%lu] ", GetCurrentThreadId());
} // namespace

TEST_CASE("trace: each new line begins with the thread's identifier", "[foundation][debug]")
{
    tarn::trace("\n");
    const DebuggerOutput output;
    for (const char* text : {"x", "y\n", "", static_cast<const char*>(nullptr)})
        tarn::trace(text);
    tarn::trace(L"z"); // The empty text has begun the line already.
    CHECK(output.calls() == Calls{prefix, "x", "y\n", prefix, "", "", "z"});
}

TEST_CASE("dbg: text reaches the debugger when the stream is flushed or ends, and only then", "[foundation][debug]")
{
    tarn::trace("\n");
    const DebuggerOutput output;
    tarn::dbg << 'a' << 'b';
    CHECK(output.calls().empty());
    tarn::dbg << std::endl;
    tarn::wdbg << L"wide" << L'\0' << L"r" << std::endl; // A zero does not end the line.
    Calls expected{prefix, "ab\n", prefix, "wide r\n"};
    CHECK(output.calls() == expected);
    {
        tarn::DebugBuf<char> buffer;
        std::ostream stream(&buffer);
        stream << 1 << std::flush << std::flush << 2;
        expected.insert(expected.end(), {prefix, "1", ""});
        CHECK(output.calls() == expected);
    }
    const tarn::DebugBuf<char> unused;
    expected.push_back("2");
    CHECK(output.calls() == expected);
}
