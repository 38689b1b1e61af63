#pragma once

#include <concepts>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace tarn {
/// As much of the library's string as the streams use, without the platform that the real one stands on.
template <class Ch> class BasicString : public std::basic_string<Ch> {
public:
    using std::basic_string<Ch>::basic_string;
    BasicString(const std::basic_string<Ch>& text) : std::basic_string<Ch>(text) {}
    template <class Other>
    requires(!std::same_as<Other, Ch>) BasicString(const Other* text)
    {
        for (; *text; ++text)
            this->push_back(static_cast<Ch>(*text));
    }

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

constexpr unsigned CP_ACP = 0;
inline BasicString<wchar_t> a2w(const std::string& text, unsigned) { return BasicString<wchar_t>(text.c_str()); }
} // namespace tarn
