#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Stream.h>

#include <string>
#include <string_view>

namespace tarn {
/// How text lies in bytes: a code page of the platform, any of them. The data may begin with a byte order mark.
enum TextEncoding : unsigned {
    /// The system's own code page, which differs between machines.
    ansi = 0,
    /// UTF-16, the low byte first: how the system keeps text.
    utf16 = 1200,
    /// UTF-16, the high byte first.
    utf16BigEndian = 1201,
    /// What to write when nobody says otherwise.
    utf8 = 65001
};

/// What to do with bytes that are no text, and with characters that an encoding lacks.
enum class BadText {
    /// Throw Exception, with the line in the text.
    refuse,
    /// Put U+FFFD or "?" in their place.
    replace
};

/// Reads text line by line from any stream, a file or a pipe:
///
///     LineReader reader(file);
///     for (BasicString<wchar_t> line; reader.readLine(line);)
///         lines.push_back(line);
///
/// Lines end with LF or CR LF, the last one perhaps with nothing; other characters, zeros among them, are the line's
/// own. Takes bytes in pieces, so that the stream below, which must outlive the reader, is ahead of it. Throws what
/// that throws.
class TARN_API LineReader {
public:
    /// `encoding` holds when there is no byte order mark, which decides otherwise and belongs to no line.
    explicit LineReader(InputStream& source, unsigned encoding = utf8, BadText badText = BadText::refuse)
        : source_(source), encoding_(encoding), badText_(badText)
    {
    }

    /// False when there are no more. Throws Exception "Line 3 is no text in code page 65001" for bytes that are to be
    /// refused; the next call goes on behind that line. Code pages that the platform does not know are WindowsError
    /// "Can't convert text".
    bool readLine(BasicString<wchar_t>& line);
    /// Of the line read last, from 1; 0 before.
    unsigned long long getLineNumber() const { return number_; }
    /// That of the byte order mark, when the first line was read and there is one.
    unsigned getEncoding() const { return encoding_; }

private:
    bool fill();
    void skipMark();
    std::size_t findEnd(std::size_t from) const;

    InputStream& source_;
    unsigned encoding_;
    const BadText badText_;
    std::string bytes_; // Of which those before begin_ are read.
    std::size_t begin_ = 0;
    unsigned long long number_ = 0;
};

/// What stands behind each line that a LineWriter writes.
enum class LineEnd {
    /// As the system's own programs have it.
    crLf,
    /// As the rest of the world has it.
    lf
};

/// How a LineWriter writes.
struct LineOptions {
    /// A TextEncoding or another code page.
    unsigned encoding = utf8;
    /// Behind each line.
    LineEnd lineEnd = LineEnd::crLf;
    /// Begin with a byte order mark, as many programs expect for UTF-16. Code pages have none.
    bool byteOrderMark = false;
    /// For characters that the encoding lacks.
    BadText badText = BadText::refuse;
};

/// Writes text line by line to any stream. Each call is a write of that: put a BufferingOutputStream in front of a
/// file. The stream must outlive the writer. Throws what it throws, and EndOfFile when it does not take all.
class TARN_API LineWriter {
public:
    /// Nothing is written yet.
    explicit LineWriter(OutputStream& target, const LineOptions& options = {}) : target_(target), options_(options) {}

    /// A text as it is, and with the end of a line behind it. Throws Exception "Line 3 has characters that code page
    /// 1252 lacks", and then nothing is written; also for half a surrogate pair. WindowsError "Can't convert text" as
    /// LineReader.
    ///@{
    void write(std::wstring_view text);
    void writeLine(std::wstring_view text);
    ///@}

private:
    OutputStream& target_;
    const LineOptions options_;
    bool hasBegun_ = false;
    unsigned long long number_ = 1;
};
} // namespace tarn
