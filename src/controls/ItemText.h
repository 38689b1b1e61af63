#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

#include "../foundation/Memory.h"

#include <commctrl.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace tarn {
/// The text that a control gave when it got a buffer of this size, whose end is `buffer[size]`; none when the buffer
/// may be too small. A control may leave the buffer alone, and answer where the text is instead.
template <class Ch> std::optional<BasicString<Ch>> itemTextIn(const Ch* answer, const Ch* buffer, int size)
{
    if (!answer || answer == reinterpret_cast<const Ch*>(LPSTR_TEXTCALLBACKW))
        return BasicString<Ch>();
    const std::size_t length = std::char_traits<Ch>::length(answer);
    if (answer == buffer && length + 1 >= static_cast<std::size_t>(size))
        return std::nullopt;
    return BasicString<Ch>(answer, length);
}

/// Reads a text whose length the control does not tell before: `read(buffer, size)` lets the control fill the buffer
/// and gives where it says that the text is. Most texts fit into the first buffer.
template <class Ch, class Read> BasicString<Ch> readItemText(Read read)
{
    constexpr int first = 256;
    Ch buffer[first + 1]; // One more, because a control may leave out the terminator of a text that is too long.
    buffer[0] = buffer[first] = 0;
    std::optional<BasicString<Ch>> text = itemTextIn<Ch>(read(buffer, first), buffer, first);
    BasicString<Ch> larger;
    for (int size = 2 * first; !text; size *= 2) {
        resizeOrThrow(larger, static_cast<std::size_t>(size) + 1);
        larger[size] = 0;
        text = itemTextIn<Ch>(read(larger.data(), size), larger.data(), size);
    }
    return std::move(*text);
}
} // namespace tarn
