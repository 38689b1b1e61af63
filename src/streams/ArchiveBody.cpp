#include "ArchiveBody.h"

#include "CopyPiece.h"

#include <algorithm>
#include <cstring>

namespace tarn {
namespace {
constexpr std::size_t enough = 0x10000; // To be passed on.
constexpr unsigned int longestPart = 0x7FFFFFFF;
constexpr unsigned int wordSize = sizeof(unsigned int);
} // namespace

void BodyWriter::append(const void* data, std::size_t size)
{
    const char* const bytes = static_cast<const char*>(data);
    pending_.insert(pending_.end(), bytes, bytes + size);
}

void BodyWriter::putWord(unsigned int word)
{
    endPart();
    append(&word, sizeof word);
}

void BodyWriter::endPart()
{
    if (part_ == none)
        return;
    const auto size = static_cast<unsigned int>(pending_.size() - part_ - wordSize);
    std::memcpy(pending_.data() + part_, &size, sizeof size);
    part_ = none;
}

void BodyWriter::pass(OutputStream& out)
{
    endPart();
    if (!pending_.empty())
        out.writeFully(pending_.data(), static_cast<unsigned int>(pending_.size()));
    pending_.clear();
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
                putWord(piece);
            pass(out);
            out.writeFully(bytes, piece);
        }
        return;
    }
    if (inParts_ && part_ == none) {
        const std::size_t start = pending_.size();
        append(&size, sizeof size); // Its place; endPart() knows better.
        part_ = start;
    }
    append(data, size);
    if (pending_.size() > enough)
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
    writer_.putWord(endOfBody);
    if (writer_.depth_ == 1)
        writer_.pass(out);
}

BodyWriter::Object::~Object()
{
    writer_.inParts_ = outer_;
    if (hasBody_ && --writer_.depth_ == 0) {
        writer_.pending_.clear(); // Something is left when writing failed.
        writer_.part_ = none;
        isOff_ = true;
    }
}

unsigned int BodyReader::nextWord(InputStream& in)
{
    if (!state.hasWord) {
        in.readFully(&state.word, wordSize);
        state.hasWord = true;
    }
    return state.word;
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
            copyPiece(to + done, ahead_ + position_, count);
            position_ += count;
        } else {
            count = std::min(in.read(to + done, count), count);
            if (count == 0)
                break;
        }
        state.left -= count;
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
