#include "Contents.h"
#include "Pieces.h"

#include <tarn/StandardStreams.h>
#include <tarn/TextLines.h>

using namespace std::string_literals;
using Lines = std::vector<std::wstring>;

namespace {
Lines linesOf(InputStream& in, unsigned encoding, BadText badText)
{
    Lines lines;
    LineReader reader(in, encoding, badText);
    for (BasicString<wchar_t> line; reader.readLine(line);)
        lines.push_back(line);
    CHECK(reader.getLineNumber() == lines.size());
    return lines;
}

std::string written(const Lines& lines, const LineOptions& options)
{
    MemoryOutputStream out;
    LineWriter writer(out, options);
    for (const std::wstring& line : lines)
        writer.writeLine(line);
    return contentOf(out);
}
} // namespace

TEST_CASE("LineReader: every encoding, mark and end of a line, in pieces of any size")
{
    const Lines both{L"\x416 a", {}, L"b"};
    const struct {
        std::string bytes;
        unsigned encoding;
        Lines lines;
    } table[] = {{"", utf8, {}},
                 {"\xEF\xBB\xBF", ansi, {}},
                 {"\n", utf8, Lines(1)},
                 {"\xD0\x96 a\r\n\nb", utf8, both},
                 {"\xEF\xBB\xBF\xD0\x96 a\n\r\nb\r\n", 1252, both},
                 {"\xC6 a\n\nb", 1251, both},
                 {"\x16\x04 \0a\0\r\0\n\0\n\0b\0"s, utf16, both},
                 {"\xFF\xFE\x16\x04 \0a\0\n\0\n\0b\0\n\0"s, utf8, both},
                 {"\xFE\xFF\x04\x16\0 \0a\0\n\0\r\0\n\0b"s, utf8, both},
                 {"\x0A\x0D\n\0\x0D\x0A"s, utf16, {L"\x0D0A", L"\x0A0D"}},
                 {"a\0b\rc\n\xEF\xBB\xBF\r"s, utf8, {L"a\0b\rc"s, L"\xFEFF\r"}}};
    for (const auto& row : table) {
        CAPTURE(row.bytes);
        MemoryInputStream whole = readerOf(row.bytes);
        Pieces pieces(row.bytes, 1); // As from a slow pipe.
        CHECK(linesOf(whole, row.encoding, BadText::refuse) == row.lines);
        CHECK(linesOf(pieces, row.encoding, BadText::refuse) == row.lines);
    }
    Pieces pipe("a\nb", 1);
    LineReader reader(pipe);
    BasicString<wchar_t> line;
    CHECK((reader.readLine(line) && line == L"a" && pipe.source == "b")); // Waits for nothing else.
}

TEST_CASE("LineReader: bytes that are no text are refused by line, or replaced")
{
    const std::string bytes = "good\nb\xC3\nalso good\n";
    MemoryInputStream in = readerOf(bytes);
    LineReader reader(in);
    BasicString<wchar_t> line;
    CHECK(reader.readLine(line));
    expectError<Exception>([&] { reader.readLine(line); }, "Line 2 is no text in code page 65001");
    CHECK((reader.readLine(line) && line == L"also good" && !reader.readLine(line)));
    Pieces replaced(bytes, 1), half("a\0\x3D\xD8\n\0b"s, 1), unknown("a", 1);
    CHECK(linesOf(replaced, utf8, BadText::replace) == Lines{L"good", L"b\xFFFD", L"also good"});
    CHECK(linesOf(half, utf16, BadText::replace) == Lines{L"a\xFFFD", L"\xFFFD"});
    expectWindowsError([&] { linesOf(unknown, 12345, BadText::refuse); }, ERROR_INVALID_PARAMETER,
                       "Can't convert text");
}

TEST_CASE("LineWriter: the bytes of every encoding, and what an encoding lacks")
{
    const Lines lines{L"\x416", {}};
    CHECK(written(lines, {}) == "\xD0\x96\r\n\r\n");
    CHECK(written(lines, {.lineEnd = LineEnd::lf, .byteOrderMark = true}) == "\xEF\xBB\xBF\xD0\x96\n\n");
    CHECK(written(lines, {.encoding = utf16, .lineEnd = LineEnd::lf}) == "\x16\x04\n\0\n\0"s);
    CHECK(written({L"\x416"}, {.encoding = utf16BigEndian, .byteOrderMark = true}) == "\xFE\xFF\x04\x16\0\r\0\n"s);
    CHECK(written(lines, {.encoding = 1251, .lineEnd = LineEnd::lf, .byteOrderMark = true}) == "\xC6\n\n");
    CHECK(written({L"a\x416\xD83D"}, {.encoding = 1252, .badText = BadText::replace}) == "a??\r\n");
    CHECK(written({L"\xD83Dx"}, {.badText = BadText::replace}) == "\xEF\xBF\xBDx\r\n");

    MemoryOutputStream out;
    LineWriter writer(out, {.encoding = 1252});
    writer.write(L"\x20AC one\n");
    SetLastError(ERROR_INVALID_FLAGS);                          // Left over from somewhere else.
    expectError<Exception>([&] { writer.writeLine(L"\x100"); }, // No A either.
                           "Line 2 has characters that code page 1252 lacks");
    CHECK(out.getSize() == 6);
    LineWriter marked(out, {.byteOrderMark = true});
    expectError<Exception>([&] { marked.write(L"\xDC00"); }, "Line 1 has characters that code page 65001 lacks");
    marked.write(L"a"); // The mark comes before the first text that is written.
    CHECK(contentOf(out).substr(6) == "\xEF\xBB\xBF"
                                      "a");
}
