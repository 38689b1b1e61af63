#pragma once

#include <tarn/Array.h>
#include <tarn/Export.h>
#include <tarn/Stream.h>

#include <istream>
#include <ostream>
#include <streambuf>

namespace tarn {
/// Lets the standard library's streams read from or write to the library's:
///
///     StreamBuffer buffer(static_cast<OutputStream&>(file));
///     std::ostream out(&buffer);
///     out << std::setw(8) << 42 << std::endl;
///
/// Gathers small pieces, so that no buffering stream is needed. The stream below must outlive it. What that throws the
/// standard stream makes its `badbit` of, as it does with any buffer: call `exceptions(std::ios::badbit)` to have it
/// thrown on. Positions (`tellg`, `seekp`) are those of the stream below, where it has some.
class TARN_API StreamBuffer : public std::streambuf {
public:
    /// To read, or to write, not both.
    ///@{
    explicit StreamBuffer(InputStream& source);
    explicit StreamBuffer(OutputStream& target);
    ///@}
    /// It stays where it is.
    ///@{
    StreamBuffer(const StreamBuffer&) = delete;
    StreamBuffer& operator=(const StreamBuffer&) = delete;
    ///@}
    /// Writes what it holds; of a failure the debugger alone hears: call `flush()` of the standard stream before.
    ~StreamBuffer() override;

protected:
    /// What the standard's streams call.
    ///@{
    int_type underflow() override;
    int_type overflow(int_type c) override;
    int sync() override;
    pos_type seekoff(off_type offset, std::ios_base::seekdir origin, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;
    ///@}

private:
    void pass();

    InputStream* const source_ = nullptr;
    OutputStream* const target_ = nullptr;
    Array<char> buffer_;
};

/// Lets the library's classes (archives, LineReader) read from a standard stream, which must outlive it.
class TARN_API StandardInputStream final : public InputStream {
public:
    /// Opened as binary, or the bytes are not those of the file.
    explicit StandardInputStream(std::istream& source) : source_(source) {}
    /// Throws Exception "Error while reading from a standard stream".
    unsigned int read(void* buffer, unsigned int size) override;

private:
    std::istream& source_;
};

/// Lets the library's classes write to a standard stream, which must outlive it.
class TARN_API StandardOutputStream final : public BufferedOutputStream {
public:
    /// Opened as binary, or the bytes are not those that are written.
    explicit StandardOutputStream(std::ostream& target) : target_(target) {}
    /// Throw Exception "Error while writing to a standard stream".
    ///@{
    unsigned int write(const void* buffer, unsigned int size) override;
    void flush() override;
    void close() override { flush(); }
    ///@}

private:
    std::ostream& target_;
};

/// All that a stream still has, a file or a pipe until its writers are gone, as bytes. Throws what the stream throws.
TARN_API std::string readAll(InputStream& in);
} // namespace tarn
