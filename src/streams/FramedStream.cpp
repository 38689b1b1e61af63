#include <tarn/FramedStream.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"
#include "CopyPiece.h"
#include "KeepFailure.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

// A frame is a signature; blocks, each a length of 1 to 64 KB, that many bytes, and a checksum of all from the first
// length on; and the end, a length of 0, the number of bytes in all blocks in 64 bits, and the checksum again.

namespace tarn {
namespace {
constexpr char signature[] = {'\x89', 'T', 'F', '1'};
constexpr unsigned int frameWord = sizeof(std::uint32_t);
constexpr unsigned int largestBlock = 0x10000;

// One step is a permutation of the words, whatever the lane was: no two words have the same effect.
std::uint32_t mixed(std::uint32_t lane, const char* word)
{
    std::uint32_t bits;
    std::memcpy(&bits, word, frameWord);
    return std::rotl((lane ^ bits) * 0x9E3779B1u, 15);
}
} // namespace

void detail::Checksum::add(const void* data, unsigned int size) noexcept
{
    const char* from = static_cast<const char*>(data);
    std::uint32_t a = lanes_[0], b = lanes_[1], c = lanes_[2], d = lanes_[3];
    for (unsigned int left = size / 16; left > 0; --left, from += 16) {
        a = mixed(a, from);
        b = mixed(b, from + 4);
        c = mixed(c, from + 8);
        d = mixed(d, from + 12);
    }
    if (const unsigned int left = size % 16; left > 0) {
        char last[16] = {};
        std::memcpy(last, from, left);
        a = mixed(a, last);
        b = mixed(b, last + 4);
        c = mixed(c, last + 8);
        d = mixed(d, last + 12);
    }
    lanes_[0] = a ^ size;
    lanes_[1] = b;
    lanes_[2] = c;
    lanes_[3] = d;
}

std::uint32_t detail::Checksum::get() const noexcept
{
    std::uint32_t bits =
        std::rotl(lanes_[0], 1) + std::rotl(lanes_[1], 7) + std::rotl(lanes_[2], 12) + std::rotl(lanes_[3], 18);
    bits = (bits ^ (bits >> 15)) * 0x85EBCA77u;
    bits = (bits ^ (bits >> 13)) * 0xC2B2AE3Du;
    return bits ^ (bits >> 16);
}

// In the buffer there is room for the length in front of a block, and the checksum behind it.
FramedOutputStream::FramedOutputStream(OutputStream& target)
    : target_(target), buffer_(frameWord + largestBlock + frameWord), used_(frameWord)
{
}

FramedOutputStream::~FramedOutputStream() noexcept(false)
{
    if (!failure_ && std::uncaught_exceptions() == 0)
        close();
}

void FramedOutputStream::pass()
{
    if (written_ == 0)
        target_.writeFully(signature, sizeof signature);
    const std::uint32_t size = used_ - frameWord;
    std::memcpy(buffer_.data(), &size, frameWord);
    checksum_.add(buffer_.data(), used_);
    const std::uint32_t sum = checksum_.get();
    std::memcpy(buffer_.data() + used_, &sum, frameWord);
    target_.writeFully(buffer_.data(), used_ + frameWord);
    written_ += size;
    used_ = frameWord;
}

unsigned int FramedOutputStream::write(const void* data, unsigned int count)
{
    if (isClosed_)
        throwError(Exception("The frame is closed"));
    const char* from = static_cast<const char*>(data);
    for (unsigned int left = count;;) {
        const unsigned int piece = std::min(left, frameWord + largestBlock - used_);
        copyPiece(buffer_.data() + used_, from, piece);
        used_ += piece;
        left -= piece;
        if (left == 0)
            return count;
        from += piece;
        keepFailure(failure_, [this] { pass(); });
    }
}

void FramedOutputStream::flush()
{
    keepFailure(failure_, [this] {
        if (used_ > frameWord)
            pass();
        if (auto* const buffered = dynamic_cast<BufferedOutputStream*>(&target_))
            buffered->flush();
    });
}

void FramedOutputStream::close()
{
    if (isClosed_)
        return;
    keepFailure(failure_, [this] {
        if (used_ > frameWord)
            pass();
        end();
    });
    isClosed_ = true;
    flush();
}

void FramedOutputStream::end()
{
    if (written_ == 0)
        target_.writeFully(signature, sizeof signature);
    char last[frameWord + sizeof written_ + frameWord] = {};
    std::memcpy(last + frameWord, &written_, sizeof written_);
    checksum_.add(last, frameWord + sizeof written_);
    const std::uint32_t sum = checksum_.get();
    std::memcpy(last + frameWord + sizeof written_, &sum, frameWord);
    target_.writeFully(last, sizeof last);
}

namespace {
[[noreturn, gnu::noinline, gnu::cold]] void throwDamaged() { throwError(Exception("The data are damaged")); }
} // namespace

void FramedInputStream::readWhole(void* buffer, unsigned int size)
{
    char* const to = static_cast<char*>(buffer);
    for (unsigned int done = 0; done < size;) {
        const unsigned int count = std::min(source_.read(to + done, size - done), size - done);
        if (count == 0)
            detail::throwShortRead(buffer, size);
        done += count;
    }
}

void FramedInputStream::check()
{
    std::uint32_t sum;
    readWhole(&sum, frameWord);
    if (sum != checksum_.get())
        throwDamaged();
}

bool FramedInputStream::nextBlock()
{
    if (isAtEnd_)
        return false;
    if (std::exchange(isBroken_, true)) // The last block was not read whole.
        throwDamaged();
    if (!hasBegun_) {
        char found[sizeof signature];
        readWhole(found, sizeof found);
        if (std::memcmp(found, signature, sizeof found) != 0)
            throwDamaged();
        buffer_.resize(frameWord + largestBlock);
        hasBegun_ = true;
    }
    std::uint32_t size;
    readWhole(&size, frameWord);
    if (size > largestBlock)
        throwDamaged();
    char* const block = buffer_.data();
    std::memcpy(block, &size, frameWord);
    if (size > 0) {
        readWhole(block + frameWord, size);
        checksum_.add(block, frameWord + size);
        check();
        position_ = frameWord;
        filled_ = frameWord + size;
        read_ += size;
        isBroken_ = false;
        return true;
    }
    unsigned long long total;
    readWhole(block + frameWord, sizeof total);
    std::memcpy(&total, block + frameWord, sizeof total);
    checksum_.add(block, frameWord + sizeof total);
    check();
    if (total != read_)
        throwDamaged();
    isAtEnd_ = true;
    return false;
}

unsigned int FramedInputStream::read(void* buffer, unsigned int count)
{
    char* const to = static_cast<char*>(buffer);
    unsigned int done = 0;
    while (done < count && (position_ < filled_ || nextBlock())) {
        const unsigned int piece = std::min(count - done, filled_ - position_);
        copyPiece(to + done, buffer_.data() + position_, piece);
        position_ += piece;
        done += piece;
    }
    return done;
}

void FramedInputStream::finish()
{
    if (position_ < filled_ || nextBlock())
        throwError(Exception("The data go on"));
}
} // namespace tarn
