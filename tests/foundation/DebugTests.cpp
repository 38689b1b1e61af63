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
    tarn::trace("x");
    tarn::trace("y\n");
    tarn::trace(L"z");
    CHECK(output.calls() == Calls{prefix, "x", "y\n", prefix, "z"});
}

TEST_CASE("trace: an empty text continues the line", "[foundation][debug]")
{
    tarn::trace("\n");
    const DebuggerOutput output;
    tarn::trace("");
    tarn::trace("x");
    CHECK(output.calls() == Calls{prefix, "", "x"});
}

TEST_CASE("dbg: text reaches the debugger when the stream is flushed", "[foundation][debug]")
{
    tarn::trace("\n");
    const DebuggerOutput output;
    tarn::dbg << 'a' << 'b';
    CHECK(output.calls().empty());
    tarn::dbg << std::endl;
    CHECK(output.calls() == Calls{prefix, "ab\n"});
    tarn::wdbg << L"wide" << std::endl;
    CHECK(output.calls() == Calls{prefix, "ab\n", prefix, "wide\n"});
}

TEST_CASE("DebugBuf: pending text is passed on at the end, and only then", "[foundation][debug]")
{
    tarn::trace("\n");
    const DebuggerOutput output;
    {
        tarn::DebugBuf<char> buffer;
        std::ostream stream(&buffer);
        stream << 1 << std::flush << std::flush << 2;
        CHECK(output.calls() == Calls{prefix, "1", ""});
    }
    CHECK(output.calls() == Calls{prefix, "1", "", "2"});
    const tarn::DebugBuf<char> unused;
}
