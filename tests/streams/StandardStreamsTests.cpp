#include "Contents.h"
#include "Pieces.h"

#include <tarn/StandardStreams.h>
#include <tarn/TextLines.h>

#include <sstream>

namespace {
struct Failing : InputStream, OutputStream {
    unsigned int read(void*, unsigned int) override { throw Exception("no reading"); }
    unsigned int write(const void*, unsigned int) override { throw Exception("no writing"); }
};
} // namespace

TEST_CASE("StreamBuffer: a standard stream writes to any stream and reads from it, with positions")
{
    MemoryOutputStream memory;
    const std::string large(200'000, 'x');
    {
        StreamBuffer buffer(static_cast<OutputStream&>(memory));
        std::ostream out(&buffer);
        out << "begin " << 42 << ' ' << large;
        CHECK(out.tellp() == 9 + 200'000);
        out.seekp(0);
        out << 'B';
        out.seekp(0, std::ios::end);
        out << "end";
        CHECK(buffer.sgetc() == std::char_traits<char>::eof());
    } // Passes on what it holds.
    MemoryInputStream again(memory.getData(), static_cast<unsigned>(memory.getSize()));
    StreamBuffer buffer(static_cast<InputStream&>(again));
    std::istream in(&buffer);
    std::string word, rest;
    int number = 0;
    in >> word >> number;
    CHECK((word == "Begin" && number == 42 && in.tellg() == 8));
    in.seekg(-3, std::ios::end);
    CHECK((in >> rest && rest == "end" && in.eof()));
    in.clear();
    in.seekg(7);
    CHECK(in.get() == '2');
    in.seekg(1, std::ios::cur);
    CHECK((in >> rest && rest == large + "end"));
    CHECK(buffer.sputc('x') == std::char_traits<char>::eof());

    Pieces pipe; // Without a position, but with a flush.
    StreamBuffer pipeBuffer(static_cast<OutputStream&>(pipe));
    std::ostream(&pipeBuffer) << "now" << std::flush;
    CHECK((pipe.written == "now" && pipe.flushes == 1));
}

TEST_CASE("StreamBuffer: what the stream below throws is the standard stream's badbit, or thrown on")
{
    Failing failing;
    StreamBuffer source(static_cast<InputStream&>(failing));
    std::istream in(&source);
    CHECK((in.get() == std::char_traits<char>::eof() && in.bad() && in.tellg() == -1));
    const DebuggerOutput output;
    {
        StreamBuffer target(static_cast<OutputStream&>(failing));
        std::ostream out(&target);
        out.exceptions(std::ios::badbit);
        out << "lost";
        CHECK_THROWS_WITH(out.flush(), "no writing");
        StreamBuffer held(static_cast<OutputStream&>(failing));
        std::ostream(&held) << "x";
    }
    CHECK(output.calls() ==
          std::vector<std::string>{// Of the one that held something.
                                   "Tarn++: a failure that could not be thrown was dropped: ", "no writing", "\n"});
}

TEST_CASE("StandardInputStream and StandardOutputStream: the library's classes on standard streams")
{
    std::stringstream stream;
    StandardOutputStream out(stream);
    out << 42 << "text";
    out.close();
    StandardInputStream in(stream);
    int number = 0;
    BasicString<char> text;
    in >> number >> text;
    CHECK((number == 42 && text == "text" && in.read(&number, 1) == 0));
    stream.clear();
    stream << std::string(10'000, 'y');
    CHECK(readAll(in) == std::string(10'000, 'y'));
    stream.setstate(std::ios::badbit);
    expectError<Exception>([&] { out << 1; }, "Error while writing to a standard stream");
    expectError<Exception>([&] { out.flush(); }, "Error while writing to a standard stream");
    expectError<Exception>([&] { in.read(&number, 1); }, "Error while reading from a standard stream");
}
