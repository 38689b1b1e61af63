#include <tarn/StandardStreams.h>

#include <tarn/Exception.h>

#include "../foundation/Closing.h"
#include "../foundation/Throw.h"

namespace tarn {
namespace {
constexpr unsigned pieceSize = 0x10000;
}

StreamBuffer::StreamBuffer(InputStream& source) : source_(&source), buffer_(pieceSize) {}

StreamBuffer::StreamBuffer(OutputStream& target) : target_(&target), buffer_(pieceSize)
{
    setp(buffer_.data(), buffer_.data() + buffer_.size());
}

StreamBuffer::~StreamBuffer()
{
    closeQuietly([this] { pass(); });
}

// What the stream below has not taken is not offered to it again.
void StreamBuffer::pass()
{
    const auto count = static_cast<unsigned>(pptr() - pbase());
    if (count == 0)
        return;
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    target_->writeFully(buffer_.data(), count);
}

StreamBuffer::int_type StreamBuffer::underflow()
{
    if (!source_)
        return traits_type::eof();
    const unsigned count = source_->read(buffer_.data(), static_cast<unsigned>(buffer_.size()));
    setg(buffer_.data(), buffer_.data(), buffer_.data() + count);
    return count == 0 ? traits_type::eof() : traits_type::to_int_type(*gptr());
}

StreamBuffer::int_type StreamBuffer::overflow(int_type c)
{
    if (!target_)
        return traits_type::eof();
    pass();
    if (!traits_type::eq_int_type(c, traits_type::eof()))
        sputc(traits_type::to_char_type(c));
    return traits_type::not_eof(c);
}

int StreamBuffer::sync()
{
    if (target_) {
        pass();
        if (auto* const buffered = dynamic_cast<BufferedOutputStream*>(target_))
            buffered->flush();
    }
    return 0;
}

StreamBuffer::pos_type StreamBuffer::seekoff(off_type offset, std::ios_base::seekdir origin, std::ios_base::openmode)
{
    auto* const below = source_ ? dynamic_cast<Seekable*>(source_) : dynamic_cast<Seekable*>(target_);
    if (!below)
        return pos_type(off_type(-1));
    if (target_)
        pass();
    if (origin == std::ios_base::cur)
        offset -= egptr() - gptr(); // What was read from below, but not from here.
    if (offset != 0 || origin != std::ios_base::cur)
        below->setFilePointer(offset, origin == std::ios_base::beg   ? Seekable::begin
                                      : origin == std::ios_base::cur ? Seekable::current
                                                                     : Seekable::end);
    setg(nullptr, nullptr, nullptr);
    return static_cast<off_type>(below->getFilePointer());
}

StreamBuffer::pos_type StreamBuffer::seekpos(pos_type position, std::ios_base::openmode which)
{
    return seekoff(position, std::ios_base::beg, which);
}

unsigned int StandardInputStream::read(void* buffer, unsigned int size)
{
    source_.read(static_cast<char*>(buffer), static_cast<std::streamsize>(size));
    if (source_.bad())
        throwError(Exception("Error while reading from a standard stream"));
    return static_cast<unsigned>(source_.gcount());
}

namespace {
void ensureGood(const std::ostream& stream)
{
    if (!stream)
        throwError(Exception("Error while writing to a standard stream"));
}
} // namespace

unsigned int StandardOutputStream::write(const void* buffer, unsigned int size)
{
    ensureGood(target_.write(static_cast<const char*>(buffer), static_cast<std::streamsize>(size)));
    return size;
}

void StandardOutputStream::flush() { ensureGood(target_.flush()); }

std::string readAll(InputStream& in)
{
    std::string all;
    char piece[4096];
    while (const unsigned count = in.read(piece, sizeof piece))
        all.append(piece, count);
    return all;
}
} // namespace tarn
