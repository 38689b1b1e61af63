#pragma once

#include <tarn/Export.h>

#include <bit>
#include <concepts>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

// Byte streams and the encoding of values on them: little-endian numbers without padding, strings as a
// 32-bit length and their characters. Programs may exchange what they write this way.
//
// The interfaces have no virtual destructor: a stream belongs to whoever holds the concrete object, and
// cannot be deleted through an interface. A stream is used by one thread at a time.

namespace tarn {
class Serializable;

namespace detail {
[[noreturn]] TARN_API void throwShortRead(const void* buffer, unsigned int size);
[[noreturn]] TARN_API void throwShortWrite(const void* buffer, unsigned int size);

template <class T, class Stream> T readPlain(Stream& in)
{
    T value;
    in.readFully(&value, sizeof value);
    return value;
}
} // namespace detail

/// Bytes to read.
class TARN_API InputStream {
public:
    /// The number of bytes read: at most `size`, 0 at the end of the data.
    virtual unsigned int read(void* buffer, unsigned int size) = 0;
    /// Asks read() once; throws EndOfFile "EOF in readFully(...)" when the answer is any other count than
    /// `size`, and leaves the position where that read left it. It does not ask again for the rest: over a
    /// source that delivers in pieces (a pipe), loop over read() instead.
    virtual void readFully(void* buffer, unsigned int size);

    /// Four or eight bytes, little-endian. Throw as readFully().
    ///@{
    int readInt32() { return detail::readPlain<int>(*this); }
    unsigned int readUInt32() { return detail::readPlain<unsigned int>(*this); }
    double readDouble() { return detail::readPlain<double>(*this); }
    ///@}

    /// Reads an object that OutputStream::writeObject wrote: makes one of the class named there and has it
    /// read its data. The caller owns it, and destroys it through its own class. Throws
    /// Serializable::Exception for a class that is not registered. An object whose deserialize() throws
    /// is lost, not freed: its destructor could not be run.
    Serializable* readObject();

protected:
    ~InputStream() = default;
};

/// Somewhere to write bytes to.
class TARN_API OutputStream {
public:
    /// The number of bytes written, at most `size`.
    virtual unsigned int write(const void* buffer, unsigned int size) = 0;
    /// Asks write() once; throws EndOfFile "EOF in writeFully(...)" when it took any other count than `size`.
    void writeFully(const void* buffer, unsigned int size)
    {
        if (write(buffer, size) != size)
            detail::throwShortWrite(buffer, size);
    }

    /// Writes the name of the object's class, then what its serialize() writes. References between
    /// objects need an Archive. Throws `std::bad_typeid` for null, before anything is written.
    void writeObject(Serializable* object);

protected:
    ~OutputStream() = default;
};

/// An output stream that may hold data back until flush() or close().
class TARN_API BufferedOutputStream : public OutputStream {
public:
    /// Passes on what is held back.
    virtual void flush() = 0;
    /// Passes on what is held back and ends the stream; what may follow, the class says.
    virtual void close() = 0;

protected:
    ~BufferedOutputStream() = default;
};

/// A position in a stream, counted in bytes.
class TARN_API Seekable {
public:
    /// Where the offset of a seek counts from.
    enum whence : int { begin, current, end };

