#include "Contents.h"
#include "Graph.h"
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
std::string unframed(const std::string& frame)
{
    MemoryInputStream source = readerOf(frame);
    FramedInputStream in(source);
    std::string content(200000, '?');
    content.resize(in.read(content.data(), 200000));
    in.finish();
    return content;
}
} // namespace

TEST_CASE("FramedOutputStream: the bytes of a frame")
{
    // The checksums by a reckoning of their own.
    CHECK(framed("ab") == "\x89TF1\2\0\0\0"
                          "ab\x6A\x5B\x00\x29"
                          "\0\0\0\0\2\0\0\0\0\0\0\0\x23\xB1\xF3\xA5"s);
    CHECK(framed("") == "\x89TF1\0\0\0\0\0\0\0\0\0\0\0\0\x6A\x77\x8A\xE8"s);
    CHECK(unframed(framed("")).empty());
}

TEST_CASE("FramedInputStream: what was written in any pieces comes back")
{
    std::string content(150000, 'x');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * i >> 3);
    for (const std::size_t piece : {7, 0x10000, 100000})
        CHECK(unframed(framed(content, piece)) == content);

    const std::string frame = framed("first") + framed("second");
    MemoryInputStream source = readerOf(frame);
    for (const char* const text : {"first", "second"}) { // Nothing behind a frame is taken.
        FramedInputStream in(source);
        std::string found(10, '?');
        found.resize(in.read(found.data(), 10));
        CHECK(found == text);
        in.finish();
    }
}

TEST_CASE("FramedInputStream: no flipped bit of an archive loads in silence, and no missing end")
{
    const graph::NodePtr root = graph::makeGraph();
    std::string frame = framed(graph::archived(root));
    graph::dismantle(root);
    const int before = graph::Counted::alive;
    const auto loads = [&] {
        graph::NodePtr copy;
        const std::string outcome = graph::outcomeOf([&] {
            MemoryInputStream source = readerOf(frame);
            FramedInputStream in(source);
            MemoryOutputStream nowhere;
            copy = Archive(in, nowhere).load<graph::Node>();
        });
        graph::dismantle(copy);
        return outcome.empty();
    };
    REQUIRE(loads());
    const std::size_t end = frame.size() - 16; // The last flips are told by finish() alone.
    for (std::size_t bit = 0; bit < 8 * frame.size(); ++bit) {
        const auto flip = [&] { frame[bit / 8] = static_cast<char>(frame[bit / 8] ^ 1 << bit % 8); };
        flip();
        if (bit / 8 < end && loads())
            FAIL("bit " << bit << " was accepted");
        CHECK_THROWS(unframed(frame));
        flip();
    }
    CHECK(graph::Counted::alive == before);
    for (std::size_t size = 0; size < frame.size(); ++size)
        CHECK_THROWS_AS(unframed(frame.substr(0, size)), EndOfFile);
}

TEST_CASE("FramedInputStream: more data than were read are an error, and so is each read after one")
{
    const std::string frame = framed("abc");
    MemoryInputStream source = readerOf(frame);
    FramedInputStream in(source);
    char byte;
    CHECK(in.read(&byte, 1) == 1);
    CHECK(in.getReadCount() == 1);
    expectError<Exception>([&] { in.finish(); }, "The data go on");

    MemoryInputStream damaged("no frame, but a text", 20);
    FramedInputStream broken(damaged);
    for (int i = 0; i < 2; ++i)
        expectError<Exception>([&] { broken.read(&byte, 1); }, "The data are damaged");
    expectError<Exception>([] { unframed("\x89TF1\1\0\1\0"s); }, "The data are damaged"); // A block too large.
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
    FramedOutputStream out(bytes);
    out.close();
    expectError<Exception>([&] { out.write("abc", 3); }, "The frame is closed");
}
