#include "Test.h"

#include "Contents.h"

#include <tarn/GUID.h>
#include <tarn/Rect.h>
#include <tarn/StreamValues.h>
#include <tarn/Time.h>

#include <chrono>
#include <filesystem>
#include <list>
#include <map>
#include <numeric>
#include <set>
#include <unordered_map>

using namespace std::string_literals;
using namespace std::chrono_literals;

namespace {
struct Person {
    template <class Self> static auto fieldsOf(Self& self) { return fields(self.name, self.born, self.friends); }
    bool operator==(const Person&) const = default;

    BasicString<char> name;
    std::chrono::year_month_day born;
    std::vector<Person> friends;
};
struct Foreign {
    bool operator==(const Foreign&) const = default;
    int number = 0;
};
} // namespace
template <> struct tarn::StreamFields<Foreign> {
    template <class Self> static auto of(Self& self) { return fields(self.number); }
};

namespace {
template <class T> T readFrom(const std::string& bytes)
{
    MemoryInputStream in = readerOf(bytes);
    T value{};
    in >> value;
    CHECK(in.getFilePointer() == bytes.size());
    return value;
}
/// The bytes of a value that comes back from them, and from nothing less.
template <class T> std::string there(const T& value)
{
    const std::string bytes = bytesOf(value);
    CHECK(readFrom<T>(bytes) == value);
    CHECK_THROWS_AS(readFrom<T>(bytes.substr(0, bytes.size() - 1)), EndOfFile);
    return bytes;
}

enum class Small : unsigned char { one = 1 };
using Either = std::variant<std::monostate, int, std::string>;
} // namespace

TEST_CASE("Streams: numbers and texts have their promised bytes, and come back from them")
{
    CHECK(there(0x01020304) == "\4\3\2\1");
    CHECK(there(-2L) == "\xFE\xFF\xFF\xFF");
    CHECK(there(3000000000u) == "\0\x5E\xD0\xB2"s);
    CHECK(there(0x0102030405060708) == "\x8\7\6\5\4\3\2\1");
    CHECK(there('a') + there(L'b') + there<short>(-2) + there(std::byte{3}) == "ab\0\xFE\xFF\3"s);
    CHECK(there(Seekable::current) + bytesOf(BigEndian) == "\1\0\0\0\1\0\0\0"s);
    CHECK(there(1.0f) == "\0\0\x80\x3F"s);
    CHECK(there(1.0) == "\0\0\0\0\0\0\xF0\x3F"s);
    CHECK(there(true) + there(false) == "\1\0"s);
    CHECK(there(std::string("na\xEFve")) == "\5\0\0\0na\xEFve"s);
    CHECK(there(BasicString<wchar_t>(L"\x4E2D ")) == "\2\0\0\0\x2D\x4E \0"s);
    std::string large(100001, 'a'); // More than one piece.
    large[0x8000] = 'b';
    CHECK(there(large).size() == 100005);
    CHECK(there(std::wstring(70000, L'\x3B1')).size() == 140004);
    CHECK(bytesOf("abc", L"AB", "", static_cast<const char*>(nullptr)) == "\3\0\0\0abc\2\0\0\0A\0B\0\0\0\0\0\0\0\0\0"s);

    MemoryInputStream in("\2\xFB\xFF\xFF\xFF\xFB\xFF\xFF\xFF\0\0\0\0\0\0\xF0\x3F", 17);
    bool flag = false;
    in >> flag;
    CHECK((flag && in.readInt32() == -5 && in.readUInt32() == 0xFFFFFFFBu && in.readDouble() == 1.0));
}

