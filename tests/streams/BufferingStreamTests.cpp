#include "Contents.h"
#include "Pieces.h"

#include <tarn/BufferingStream.h>

#include <numeric>

TEST_CASE("BufferingOutputStream: small writes go on together, large ones at once")
{
    Pieces target;
    { // What was written whole leaves nothing to its end, so the stream below may be closed by then.
        BufferingOutputStream whole(target, 8);
        whole.write("--", 2);
        whole.flush();
    }
    CHECK(target.flushes == 1);
    target = Pieces();
    BufferingOutputStream out(target, 8);
    for (const char* piece : {"ab", "cd", "ef", "gh"})
        CHECK(out.write(piece, 2) == 2);
    CHECK(target.calls == 0);
    out.write("i", 1);
    CHECK(target.written == "abcdefgh");
    out.write("0123456789", 10);
    CHECK(target.written == "abcdefghi0123456789");
    CHECK(target.calls == 3);
    out.write("z", 1);
    out.close();
    CHECK(target.written.back() == 'z');
    CHECK(target.flushes == 1);
    expectError<Exception>([&] { out.getFilePointer(); }, "The stream below has no position");
}

TEST_CASE("BufferingOutputStream: position and size count what is held back")
{
    MemoryOutputStream memory;
    {
        BufferingOutputStream out(memory);
        out << 1 << 2;
        CHECK(out.getFilePointer() == 8);
        CHECK(out.getSize() == 8);
        CHECK(memory.getSize() == 0);
        CHECK(out.seek(-4, Seekable::current) == 4);
        out << 'x';
        CHECK(out.getSize() == 8);
        CHECK(out.seek(2, Seekable::end) == 10);
        out << 'y';
    }
    CHECK(contentOf(memory).substr(0, 8) == std::string("\1\0\0\0x\0\0\0", 8));
    CHECK(memory.getSize() == 11);
}

TEST_CASE("BufferingOutputStream: memory is seldom moved")
{
    std::vector<unsigned> numbers(1000000);
    std::iota(numbers.begin(), numbers.end(), 0u);
    MemoryOutputStream memory;
    BufferingOutputStream out(memory);
    unsigned moves = 0;
    const void* place = nullptr;
    for (const unsigned number : numbers) {
        out << number;
        moves += std::exchange(place, memory.getData()) != memory.getData();
    }
    out.flush();
    CHECK(moves < 15); // With one for each piece there are 50.
    REQUIRE(memory.getSize() == numbers.size() * sizeof numbers[0]);
    CHECK(std::memcmp(memory.getData(), numbers.data(), numbers.size() * sizeof numbers[0]) == 0);
}

TEST_CASE("BufferingOutputStream: the first failure is thrown, and again by each call that follows")
{
    Pieces target;
    target.room = 3;
    BufferingOutputStream out(target, 8);
    out.write("abcd", 4);
    CHECK_THROWS_AS(out.flush(), EndOfFile);
    target.room = 1000;
    CHECK_THROWS_AS(out.write("e", 1), EndOfFile);
    CHECK_THROWS_AS(out.close(), EndOfFile);
    CHECK(target.written == "abc");
    struct : MemoryOutputStream {
        unsigned int write(const void*, unsigned int) override { return 0; }
    } nothing;
    BufferingOutputStream lost(nothing, 8);
    lost.write("abcd", 4);
    for (int i = 0; i < 2; ++i)
        CHECK_THROWS_AS(lost.seek(1, Seekable::begin), EndOfFile);
    CHECK(nothing.getSize() == 0);

    const auto forget = [](bool alreadyFailing) {
        Pieces full;
        full.room = 0;
        BufferingOutputStream unsaid(full);
        unsaid << 1;
        if (alreadyFailing)
            throw std::runtime_error("first");
    };
    CHECK_THROWS_AS(forget(false), EndOfFile);
    expectError<std::runtime_error>([&] { forget(true); }, "first");
}

TEST_CASE("BufferingInputStream: asks until all is there")
{
    Pieces source("0123456789abcdef", 3);
    BufferingInputStream in(source, 8);
    CHECK(take(in, 1) == "0");
    CHECK(source.calls == 1);
    CHECK(take(in, 12) == "123456789abc");
    CHECK(take(in, 12) == "def");
    CHECK(take(in, 1).empty());
    CHECK_THROWS_AS(in.readInt32(), EndOfFile);
    expectError<Exception>([&] { in.setFilePointer(0, Seekable::begin); }, "The stream below has no position");
}

TEST_CASE("BufferingInputStream: position and size are those of what was read")
{
    MemoryInputStream memory("0123456789", 10);
    {
        BufferingInputStream in(memory, 4);
        CHECK(take(in, 1) == "0");
        CHECK(in.getFilePointer() == 1);
        CHECK(in.getSize() == 10);
        CHECK(in.seek(2, Seekable::current) == 3);
        CHECK(take(in, 2) == "34");
        CHECK_THROWS_AS(in.seek(11, Seekable::begin), std::runtime_error); // Stays where it is.
        CHECK(take(in, 1) == "5");
        CHECK(in.seek(-2, Seekable::end) == 8);
        CHECK(take(in, 1) == "8");
        CHECK(memory.getFilePointer() == 10);
    }
    CHECK(memory.getFilePointer() == 9);
    const auto leave = [](bool alreadyFailing) {
        MemoryInputStream gone("0123", 4);
        BufferingInputStream in(gone);
        take(in, 1);
        gone.setBuffer("", 0); // Where it cannot be set back.
        if (alreadyFailing)
            throw EndOfFile("first");
    };
    expectError<std::runtime_error>([&] { leave(false); }, "Bad seek position");
    expectError<EndOfFile>([&] { leave(true); }, "first");
}
