#include "Contents.h"
#include "Pieces.h"

using namespace std::string_literals;

namespace {
InputStream& input(Pieces& stream) { return stream; }

template <class T> T next(Pieces& in, Endianess order)
{
    T value{};
    input(in) >> order >> value;
    return value;
}
} // namespace

TEST_CASE("Streams: readFully and writeFully ask once and take a short answer for the end")
{
    Pieces in("abcdef", 3), out;
    char buffer[4];
    expectError<EndOfFile>([&] { in.readFully(buffer, 4); },
                           BasicString<char>::fromFormat("EOF in readFully(%p,4)\n", buffer));
    CHECK(in.source == "def");
    CHECK_NOTHROW(Pieces().readFully(buffer, 0));

    out.room = 3;
    expectError<EndOfFile>([&] { out.writeFully("abcd", 4); },
                           BasicString<char>::fromFormat("EOF in writeFully(%p,4)\n", "abcd"));
    CHECK(out.calls == 1);
    CHECK_THROWS_AS(out << "abcd", EndOfFile);

    Pieces text; // Of a string only the length is guarded.
    text.room = 6;
    CHECK_NOTHROW(text << "abcd");
    CHECK(text.written == "\4\0\0\0ab"s);
}

TEST_CASE("InputStream: a text that ends too early is the end of the file, whatever length it claims")
{
    std::string text;
    std::wstring wideText;
    for (const std::string& damaged :
         {"\5\0\0\0abcd"s, "\xFF\xFF\xFF\xFF" + std::string(100000, 'x'), "\xFF\xFF\xFF\x7F"s, "\1\0\0"s}) {
        Pieces in(damaged), wideIn(damaged);
        CHECK_THROWS_AS(input(in) >> text, EndOfFile);
        CHECK(text.capacity() < 400000);
        CHECK_THROWS_AS(input(wideIn) >> wideText, EndOfFile);
    }
}

TEST_CASE("OutputStream: copying a stream ends at the first read that gives nothing")
{
    std::string content(25000, 'x');
    content.back() = 'y';
    Pieces in(content), out;
    CHECK(&(static_cast<OutputStream&>(out) << input(in)) == &out);
    CHECK(out.written == content);
    CHECK(in.calls == 4);
    CHECK(out.calls == 3);

    MemoryInputStream memory(content.data(), 25000);
    Pieces direct;
    static_cast<OutputStream&>(direct) << memory;
    CHECK(direct.written == content);
    CHECK(direct.calls == 3);
    CHECK(memory.getFilePointer() == 25000);

    Pieces slow("abcdefg", 3), narrow;
    narrow.room = 4;
    static_cast<OutputStream&>(narrow) << input(slow);
    CHECK(narrow.written == "abcd");
    CHECK(slow.source.empty());
}

TEST_CASE("EndianToNative: numbers come in the host's byte order")
{
    Pieces in("\1\2\1\2\3\4\4\3\2\1\x3F\xF0\0\0\0\0\0\0\1\0\0\0\0\0\0\2\xFF\xFE"s);
    CHECK(next<std::uint16_t>(in, BigEndian) == 0x0102);
    unsigned big = 0, little = 0;
    input(in) >> BigEndian >> big >> LittleEndian >> little;
    CHECK(big == 0x01020304);
    CHECK(little == 0x01020304);
    CHECK(next<double>(in, BigEndian) == 1.0);
    CHECK(next<long long>(in, BigEndian) == 0x0100000000000002);
    CHECK(next<short>(in, BigEndian) == -2);
    CHECK_THROWS_AS(next<short>(in, BigEndian), EndOfFile);
}
