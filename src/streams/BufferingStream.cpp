#include <tarn/BufferingStream.h>

#include <tarn/Exception.h>
#include <tarn/MemoryStream.h>

#include "../foundation/Closing.h"
#include "../foundation/Throw.h"
#include "CopyPiece.h"
#include "KeepFailure.h"

#include <algorithm>

namespace tarn {
namespace {
constexpr unsigned int usualBuffer = 0x10000;
constexpr unsigned int largestBuffer = 0x4000000;
constexpr unsigned int movingSize = sizeof(void*) * 0x20000; // From which on it takes long to move what grows.

template <class Stream> Seekable& positionOf(Stream& stream)
{
    if (auto* const seekable = dynamic_cast<Seekable*>(&stream))
        return *seekable;
    throwError(Exception("The stream below has no position"));
}
} // namespace

BufferingOutputStream::BufferingOutputStream(OutputStream& target) : BufferingOutputStream(target, usualBuffer)
{
    memory_ = dynamic_cast<MemoryOutputStream*>(&target);
}
BufferingOutputStream::BufferingOutputStream(OutputStream& target, unsigned int size)
    : target_(target), buffer_(std::max(size, 1u))
{
}
BufferingOutputStream::~BufferingOutputStream() noexcept(false)
{
    if (used_ != 0) // Not after a failure, with which all that was held back is gone.
        closeAtEnd([this] { flush(); });
}

void BufferingOutputStream::pass()
{
    const void* const place = memory_ ? memory_->getData() : nullptr;
    if (const unsigned int count = std::exchange(used_, 0))
        target_.writeFully(buffer_.data(), count);
    if (memory_ && memory_->getData() != place && memory_->getSize() >= movingSize)
        enlarge();
}

// While nothing is held back. Without the memory it stays as large as it is.
void BufferingOutputStream::enlarge() noexcept
{
    const auto size = static_cast<unsigned int>(std::min<unsigned long long>(memory_->getSize(), largestBuffer));
    if (size <= buffer_.size())
        return;
    try {
        Array<char> larger(size);
        buffer_.swap(larger);
    } catch (const std::bad_alloc&) {
        memory_ = nullptr;
    }
}

unsigned int BufferingOutputStream::write(const void* data, unsigned int count)
{
    if (!failure_ && count <= buffer_.size() - used_) {
        copyPiece(buffer_.data() + used_, static_cast<const char*>(data), count);
        used_ += count;
        return count;
    }
    keepFailure(failure_, [&] {
        pass();
        if (count >= buffer_.size()) {
            target_.writeFully(data, count);
        } else {
            copyPiece(buffer_.data(), static_cast<const char*>(data), count);
            used_ = count;
        }
    });
    return count;
}

void BufferingOutputStream::flush()
{
    keepFailure(failure_, [this] {
        pass();
        if (auto* const buffered = dynamic_cast<BufferedOutputStream*>(&target_))
            buffered->flush();
    });
}

void BufferingOutputStream::setFilePointer(long long offset, whence origin)
{
    Seekable& target = positionOf(target_);
    keepFailure(failure_, [this] { pass(); });
    target.setFilePointer(offset, origin);
}

unsigned long long BufferingOutputStream::getFilePointer() { return positionOf(target_).getFilePointer() + used_; }

unsigned long long BufferingOutputStream::getSize()
{
    Seekable& target = positionOf(target_);
    return std::max(target.getSize(), target.getFilePointer() + used_);
}

BufferingInputStream::BufferingInputStream(InputStream& source, unsigned int size)
    : source_(source), buffer_(std::max(size, 1u))
{
}
BufferingInputStream::~BufferingInputStream() noexcept(false)
{
    if (auto* const source = dynamic_cast<Seekable*>(&source_); source && position_ < filled_)
        closeAtEnd([&] { source->setFilePointer(-static_cast<long long>(filled_ - position_), current); });
}

unsigned int BufferingInputStream::read(void* buffer, unsigned int count)
{
    char* const to = static_cast<char*>(buffer);
    unsigned int done = 0;
    for (;;) {
        const unsigned int piece = std::min(count - done, filled_ - position_);
        copyPiece(to + done, buffer_.data() + position_, piece);
        position_ += piece;
        done += piece;
        if (done == count)
            return done;
        position_ = filled_ = 0;
        if (count - done >= buffer_.size()) {
            const unsigned int direct = std::min(source_.read(to + done, count - done), count - done);
            if (direct == 0)
                return done;
            done += direct;
        } else {
            filled_ = std::min(source_.read(buffer_.data(), buffer_.size()), buffer_.size());
            if (filled_ == 0)
                return done;
        }
    }
}

void BufferingInputStream::setFilePointer(long long offset, whence origin)
{
    Seekable& source = positionOf(source_);
    const long long ahead = origin == current ? filled_ - position_ : 0;
    source.setFilePointer(offset - ahead, origin);
    position_ = filled_ = 0;
}

unsigned long long BufferingInputStream::getFilePointer()
{
    return positionOf(source_).getFilePointer() - (filled_ - position_);
}

unsigned long long BufferingInputStream::getSize() { return positionOf(source_).getSize(); }
} // namespace tarn
