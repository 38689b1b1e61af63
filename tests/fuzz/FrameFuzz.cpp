// Reads whatever the fuzzer makes up as a frame, and frames it itself: a frame with a bit flipped, or cut short, must
// be refused.

#include "Contents.h"

#include <tarn/Exception.h>
#include <tarn/FramedStream.h>

#include <cstdint>
#include <cstdlib>

namespace {
/// What a frame holds; false for one that is refused.
bool unframed(const void* data, std::size_t size, std::string& content)
{
    tarn::MemoryInputStream source(data, static_cast<unsigned>(size));
    tarn::FramedInputStream in(source);
    char piece[1000];
    try {
        while (const unsigned count = in.read(piece, sizeof piece))
            content.append(piece, count);
        in.finish();
        return true;
    } catch (const tarn::Exception&) {
    } catch (const tarn::EndOfFile&) {
    }
    return false;
}

std::string framed(const void* data, std::size_t size)
{
    tarn::MemoryOutputStream bytes;
    tarn::FramedOutputStream out(bytes);
    out.write(data, static_cast<unsigned>(size));
    out.close();
    return contentOf(bytes);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string content;
    unframed(data, size, content);

    content.clear();
    std::string frame = framed(data, size);
    if (!unframed(frame.data(), frame.size(), content) || content != std::string(data, data + size))
        std::abort();
    for (std::size_t bit = 0; bit < 8 * frame.size(); bit += frame.size() < 200 ? 1 : 97) {
        frame[bit / 8] = static_cast<char>(frame[bit / 8] ^ 1 << bit % 8);
        if (unframed(frame.data(), frame.size(), content) || unframed(frame.data(), bit / 8, content))
            std::abort();
        frame[bit / 8] = static_cast<char>(frame[bit / 8] ^ 1 << bit % 8);
    }
    return 0;
}
