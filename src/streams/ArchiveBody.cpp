#include "ArchiveBody.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {
constexpr unsigned int enough = 0x10000; // To be passed on.
constexpr unsigned int longestPart = 0x7FFFFFFF;
constexpr unsigned int wordSize = sizeof(unsigned int);
} // namespace

char* BodyWriter::append(unsigned int size)
{
    if (pending_.size() - used_ < size)
        pending_.resize(std::max(2 * pending_.size(), used_ + size + 0x100));
    return pending_.data() + std::exchange(used_, used_ + size);
}

void BodyWriter::endPart()
{
    if (part_ == none)
        return;
    const unsigned int size = used_ - part_ - wordSize;
    std::memcpy(pending_.data() + part_, &size, sizeof size);
    part_ = none;
}

void BodyWriter::pass(OutputStream& out)
{
    endPart();
    if (const unsigned int size = std::exchange(used_, 0))
        out.writeFully(pending_.data(), size);
}

void BodyWriter::write(OutputStream& out, const void* data, unsigned int size)
{
    if (size == 0)
        return;
    if (size > enough) {
        const char* bytes = static_cast<const char*>(data);
        for (unsigned int piece; size > 0; bytes += piece, size -= piece) {
            piece = std::min(size, longestPart);
            if (inParts_)
                putWords(piece);
            pass(out);
            out.writeFully(bytes, piece);
        }
        return;
    }
    if (inParts_ && part_ == none) {
        part_ = used_;
        append(wordSize);
    }
    copyPiece(append(size), static_cast<const char*>(data), size);
    if (used_ > enough)
        pass(out);
}

void BodyWriter::Object::beginBody()
{
    ++writer_.depth_;
    isOff_ = false;
    writer_.inParts_ = hasBody_ = true;
}

void BodyWriter::Object::endBody(OutputStream& out)
{
    writer_.putWords(static_cast<unsigned int>(endOfBody));
    if (writer_.depth_ == 1)
        writer_.pass(out);
}

BodyWriter::Object::~Object()
{
    writer_.inParts_ = outer_;
    if (hasBody_ && --writer_.depth_ == 0) {
        writer_.used_ = 0; // Something is left when writing failed.
        writer_.part_ = none;
        isOff_ = true;
    }
}

void BodyReader::readWords(InputStream& in, unsigned int* words, unsigned int count)
{
    if (in.read(words, count * wordSize) != count * wordSize)
        detail::throwShortRead(words, count * wordSize);
}

bool BodyReader::openPart(InputStream& in)
{
    const unsigned int size = nextWord(in);
    if (size == endOfBody || size > longestPart)
        return false;
    state.hasWord = false;
    state.left = size;
    position_ = filled_ = 0;
    if (size <= sizeof ahead_ - wordSize) {
        const unsigned int count = std::min(in.read(ahead_, size + wordSize), size + wordSize);
        filled_ = std::min(count, size);
        if (count == size + wordSize) {
            std::memcpy(&state.word, ahead_ + size, wordSize);
            state.hasWord = true;
        } else if (filled_ < size) {
            state.left = filled_; // The data end here.
        }
    }
    return state.left > 0;
}

unsigned int BodyReader::readParts(InputStream& in, void* buffer, unsigned int size)
{
    char* const to = static_cast<char*>(buffer);
    unsigned int done = 0;
    while (done < size && (state.left > 0 || openPart(in))) {
        unsigned int count = std::min(size - done, state.left);
        if (position_ < filled_) {
            takeAhead(to + done, count);
        } else {
            count = std::min(in.read(to + done, count), count);
            if (count == 0)
                break;
            state.left -= count;
        }
        done += count;
    }
    return done;
}

unsigned int BodyReader::readZeros(void* buffer, unsigned int size)
{
    const unsigned int count = std::min(size, state.left);
    std::memset(buffer, 0, count);
    state.left -= count;
    return count;
}
} // namespace tarn
