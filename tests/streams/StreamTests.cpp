#include "Expect.h"

#include <tarn/BasicString.h>
#include <tarn/Stream.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using namespace tarn;

namespace {
/// Serves its bytes in the pieces that it is told to, and keeps what is written as far as it has room.
class Pieces : public InputStream, public OutputStream {
public:
    explicit Pieces(std::string content = "", unsigned largestRead = ~0u) : source(content), largest(largestRead) {}

    unsigned int read(void* buffer, unsigned int size) override
    {
        const auto count = std::min<std::size_t>({size, largest, source.size()});
        std::memcpy(buffer, source.data(), count);
        source.erase(0, count);
        ++reads;
        return static_cast<unsigned int>(count);
    }
    unsigned int write(const void* buffer, unsigned int size) override
    {
        const auto count = std::min<std::size_t>(size, room);
        written.append(static_cast<const char*>(buffer), count);
        room -= count;
        ++writes;
        return static_cast<unsigned int>(count);
    }

    std::string source;
    unsigned largest;
    int reads = 0;
    std::string written;
    std::size_t room = 1000000;
    int writes = 0;
};

template <class... T> std::string bytesOf(const T&... values)
{
    Pieces out;
    (static_cast<OutputStream&>(out) << ... << values);
    return out.written;
}

template <std::size_t n> std::string bytes(const char (&text)[n]) { return std::string(text, n - 1); }

InputStream& input(Pieces& stream) { return stream; }
} // namespace

TEST_CASE("OutputStream: values have their promised bytes", "[streams]")
{
    CHECK(bytesOf(0x01020304) == bytes("\4\3\2\1"));
    CHECK(bytesOf(-2L) == bytes("\xFE\xFF\xFF\xFF"));
    CHECK(bytesOf(0x0102030405060708) == bytes("\x8\7\6\5\4\3\2\1"));
    CHECK(bytesOf(1.0) == bytes("\0\0\0\0\0\0\xF0\x3F"));
    CHECK(bytesOf(true, false) == bytes("\1\0"));
    CHECK(bytesOf("") == bytes("\0\0\0\0"));
    CHECK(bytesOf("abc") == bytes("\3\0\0\0abc"));
    CHECK(bytesOf(L"AB") == bytes("\2\0\0\0A\0B\0"));
    CHECK(bytesOf(BasicString<wchar_t>(L"\x20AC"), std::string("x")) == bytes("\1\0\0\0\xAC\x20\1\0\0\0x"));
    CHECK(bytesOf(static_cast<const char*>(nullptr)) == bytes("\0\0\0\0"));
}

TEST_CASE("InputStream: values are read back from their bytes", "[streams]")
{
    Pieces in(bytesOf(-5, 0xFFFFFFFFu, 0.1, 1LL << 40, -7, 3000000000u, 2.5, "na\xEFve", L"\x4E2D", ""));
    CHECK(in.readInt32() == -5);
    CHECK(in.readUInt32() == 0xFFFFFFFFu);
    CHECK(in.readDouble() == 0.1);
    long long wide = 0;
    long small = 0;
    unsigned large = 0;
    double real = 0;
    BasicString<char> narrowText("old");
    BasicString<wchar_t> wideText;
    std::string empty("old");
    input(in) >> wide >> small >> large >> real >> narrowText >> wideText >> empty;
    CHECK(wide == 1LL << 40);
    CHECK(small == -7);
    CHECK(large == 3000000000u);
    CHECK(real == 2.5);
    CHECK(narrowText == "na\xEFve");
    CHECK(wideText == L"\x4E2D");
    CHECK(empty.empty());
}

TEST_CASE("InputStream: any byte but zero reads as true", "[streams]")
{
    Pieces in(bytes("\2\0"));
    bool first = false, second = true;
    input(in) >> first >> second;
    CHECK(first);
    CHECK_FALSE(second);
}

