#include "Test.h"

#include "Contents.h"

#include <limits>

namespace {
constexpr long long largest = std::numeric_limits<long long>::max();
constexpr long long smallest = std::numeric_limits<long long>::min();
} // namespace

TEST_CASE("MemoryInputStream: read gives what is there")
{
    MemoryInputStream in("abcdefghij", 10);
    char buffer[20] = {};
    CHECK(in.read(buffer, 3) == 3);
    CHECK(in.read(buffer + 3, 0) == 0);
    CHECK(in.read(buffer + 3, 20) == 7);
    CHECK(std::string(buffer) == "abcdefghij");
    CHECK(in.read(buffer, 1) == 0);

    MemoryInputStream copy(in);
    copy.seek(-3, Seekable::end);
    CHECK_THROWS_AS(copy.readInt32(), EndOfFile);
    CHECK(in.getFilePointer() == 10);
    in.setBuffer("xy", 2);
    CHECK(in.read(buffer, 5) == 2);
    CHECK(MemoryInputStream().read(buffer, 5) == 0);
}

TEST_CASE("MemoryInputStream: positions lie between the start and the end")
{
    MemoryInputStream in("abcdefghij", 10);
    CHECK(in.seek(10, Seekable::begin) == 10);
    CHECK(in.seek(0, Seekable::begin) == 0);
    CHECK(in.seek(10, Seekable::current) == 10);
    CHECK(in.seek(-4, Seekable::current) == 6);
    CHECK(in.seek(-7, Seekable::end) == 3);
    CHECK(in.seek(5, static_cast<Seekable::whence>(9)) == 5);
    CHECK(in.getSize() == 10);
    const std::pair<long long, Seekable::whence> bad[] = {
        {11, Seekable::begin}, {-1, Seekable::begin},      {6, Seekable::current},      {-6, Seekable::current},
        {1, Seekable::end},    {largest, Seekable::end},   {smallest, Seekable::end},   {largest, Seekable::current},
        {-11, Seekable::end},  {1LL << 32, Seekable::end}, {1LL << 32, Seekable::begin}};
    for (const auto& row : bad) {
        CAPTURE(row.first, row.second);
        expectError<std::runtime_error>([&] { in.setFilePointer(row.first, row.second); }, "Bad seek position");
        CHECK(in.getFilePointer() == 5);
    }
}

TEST_CASE("MemoryOutputStream: writes go to the position and grow the stream exactly")
{
    MemoryOutputStream out;
    CHECK(out.getData() == nullptr);
    CHECK(out.write("abc", 3) == 3);
    out.setFilePointer(1, Seekable::begin);
    CHECK(out.write("X", 1) == 1);
    CHECK(contentOf(out) == "aXc");
    CHECK(out.write("YZ", 2) == 2);
    CHECK(contentOf(out) == "aXYZ");
    CHECK(out.write(nullptr, 0) == 0);
    CHECK(out.write(out.getData(), 4) == 4); // What it holds itself.
    CHECK(contentOf(out) == "aXYZaXYZ");

    out.setFilePointer(-6, Seekable::current);
    CHECK(out.seek(12, Seekable::end) == 20);
    CHECK(out.getSize() == 20);
    out.setFilePointer(2, Seekable::begin);
    CHECK(out.seek(-2, Seekable::end) == 18);
    CHECK(out.getSize() == 20);
    CHECK(contentOf(out).substr(0, 8) == "aXYZaXYZ");
    const std::string text = std::string(300000, 'x') + "end"; // So much has to be moved to grow.
    MemoryOutputStream large;
    large.write(text.data(), 300003);
    large.write(large.getData(), 300003);
    CHECK(contentOf(large) == text + text);
}

TEST_CASE("Memory streams: pieces of every length are copied whole, nothing beside them, and over themselves")
{
    const std::string digits = "0123456789abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const auto position = GENERATE(0u, 1u, 2u, 5u, 9u); // The piece is copied from 2.
    for (unsigned length = 0; length <= 40; ++length) {
        const std::string expected = std::string(digits).replace(position, length, digits.substr(2, length));
        MemoryOutputStream out;
        out.write(digits.data(), static_cast<unsigned>(digits.size()));
        out.setFilePointer(position, Seekable::begin);
        out.write(static_cast<const char*>(out.getData()) + 2, length);
        CHECK(contentOf(out) == expected);

        std::string memory = digits;
        MemoryInputStream in = readerOf(memory);
        in.setFilePointer(2, Seekable::begin);
        in.read(memory.data() + position, length);
        CHECK(memory == expected);
    }
}

TEST_CASE("MemoryOutputStream: copies are deep and keep the position")
{
    MemoryOutputStream out;
    out << "abc";
    out.setFilePointer(4, Seekable::begin);
    MemoryOutputStream copy(out), assigned;
    assigned = out;
    out.write("xyz", 3);
    for (MemoryOutputStream* each : {&copy, &assigned}) {
        CHECK(contentOf(*each) == std::string("\3\0\0\0abc", 7));
        CHECK(each->getFilePointer() == 4);
    }

    const void* const data = copy.getData();
    MemoryOutputStream moved(std::move(copy));
    assigned = std::move(moved);
    assigned = std::move(*&assigned);
    CHECK((assigned.getData() == data && assigned.getFilePointer() == 4));
    for (MemoryOutputStream* left : {&copy, &moved}) { // Empty, and at its start.
        *left << 1;
        CHECK(left->getSize() == 4);
    }
}

TEST_CASE("MemoryOutputStream: what cannot be leaves the stream as it was")
{
    MemoryOutputStream out;
    out.write("abc", 3);
    const auto seek = [&](long long offset, Seekable::whence origin) {
        return [&out, offset, origin] { out.setFilePointer(offset, origin); };
    };
    expectError<std::runtime_error>(seek(-4, Seekable::current), "Can't seek to negative offset");
    expectError<std::runtime_error>(seek(smallest, Seekable::end), "Can't seek to negative offset");
    for (const long long offset : {0x100000000, 0xFFFFFFFDLL, largest})
        expectError<std::runtime_error>(seek(offset, Seekable::end), "New size too large for a size_t");
    const volatile unsigned huge = 0xFFFFFFFF; // The compiler refuses such a constant.
    // The end of this write would be behind 4 GB, and before the start when counted in 32 bits.
    expectError<std::runtime_error>([&] { out.write("x", huge); }, "New size too large for a size_t");
    if constexpr (sizeof(void*) == 4) { // In 64 bits there is room for four gigabytes.
        expectError<BadAllocation>(seek(0xFFFFFFFF, Seekable::begin), "bad allocation");
        expectError<BadAllocation>([&] { out.write("x", huge - 15); }, "bad allocation");
    }
    CHECK(contentOf(out) == "abc");
    CHECK(out.getFilePointer() == 3);
}
