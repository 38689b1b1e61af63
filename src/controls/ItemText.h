#pragma once

#include <tarn/BasicString.h>

#include "../foundation/Memory.h"

#include <cstddef>

namespace tarn {
/// Reads a text whose length the control does not tell before: `read(buffer, size)` fills the buffer, whose
/// end is `buffer[size]`, and gives the number of characters. Most texts fit into the first buffer.
template <class Ch, class Read> BasicString<Ch> readItemText(Read read)
{
    constexpr int first = 256;
    Ch buffer[first + 1]; // One more, because a control may leave out the terminator of a text that is too long.
    buffer[0] = buffer[first] = 0;
    const int length = read(buffer, first);
    if (length + 1 < first)
        return BasicString<Ch>(buffer, static_cast<std::size_t>(length));
    BasicString<Ch> text;
    for (int size = 2 * first;; size *= 2) {
        resizeOrThrow(text, static_cast<std::size_t>(size) + 1);
        text[size] = 0;
        const int whole = read(text.data(), size);
        if (whole + 1 < size) {
            text.resize(static_cast<std::size_t>(whole));
            return text;
        }
    }
}
} // namespace tarn