    /// Moves to `offset` bytes (negative: backwards) from `origin`.
    virtual void setFilePointer(long long offset, whence origin) = 0;
    /// Counted from the beginning.
    virtual unsigned long long getFilePointer() = 0;
    /// Sets the position and returns the new one.
    virtual unsigned long long seek(long long offset, whence origin);
    /// Goes to the end and back; when going back fails the position stays at the end.
    virtual unsigned long long getSize();

protected:
    ~Seekable() = default;
};

/// Bytes to read from any position.
class TARN_API SeekableInputStream : public virtual InputStream, public virtual Seekable {
protected:
    ~SeekableInputStream() = default;
};

// ---- Values. StreamValues.h has more of them; what is not listed here or there does not compile.

/// What is written as its bytes: integers and characters of 8 to 64 bits, float, double, and enumerations, which
/// are as large as their underlying type.
///
/// `std::size_t`, `std::ptrdiff_t` and the like are 32-bit integers in a 32-bit program and 64-bit integers in a
/// 64-bit one: convert them to `std::uint32_t`, or whatever the data shall have, before they are written.
template <class T>
concept StreamNumber = (std::integral<T> && !std::same_as<T, bool>) || std::same_as<T, float> ||
                       std::same_as<T, double> || std::is_enum_v<T>;

/// Little-endian, without padding. Throws EndOfFile "EOF in writeFully(...)".
template <StreamNumber T> OutputStream& operator<<(OutputStream& out, T value)
{
    out.writeFully(&value, sizeof value);
    return out;
}
/// One byte, 1 or 0. A template, so that pointers do not end up here.
template <std::same_as<bool> T> OutputStream& operator<<(OutputStream& out, T value)
{
    const unsigned char byte = value;
    out.writeFully(&byte, 1);
    return out;
}
/// Little-endian. Throws EndOfFile "EOF in readFully(...)".
template <StreamNumber T> InputStream& operator>>(InputStream& in, T& value)
{
    in.readFully(&value, sizeof value);
    return in;
}
/// Any byte but 0 is true.
TARN_API InputStream& operator>>(InputStream& in, bool& value);

namespace detail {
// Only the length is guarded against a short write; the characters go out in one plain write.
template <class Ch> OutputStream& writeText(OutputStream& out, const Ch* text)
{
    const unsigned int length = text ? static_cast<unsigned int>(std::char_traits<Ch>::length(text)) : 0;
    out.writeFully(&length, sizeof length);
    out.write(text, length * static_cast<unsigned int>(sizeof(Ch)));
    return out;
}
} // namespace detail

/// The text up to its terminating zero, null being the empty text: its length in characters as an
/// unsigned 32-bit number, then the characters. Throws EndOfFile only when the length does not go out:
/// check the size of the stream where the characters must not get lost.
///@{
inline OutputStream& operator<<(OutputStream& out, const char* text) { return detail::writeText(out, text); }
inline OutputStream& operator<<(OutputStream& out, const wchar_t* text) { return detail::writeText(out, text); }
///@}
/// BasicString, too. The text ends at the first zero in it.
///@{
inline OutputStream& operator<<(OutputStream& out, const std::string& text) { return out << text.c_str(); }
inline OutputStream& operator<<(OutputStream& out, const std::wstring& text) { return out << text.c_str(); }
///@}

namespace detail {
/// Any value that has no operator: the conversion makes that operator below the last choice.
struct ValueWithoutEncoding {
    template <class T> ValueWithoutEncoding(T&&); // NOLINT(bugprone-forwarding-reference-overload)
};
} // namespace detail

// clang-format off
/// What nobody has said how to encode does not compile. Standard containers, optional values, instants of `chrono`,
/// paths, GUID, Point and the like have their operators in StreamValues.h, a structure of one's own gets them by a
/// fieldsOf(), and pointers to objects belong into an Archive.
///@{
template <class = void> OutputStream& operator<<(OutputStream&, detail::ValueWithoutEncoding) = delete; // Include <tarn/StreamValues.h>, or give the type a fieldsOf().
template <class = void> InputStream& operator>>(InputStream&, detail::ValueWithoutEncoding) = delete; // Include <tarn/StreamValues.h>, or give the type a fieldsOf().
///@}
// clang-format on

/// For BasicString, too. Throws EndOfFile when the data end before the text does, however long it claims
/// to be; memory is taken only as data arrive, and the text is left in an unknown state.
///@{
TARN_API InputStream& operator>>(InputStream& in, std::string& text);
TARN_API InputStream& operator>>(InputStream& in, std::wstring& text);
///@}

namespace detail {
/// What follows the length of a text.
TARN_API void readCharacters(InputStream& in, std::string& text, unsigned int length);
TARN_API void readCharacters(InputStream& in, std::wstring& text, unsigned int length);
} // namespace detail

/// Copies all that `in` still has, through a buffer of 10,000 bytes, up to the first read that gives
/// nothing. Whether `out` took the bytes is not checked; nothing is flushed or closed.
TARN_API OutputStream& operator<<(OutputStream& out, InputStream& in);

// ---- Numbers in a given byte order: in >> BigEndian >> width >> height;

/// The byte order of numbers on a stream; the library's own encoding is little-endian.
enum Endianess { LittleEndian, BigEndian };

/// A stream whose data have the given byte order: the numbers read from it come in the host's.
struct EndianToNative {
    /// The stream must outlive the object.
    EndianToNative(InputStream& source, Endianess order) : stream(source), endianess(order) {}

    /// What it was made of.
    ///@{
    InputStream& stream;
    Endianess endianess;
    ///@}
};

/// Gives the byte order of the numbers that follow in the expression.
inline EndianToNative operator>>(InputStream& in, Endianess endianess) { return EndianToNative(in, endianess); }
/// Switches to another byte order within an expression.
inline EndianToNative operator>>(const EndianToNative& in, Endianess endianess)
{
    return EndianToNative(in.stream, endianess);
}

/// The byte order holds for the rest of the expression.
template <StreamNumber T> const EndianToNative& operator>>(const EndianToNative& in, T& value)
{
    static_assert(std::endian::native == std::endian::little);
    unsigned char bytes[sizeof(T)];
    in.stream.readFully(bytes, sizeof bytes);
    if (in.endianess == BigEndian)
        for (std::size_t i = 0; i < sizeof bytes / 2; ++i)
            std::swap(bytes[i], bytes[sizeof bytes - 1 - i]);
    value = std::bit_cast<T>(bytes);
    return in;
}
} // namespace tarn
