#include "Contents.h"
#include "Pieces.h"

#include <tarn/FramedStream.h>

using namespace std::string_literals;

namespace {
std::string framed(const std::string& content, std::size_t piece = 100000)
{
    MemoryOutputStream bytes;
    {
        FramedOutputStream out(bytes);
        for (std::size_t at = 0; at < content.size(); at += piece)
            out.write(content.data() + at, static_cast<unsigned>(std::min(piece, content.size() - at)));
    }
    return contentOf(bytes);
}
/// The content of a frame that comes in pieces, as from a pipe, when so much is asked for.
std::string unframed(const std::string& frame, unsigned size = 200000)
{
    Pieces source(frame, 10000);
    FramedInputStream in(source);
    std::string content = take(in, size);
    CHECK(in.getReadCount() == content.size());
    in.finish();
    CHECK(in.read(content.data(), 1) == 0);
    return content;
}
} // namespace

TEST_CASE("FramedOutputStream: the bytes of a frame, with a block for each flush")
{
    // The checksums by a reckoning of their own.
    CHECK(framed("ab") == "\x89TF1\2\0\0\0"
                          "ab\x6A\x5B\x00\x29"
                          "\0\0\0\0\2\0\0\0\0\0\0\0\x23\xB1\xF3\xA5"s);
    CHECK(framed("") == "\x89TF1\0\0\0\0\0\0\0\0\0\0\0\0\x6A\x77\x8A\xE8"s);
    Pieces target;
    {
        FramedOutputStream out(target);
        out.flush();
        CHECK((target.written.empty() && target.flushes == 1));
        out.write("a", 1);
        out.flush();
        CHECK((target.written.size() == 13 && target.flushes == 2));
        out.write("bc", 2);
        for (int i = 0; i < 2; ++i)
            out.close();
        CHECK((target.written.size() == 13 + 10 + 16 && target.flushes == 3));
        expectError<Exception>([&] { out.write("d", 1); }, "The frame is closed");
    }
    CHECK(target.written.size() == 13 + 10 + 16);
    CHECK(unframed(target.written) == "abc");
}

TEST_CASE("FramedInputStream: what was written in any pieces comes back")
{
    std::string content(150000, 'x');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * i >> 3);
    for (const std::size_t piece : {7, 0x10000, 100000})
        CHECK(unframed(framed(content, piece)) == content);

    const std::string frames = framed("first") + framed("second");
    MemoryInputStream source = readerOf(frames);
    for (const char* const text : {"first", "second"}) { // Nothing behind a frame is taken.
        FramedInputStream in(source);
        CHECK(take(in, 10) == text);
        in.finish();
    }
}

TEST_CASE("FramedInputStream: no flipped bit is read in silence, no missing end, and no block that was not taken")
{
    for (const std::string content : {"", "some text"}) {
        std::string frame = framed(content);
        const auto size = static_cast<unsigned>(content.size());
        CHECK(unframed(frame, size) == content);
        for (std::size_t bit = 0; bit < 8 * frame.size(); ++bit) {
            const auto flip = [&] { frame[bit / 8] = static_cast<char>(frame[bit / 8] ^ 1 << bit % 8); };
            flip();
            CHECK_THROWS(unframed(frame));
            CHECK_THROWS(unframed(frame, size));
            flip();
        }
        for (std::size_t length = 0; length < frame.size(); ++length) {
            CHECK_THROWS_AS(unframed(frame.substr(0, length)), EndOfFile);
            CHECK_THROWS_AS(unframed(frame.substr(0, length), size), EndOfFile);
        }
    }
    for (const unsigned size : {0, 2})
        expectError<Exception>([&] { unframed(framed("abc"), size); }, "The data go on");
    expectError<Exception>([] { unframed("\x89TF1\1\0\1\0"s); }, "The data are damaged"); // A block too large.

    Pieces source("no frame, but a text");
    FramedInputStream broken(source);
    char byte;
    for (int i = 0; i < 2; ++i)
        expectError<Exception>([&] { broken.read(&byte, 1); }, "The data are damaged");
    CHECK(source.calls == 1); // Nothing more is asked for.
}

TEST_CASE("FramedOutputStream: a failure is thrown on, and leaves no end behind")
{
    const std::string content(100000, 'x');
    Pieces target;
    target.room = 70000;
    {
        FramedOutputStream out(target);
        out.write(content.data(), 100000);
        CHECK_THROWS_AS(out.flush(), EndOfFile);
        target.room = 1000000;
        CHECK_THROWS_AS(out.close(), EndOfFile);
        CHECK_THROWS_AS(out.write(content.data(), 100000), EndOfFile);
    }
    CHECK(target.written.size() == 70000);

    MemoryOutputStream bytes;
    try {
        FramedOutputStream out(bytes);
        out.write("abc", 3);
        throw 1;
    } catch (int) {
    }
    CHECK(bytes.getSize() == 0);
}
