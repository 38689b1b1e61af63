#include "Test.h"

#include "Graph.h"
#include "Pieces.h"

#include <tarn/ErrorReport.h>
#include <tarn/FramedStream.h>
#include <tarn/ReadingFailure.h>

using namespace std::string_literals;

namespace {
/// What is said of reading an archive, and, in brackets, the text that the error had before that.
std::string failureOf(InputStream& in)
{
    MemoryOutputStream nowhere;
    try {
        Archive(in, nowhere).load<graph::Node>();
    } catch (const std::exception& error) {
        const auto failure = ReadingFailure::of(error);
        return (failure ? failure->getText() : "no failure") + " [" + std::string(error.what()).substr(0, 17) + ']';
    }
    return "";
}
std::string failureOf(const std::string& bytes)
{
    MemoryInputStream in = readerOf(bytes);
    return failureOf(in);
}

const std::string node = "\0\0\0\0\1\0\0\0\x12\0\0\0struct graph::Node\1\0\0\0n\0\0\0\0"s;
const std::string style = "\0\0\0\0\2\0\0\0\x13\0\0\0struct graph::Style"s;
} // namespace

TEST_CASE("ReadingFailure: an error says what is wrong, at which byte, and in which objects")
{
    CHECK(failureOf(node + "\1" + style + "\3\0\0\0re"s) ==
          "The data end too early, at byte 77, in struct graph::Style in struct graph::Node [EOF in readFully(]");
    CHECK(failureOf(node + "\1\7\0\0\0"s) == "The data refer to an object that they do not have, at byte 44, in struct "
                                             "graph::Node [Der Stream enth\xE4l]");
    CHECK(failureOf("\0\0\0\0\1\0\0\0\1\0\0\0?"s) ==
          "This program does not know the class \"?\" of an object, at byte 13 [Klassendefinition]");
    CHECK(failureOf("") == "The data end too early, at byte 0 [EOF in readFully(]");

    Pieces pipe(node), frame;
    CHECK(failureOf(pipe) == "The data end too early, in struct graph::Node [EOF in readFully(]");
    FramedOutputStream out(frame);
    out.writeFully(node.data(), static_cast<unsigned>(node.size()));
    out.close();
    frame.source = frame.written;
    FramedInputStream in(frame);
    CHECK(failureOf(in) == "The data end too early, at byte 39, in struct graph::Node [EOF in readFully(]");
}

namespace {
struct Picky final : Serializable {
    void serialize(OutputStream&) const override {}
    void deserialize(InputStream& in) override
    {
        const std::string how = take(in, 1);
        std::unique_ptr<Picky> own;
        if (how == "o")
            in >> own;
        else if (how == "p")
            Archive::behind(in).readObject();
        throw Exception(errorText(L"The plan \x4E2D is locked"));
    }
};
} // namespace

TEST_CASE("reportOf: says what could not be read, and where, in place of the error's text")
{
    const SerializableImpl<Picky> registration("Picky");
    const auto reportFor = [](const std::string& bytes) {
        MemoryInputStream in = readerOf(bytes);
        MemoryOutputStream nowhere;
        try {
            Archive(in, nowhere).load<Serializable>();
        } catch (const std::exception&) {
            return reportOf();
        }
        return ErrorReport();
    };
    const ErrorReport report = reportFor(node + "\1" + style + "\3\0\0\0re"s);
    CHECK(report.sentence == L"The data end too early, at byte 77, in struct graph::Style in struct graph::Node");
    CHECK(report.paragraph.startsWith(L"tarn::EndOfFile: EOF in readFully("));
    CHECK(report.paragraph.endsWith(L"\n    " + report.sentence));
    const std::string picky = "\0\0\0\0\0\0\0\0\5\0\0\0Picky"s;
    CHECK(reportFor(picky).sentence == L"The plan \x4E2D is locked, at byte 17, in Picky"); // As the code page cannot.
    CHECK(reportFor(picky + "o\1" + picky).sentence == L"The plan \x4E2D is locked, at byte 36, in Picky in Picky");
    CHECK(reportFor(picky + "p" + picky).sentence == L"The plan \x4E2D is locked, at byte 35, in Picky in Picky");
}

TEST_CASE("ReadingFailure: other errors have none, and a copy has what its original has")
{
    CHECK_FALSE(ReadingFailure::of(std::runtime_error("other")));
    CHECK_FALSE(ReadingFailure::of(EndOfFile("text")));
    CHECK_FALSE(ReadingFailure::of(Exception("text")));
    graph::Memory reader(node);
    const auto read = [&] { reader.archive.load<graph::Node>(); };
    const EndOfFile inside = thrownBy<EndOfFile>(read), behind = thrownBy<EndOfFile>(read);
    CHECK(ReadingFailure::of(inside)->path == std::vector<std::string>{"struct graph::Node"});
    CHECK((ReadingFailure::of(behind)->offset == node.size() && ReadingFailure::of(behind)->path.empty()));
}
