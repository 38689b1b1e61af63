#include "Pieces.h"

#include <tarn/MemoryStream.h>

using namespace std::string_literals;

namespace {
template <class... T> std::string bytesOf(const T&... values)
{
    Pieces out;
    (static_cast<OutputStream&>(out) << ... << values);
    return out.written;
}

InputStream& input(Pieces& stream) { return stream; }

/// The next value; a different one stands in its place before.
template <class T> T next(Pieces& in, T value = {})
{
    input(in) >> value;
    return value;
}
template <class T> T next(Pieces& in, Endianess order)
{
    T value{};
    input(in) >> order >> value;
    return value;
}
} // namespace

TEST_CASE("OutputStream: values have their promised bytes")
{
    CHECK(bytesOf(0x01020304) == "\4\3\2\1");
    CHECK(bytesOf(-2L) == "\xFE\xFF\xFF\xFF");
    CHECK(bytesOf(0x0102030405060708) == "\x8\7\6\5\4\3\2\1");
    CHECK(bytesOf('a', L'b', static_cast<short>(-2), std::byte{3}, BigEndian) == "ab\0\xFE\xFF\3\1\0\0\0"s);
    CHECK(bytesOf(1.0f) == "\0\0\x80\x3F"s);
    CHECK(bytesOf(1.0) == "\0\0\0\0\0\0\xF0\x3F"s);
    CHECK(bytesOf(true, false) == "\1\0"s);
    CHECK(bytesOf("abc", "") == "\3\0\0\0abc\0\0\0\0"s);
    CHECK(bytesOf(BasicString<wchar_t>(L"\x20"
                                       L"ac"),
                  L"AB", std::string("x")) == "\3\0\0\0 \0a\0c\0\2\0\0\0A\0B\0\1\0\0\0x"s);
    CHECK(bytesOf(static_cast<const char*>(nullptr)) == "\0\0\0\0"s);
}

TEST_CASE("InputStream: values are read back from their bytes")
{
    Pieces in(bytesOf(-5, 0xFFFFFFFFu, 0.1, 1LL << 40, -7, 3000000000u, 2.5, "na\xEFve", L"\x4E2D", "", 'x', 0.5f,
                      Seekable::current) +
              "\2\0"s);
    CHECK(in.readInt32() == -5);
    CHECK(in.readUInt32() == 0xFFFFFFFFu);
    CHECK(in.readDouble() == 0.1);
    CHECK(next<long long>(in) == 1LL << 40);
    CHECK(next<long>(in) == -7);
    CHECK(next<unsigned>(in) == 3000000000u);
    CHECK(next<double>(in) == 2.5);
    CHECK(next<BasicString<char>>(in, "old") == "na\xEFve");
    CHECK(next<BasicString<wchar_t>>(in) == L"\x4E2D");
    CHECK(next<std::string>(in, "old").empty());
    CHECK(next<char>(in) == 'x');
    CHECK(next<float>(in) == 0.5f);
    CHECK(next(in, Seekable::end) == Seekable::current);
    CHECK(next<bool>(in)); // Any byte but zero is true.
    CHECK_FALSE(next<bool>(in, true));
}

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

TEST_CASE("InputStream: texts longer than a piece arrive whole")
{
    std::string text(100001, 'a'), copy;
    text[0x8000] = 'b';
    const std::wstring wideText(70000, L'\x3B1');
    std::wstring wideCopy;
    Pieces in(bytesOf(text, wideText));
    input(in) >> copy >> wideCopy;
    CHECK(copy == text);
    CHECK(wideCopy == wideText);
    CHECK(in.source.empty());
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
