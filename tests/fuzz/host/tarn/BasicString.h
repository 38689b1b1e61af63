#pragma once

#include <cstdarg>
#include <cstdio>
#include <string>

namespace tarn {
/// As much of the library's string as the streams use, without the platform that the real one stands on.
template <class Ch> class BasicString : public std::basic_string<Ch> {
public:
    using std::basic_string<Ch>::basic_string;

    static BasicString fromFormat(const Ch* format, ...)
    {
        Ch text[200];
        va_list args;
        va_start(args, format);
        std::vsnprintf(text, sizeof text, format, args);
        va_end(args);
        return BasicString(text);
    }
};
} // namespace tarn