TEST_CASE("Stream values: each has its promised bytes, and comes back from them")
{
    CHECK(there(std::vector<short>{1, -2}) == "\2\0\0\0\1\0\xFE\xFF"s);
    std::vector<int> many(10000); // More than one piece.
    std::iota(many.begin(), many.end(), 0);
    CHECK(there(many).size() == 40004);
    CHECK(there(std::vector<bool>{true, false}) == "\2\0\0\0\1\0"s);
    CHECK(there(std::list<std::string>{"a", ""}) == "\2\0\0\0\1\0\0\0a\0\0\0\0"s);
    CHECK(there(std::set<Small>{Small::one}) == "\1\0\0\0\1"s);
    CHECK(there(std::map<std::string, bool>{{"k", true}}) == "\1\0\0\0\1\0\0\0k\1"s);
    CHECK(there(std::unordered_map<char, short>{{'k', 2}}) == "\1\0\0\0k\2\0"s);
    CHECK(there(std::array<short, 2>{1, 2}) == "\1\0\2\0"s);
    CHECK(there(std::array<std::string, 1>{"a"}) == "\1\0\0\0a"s);
    CHECK(there(std::pair<char, bool>('a', true)) == "a\1"s);
    CHECK(there(std::tuple<char, std::string>('a', "b")) == "a\1\0\0\0b"s);
    CHECK(there(std::optional<char>('a')) == "\1a"s);
    CHECK(there(std::optional<char>()) == "\0"s);
    CHECK(there(Either()) == "\0\0\0\0"s);
    CHECK(there(Either("a")) == "\2\0\0\0\1\0\0\0a"s);
    CHECK(there(258s) == "\2\1\0\0\0\0\0\0"s);
    CHECK(there(std::chrono::duration<float>(1)) == "\0\0\x80\x3F"s);
    CHECK(there(std::chrono::sys_days(std::chrono::days(3))) == bytesOf(std::chrono::days(3)));
    CHECK(there(std::chrono::year_month_day(2024y / 2 / 29)) == "\xE8\7\2\x1D"s);
    CHECK(there(std::filesystem::path(L"a\x4E2D")) == "\2\0\0\0a\0\x2D\x4E"s);
    CHECK(there(GUID{0x04030201, 0x0605, 0x0807, {9, 10, 11, 12, 13, 14, 15, 16}}) ==
          "\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\xD\xE\xF\x10"s);
    CHECK(there(Point(1, 2)) == "\1\0\0\0\2\0\0\0"s);
    CHECK(bytesOf(Rect(1, 2, 3, 4)) == bytesOf(std::array<long, 4>{1, 2, 3, 4}));
    CHECK(there(std::vector<Time>{Time(5)}) == "\1\0\0\0\5\0\0\0\0\0\0\0"s);
    CHECK(there(Foreign{7}) == "\7\0\0\0"s);
    CHECK(bytesOf(Person{"a", 1y / 2 / 3, {Person()}}) == "\1\0\0\0a\1\0\2\3\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s);
    const std::size_t size = 3;
    const int less = -2;
    CHECK(bytesOf(fixed64(std::string("abc").size())) == bytesOf(fixed64(size)));
    CHECK(bytesOf(fixed64(size)) == "\3\0\0\0\0\0\0\0"s);
    const std::string minus = bytesOf(fixed64(less));
    MemoryInputStream in = readerOf(minus);
    int number = 0;
    in >> fixed64(number);
    CHECK((minus == std::string("\xFE") + std::string(7, '\xFF') && number == -2));
}

TEST_CASE("Stream values: what was there before is replaced")
{
    const std::string bytes = bytesOf(std::vector<std::string>{"new"}, std::optional<int>(), false, "", L"");
    MemoryInputStream in = readerOf(bytes);
    std::vector<std::string> texts{"old", "older"};
    std::optional<int> number = 5;
    bool flag = true;
    std::string text = "old";
    std::wstring wideText = L"old";
    int array[] = {1, 2};
    in >> texts >> number >> flag >> text >> wideText;
    CHECK(texts == std::vector<std::string>{"new"});
    CHECK((!number && !flag && text.empty() && wideText.empty()));
    const std::string arrayBytes = bytesOf(array);
    MemoryInputStream arrayIn = readerOf(arrayBytes);
    int copy[2];
    arrayIn >> copy;
    CHECK(copy[1] == 2);
}

TEST_CASE("Stream values: what cannot be is an error, and takes no memory")
{
    expectError<Exception>([] { readFrom<Either>("\3\0\0\0"s); }, "A variant has no alternative 3");
    const std::string claims = "\xFF\xFF\xFF\xFF" + std::string(50000, 'x');
    std::vector<int> numbers;
    std::vector<std::string> texts;
    MemoryInputStream first = readerOf(claims), second = readerOf(claims);
    CHECK_THROWS_AS(first >> numbers, EndOfFile);
    CHECK(numbers.capacity() < 100000);
    CHECK_THROWS_AS(second >> texts, EndOfFile);
    const std::string large = "\0\0\0\0\1\0\0\0"s;
    MemoryInputStream third = readerOf(large);
    std::uint32_t number = 3;
    expectError<Exception>([&] { third >> fixed64(number); }, "A number is too large for this program");
    CHECK(number == 3);
}