TEST_CASE("InputStream: readFully takes one short answer for the end of the data", "[streams]")
{
    Pieces in("abcdef", 3);
    char buffer[4];
    support::expectError<EndOfFile>([&] { in.readFully(buffer, 4); },
                                    BasicString<char>::fromFormat("EOF in readFully(%p,4)\n", buffer));
    CHECK(in.reads == 1);
    CHECK(in.source == "def");

    Pieces empty;
    CHECK_NOTHROW(empty.readFully(buffer, 0));
}

TEST_CASE("OutputStream: writeFully asks once", "[streams]")
{
    Pieces out;
    out.room = 3;
    support::expectError<EndOfFile>([&] { out.writeFully("abcd", 4); },
                                    BasicString<char>::fromFormat("EOF in writeFully(%p,4)\n", "abcd"));
    CHECK(out.writes == 1);
}

TEST_CASE("OutputStream: of a string only the length is guarded", "[streams]")
{
    Pieces out;
    out.room = 6;
    CHECK_NOTHROW(out << "abcd");
    CHECK(out.written == bytes("\4\0\0\0ab"));
    out.room = 3;
    CHECK_THROWS_AS(out << "abcd", EndOfFile);
}

TEST_CASE("InputStream: a text that ends too early is the end of the file, whatever length it claims", "[streams]")
{
    std::string text;
    std::wstring wideText;
    for (const std::string& damaged : {bytes("\5\0\0\0abcd"), bytes("\xFF\xFF\xFF\xFF") + std::string(100000, 'x'),
                                       bytes("\xFF\xFF\xFF\x7F"), bytes("\1\0\0")}) {
        Pieces in(damaged), wideIn(damaged);
        CHECK_THROWS_AS(input(in) >> text, EndOfFile);
        CHECK(text.capacity() < 400000);
        CHECK_THROWS_AS(input(wideIn) >> wideText, EndOfFile);
    }
}

TEST_CASE("InputStream: texts longer than a piece arrive whole", "[streams]")
{
    std::string text(100001, 'a');
    text[0x8000] = 'b';
    Pieces in(bytesOf(text, std::wstring(70000, L'\x3B1')));
    std::string copy;
    std::wstring wideCopy;
    input(in) >> copy >> wideCopy;
    CHECK(copy == text);
    CHECK(wideCopy == std::wstring(70000, L'\x3B1'));
    CHECK(in.source.empty());
}

TEST_CASE("OutputStream: copying a stream ends at the first read that gives nothing", "[streams]")
{
    Pieces empty, out;
    CHECK(&(static_cast<OutputStream&>(out) << input(empty)) == &out);
    CHECK(out.writes == 0);

    std::string content(25000, 'x');
    content.back() = 'y';
    Pieces in(content);
    static_cast<OutputStream&>(out) << input(in);
    CHECK(out.written == content);
    CHECK(in.reads == 4);

    Pieces slow("abcdefg", 3), narrow;
    narrow.room = 4;
    static_cast<OutputStream&>(narrow) << input(slow);
    CHECK(narrow.written == "abcd");
    CHECK(slow.source.empty());
}

TEST_CASE("EndianToNative: numbers come in the host's byte order", "[streams]")
{
    Pieces in(bytes("\1\2\1\2\3\4\4\3\2\1\x3F\xF0\0\0\0\0\0\0\1\0\0\0\0\0\0\2\xFF\xFE"));
    std::uint16_t half = 0;
    int big = 0;
    unsigned little = 0;
    double real = 0;
    long long large = 0;
    short negative = 0;
    input(in) >> BigEndian >> half >> big >> LittleEndian >> little >> BigEndian >> real >> large >> negative;
    CHECK(half == 0x0102);
    CHECK(big == 0x01020304);
    CHECK(little == 0x01020304u);
    CHECK(real == 1.0);
    CHECK(large == 0x0100000000000002);
    CHECK(negative == -2);
    CHECK_THROWS_AS(input(in) >> BigEndian >> half, EndOfFile);

    const EndianToNative pair = input(in) >> BigEndian;
    CHECK(&pair.stream == &input(in));
    CHECK(pair.endianess == BigEndian);
}
