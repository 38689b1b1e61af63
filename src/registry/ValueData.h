#pragma once

#include <tarn/BasicString.h>
#include <tarn/Windows.h>

#include "../foundation/Check.h"
#include "../foundation/Memory.h"
#include "../foundation/NumericCast.h"
#include "../foundation/ZeroSeparated.h"
#include "RegistryApi.h"

#include <algorithm>
#include <cstddef>
#include <list>
#include <vector>

// What a value's bytes mean, whatever stored them: terminators may be missing, and the last byte of a
// wide text may be half a character.

namespace tarn {
using ValueData = std::vector<BYTE>;

/// Throw unless the value may be read as such.
void checkDWordType(DWORD type);
void checkDWordSize(std::size_t size);
void checkQWord(DWORD type, std::size_t size);
void checkStringType(DWORD type);
void checkStringsType(DWORD type);

/// Reads a value of any size. False when there is none. `checkType` may throw to refuse the type before
/// the data is fetched.
template <class Ch, class CheckType>
bool readValue(HKEY key, const Ch* name, DWORD& type, ValueData& data, CheckType checkType)
{
    // The value may grow after its size was asked for; then both calls are made again. The buffer grows
    // in any case: what some providers of values say of the size is only a guess.
    for (std::size_t least = 1;; least = data.size() * 2) {
        DWORD size = 0;
        LSTATUS code = regQueryValue(key, name, &type, nullptr, &size);
        if (code == ERROR_SUCCESS) {
            checkType(type);
            resizeOrThrow(data, std::max<std::size_t>(size, least));
            size = numericCast<DWORD>(data.size());
            code = regQueryValue(key, name, &type, data.data(), &size);
            if (code == ERROR_MORE_DATA)
                continue;
        }
        if (code == ERROR_FILE_NOT_FOUND)
            return false;
        ensureCode(code);
        checkType(type);
        data.resize(size);
        return true;
    }
}

/// A null text is the empty one.
template <class Ch> const Ch* textOrEmpty(const Ch* text)
{
    static constexpr Ch empty[] = {0};
    return text ? text : empty;
}

template <class Ch> BasicString<Ch> textOf(const ValueData& data)
{
    BasicString<Ch> text(data.size() / sizeof(Ch), Ch());
    std::copy_n(data.begin(), text.size() * sizeof(Ch), reinterpret_cast<BYTE*>(text.data()));
    return text;
}

template <class Ch> BasicString<Ch> stringOf(const ValueData& data)
{
    BasicString<Ch> text = textOf<Ch>(data);
    text.resize(std::min(text.find(Ch()), text.size()));
    return text;
}

template <class Ch> std::list<BasicString<Ch>> stringsOf(const ValueData& data)
{
    const BasicString<Ch> text = textOf<Ch>(data);
    const auto strings = textsIn<Ch>(text);
    return std::list<BasicString<Ch>>(strings.begin(), strings.end());
}

template <class Ch> BasicString<Ch> joined(const std::list<BasicString<Ch>>& strings)
{
    BasicString<Ch> text;
    for (const BasicString<Ch>& string : strings)
        text.append(string.data(), string.size()).push_back(Ch());
    text.push_back(Ch());
    return text;
}
} // namespace tarn
