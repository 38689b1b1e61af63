#pragma once

#include <tarn/BasicString.h>
#include <tarn/Exception.h>

#include "../foundation/Check.h"
#include "ControlMessages.h"

#include <algorithm>
#include <stdexcept>

// What combo boxes and list boxes have in common.

namespace tarn {
static_assert(CB_ERR == LB_ERR && CB_ERRSPACE == LB_ERRSPACE);

/// The index of what was added.
inline int ensureAdded(const Window& box, LRESULT index, const char* what)
{
    if (index == CB_ERRSPACE)
        throwError(BadAllocation());
    if (isFailure(box, index, CB_ERR))
        throwError(std::runtime_error(what));
    return static_cast<int>(index);
}

/// An index as the platform takes it: -1 of any width stays -1.
inline WPARAM toIndex(unsigned index) { return static_cast<WPARAM>(static_cast<int>(index)); }

/// The text of an item.
template <class Ch>
BasicString<Ch> textOfItem(const Window& box, unsigned index, UINT getLength, UINT getText, const char* what)
{
    const auto ensured = [&](LRESULT length) {
        return static_cast<std::size_t>(ensureNot(CB_ERR, isFailure(box, length, CB_ERR) ? CB_ERR : length, what));
    };
    SetLastError(ERROR_SUCCESS);
    const std::size_t longest = ensured(sendText(box, getLength, toIndex(index), static_cast<const Ch*>(nullptr)));
    BasicString<Ch> text(longest + 1, Ch()); // With the terminator.
    text.resize(ensured(sendText(box, getText, toIndex(index), text.data())));
    return text;
}

/// Adds each line of a string resource; the index of the last one, -1 without any.
template <class Box> int addLines(const Box& box, unsigned short resource, HINSTANCE module)
{
    const auto text = BasicString<wchar_t>::fromResource(resource, module);
    int last = -1;
    std::size_t start = 0;
    while ((start = text.find_first_not_of(L"\n\r", start)) != text.npos) {
        const std::size_t end = std::min(text.find_first_of(L"\n\r", start), text.size());
        last = box.addString(text.substr(start, end - start).c_str());
        start = end;
    }
    return last;
}
} // namespace tarn
