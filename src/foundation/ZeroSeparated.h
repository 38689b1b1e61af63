#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// Lists of texts with a zero behind each, as the platform takes and gives them.

namespace tarn {
/// What the list has: views of it. The zero behind the last one may be missing. An empty text ends the list, unless
/// `mayBeEmpty` says that it counts as one.
template <class Ch>
std::vector<std::basic_string_view<Ch>> textsIn(std::basic_string_view<Ch> list, bool mayBeEmpty = false)
{
    std::vector<std::basic_string_view<Ch>> texts;
    while (!list.empty() && (mayBeEmpty || list.front() != Ch())) {
        texts.push_back(list.substr(0, list.find(Ch())));
        list.remove_prefix(texts.back().size() < list.size() ? texts.back().size() + 1 : list.size());
    }
    return texts;
}

/// The same of a list that ends with an empty text; null has none.
template <class Ch> std::vector<std::basic_string_view<Ch>> textsAt(const Ch* list)
{
    std::size_t length = 0;
    while (list && list[length] != Ch())
        length += std::basic_string_view<Ch>(list + length).size() + 1;
    return textsIn(std::basic_string_view<Ch>(list, length));
}
} // namespace tarn
