#pragma once

// The members of BasicString; included by BasicString.h.

#include <tarn/BasicString.h>

#include <cerrno>
#include <cstdarg>
#include <iterator>
#include <stdexcept>

namespace tarn {
namespace detail {
// Length-counted texts of a string table, which need not be terminated and may be of any length.
TARN_API BasicString<char> loadString(unsigned id, HINSTANCE module, const char*);
TARN_API BasicString<wchar_t> loadString(unsigned id, HINSTANCE module, const wchar_t*);

// The first character that the global locale does not call space, and the end without the space before it.
TARN_API const char* skipSpace(const char* begin, const char* end);
TARN_API const wchar_t* skipSpace(const wchar_t* begin, const wchar_t* end);
TARN_API const char* endBeforeSpace(const char* begin, const char* end);
TARN_API const wchar_t* endBeforeSpace(const wchar_t* begin, const wchar_t* end);
} // namespace detail

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::joined(const Ch* s, size_type n) const
{
    BasicString result;
    result.reserve(this->size() + n);
    result.append(*this).append(s, n);
    return result;
}

template <class Ch, class Traits, class Alloc> void BasicString<Ch, Traits, Alloc>::makeInt(int value, int radix)
{
    checkRadix(radix);
    Ch digits[sizeof(int) * 8 + 2];
    assign(Helper::itos(value, digits, radix));
}

template <class Ch, class Traits, class Alloc> void BasicString<Ch, Traits, Alloc>::checkRadix(int radix)
{
    if (radix < 2 || radix > 36)
        throw std::invalid_argument("A radix must be 2 to 36");
}

// As makeInt: only in radix 10 a negative number is more than its bits.
template <class Ch, class Traits, class Alloc>
template <class Value>
void BasicString<Ch, Traits, Alloc>::makeNumber(Value value, int radix)
{
    const bool isNegative = radix == 10 && value < Value();
    const auto bits = static_cast<std::make_unsigned_t<Value>>(value);
    const unsigned long long digits = bits;
    makeNumber(isNegative ? 0 - static_cast<unsigned long long>(value) : digits, isNegative, radix);
}

template <class Ch, class Traits, class Alloc>
void BasicString<Ch, Traits, Alloc>::makeNumber(unsigned long long digits, bool isNegative, int radix)
{
    checkRadix(radix);
    const auto base = static_cast<unsigned>(radix);
    Ch text[sizeof digits * 8 + 1];
    Ch* const end = std::end(text);
    Ch* begin = end;
    do {
        const auto digit = static_cast<unsigned>(digits % base);
        *--begin = static_cast<Ch>(digit < 10 ? '0' + digit : 'a' + digit - 10);
        digits /= base;
    } while (digits);
    if (isNegative)
        *--begin = Ch('-');
    assign(begin, static_cast<size_type>(end - begin));
}

// Letters and digits are the same in both widths; for other characters the conversion of texts knows.
template <class Ch, class Traits, class Alloc>
template <class C>
void BasicString<Ch, Traits, Alloc>::repeat(size_type n, C c)
{
    if constexpr (std::is_same_v<C, Ch>) {
        Base::assign(n, c);
    } else if (static_cast<std::make_unsigned_t<C>>(c) < 0x80) {
        Base::assign(n, static_cast<Ch>(c));
    } else {
        const BasicString one(&c, 1);
        this->reserve(n * one.size());
        for (; n; --n)
            this->append(one);
    }
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::substring(const Ch* delimiter, int index) const
{
    const size_type skip = viewOf(delimiter).size();
    if (!skip)
        return BasicString();
    size_type position = 0;
    for (; index > 0; --index) {
        position = this->find(delimiter, position);
        if (position == npos)
            return BasicString();
        position += skip;
    }
    return BasicString(this->substr(position, this->find(delimiter, position) - position));
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::replaceAll(const Ch* from, const Ch* to) const
{
    const size_type fromLength = viewOf(from).size();
    const size_type toLength = viewOf(to).size();
    size_type found = fromLength ? this->find(from, 0, fromLength) : npos;
    if (found == npos)
        return *this;

    BasicString result;
    result.reserve(this->size());
    size_type position = 0;
    for (; found != npos; found = this->find(from, position, fromLength)) {
        result.append(*this, position, found - position).append(to, toLength);
        position = found + fromLength;
    }
    result.append(*this, position, npos);
    return result;
}

template <class Ch, class Traits, class Alloc> auto BasicString<Ch, Traits, Alloc>::firstNonSpace() const -> size_type
{
    const Ch* const text = this->data();
    return static_cast<size_type>(detail::skipSpace(text, text + this->size()) - text);
}

template <class Ch, class Traits, class Alloc> auto BasicString<Ch, Traits, Alloc>::endOfText() const -> size_type
{
    const Ch* const text = this->data();
    return static_cast<size_type>(detail::endBeforeSpace(text, text + this->size()) - text);
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::trimLeft() const
{
    return BasicString(this->substr(firstNonSpace()));
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::trimRight() const
{
    return BasicString(this->substr(0, endOfText()));
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::trim() const
{
    const size_type first = firstNonSpace();
    return BasicString(this->substr(first, std::max(first, endOfText()) - first));
}

// The runtime functions take no negative values but EOF, so a signed character goes in as unsigned.
template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc>& BasicString<Ch, Traits, Alloc>::makeLower()
{
    for (Ch& c : *this)
        c = static_cast<Ch>(Helper::tolower(static_cast<std::make_unsigned_t<Ch>>(c)));
    return *this;
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc>& BasicString<Ch, Traits, Alloc>::makeUpper()
{
    for (Ch& c : *this)
        c = static_cast<Ch>(Helper::toupper(static_cast<std::make_unsigned_t<Ch>>(c)));
    return *this;
}

template <class Ch, class Traits, class Alloc> BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::Time()
{
    Ch text[9];
    return BasicString(Helper::time(text));
}

template <class Ch, class Traits, class Alloc> BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::Date()
{
    Ch text[9];
    return BasicString(Helper::date(text));
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::fromFormat(const Ch* format, ...)
{
    constexpr unsigned capacity = 2000;
    Ch text[capacity + 1] = {};
    const int oldError = errno;
    errno = 0;
    va_list args;
    va_start(args, format);
    const int written = Helper::vsnprintf(text, capacity, format, args);
    va_end(args);
    // A negative count tells of a full buffer, or of a format or character that cannot be used: the text
    // then ends before it.
    const bool unconvertible = written < 0 && (errno == EILSEQ || errno == EINVAL);
    errno = oldError;
    if (unconvertible)
        return BasicString(static_cast<const Ch*>(text));
    return BasicString(text, written < 0 ? capacity : static_cast<unsigned>(written));
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::fromResource(unsigned id, HINSTANCE module)
{
    const BasicString<Ch> text = detail::loadString(id, module, static_cast<const Ch*>(nullptr));
    return BasicString(text.data(), static_cast<unsigned>(text.size()));
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::getPathElement(int index) const
{
    const Ch separator = *Helper::Separator();
    size_type end = this->size();
    if (end && this->data()[end - 1] == separator)
        --end;
    const BasicString path(this->substr(0, end));
    BasicString element;
    if (index >= 0) {
        size_type start = 0;
        if (this->startsWith(Helper::Separator())) {
            if (index == 0)
                return BasicString(Helper::Separator());
            start = 1;
            --index;
        }
        for (; index > 0; --index) {
            start = path.find(separator, start);
            if (start == npos)
                return BasicString();
            ++start;
        }
        if (start <= path.size())
            element = path.substr(start, path.find(separator, start) - start);
    } else {
        size_type before = end;
        size_type start = 0;
        for (;; ++index) {
            const size_type found = before ? path.rfind(separator, before - 1) : npos;
            start = found == npos ? 0 : found + 1;
            element = path.substr(start, before - start);
            if (index == -1 || found == npos)
                break;
            before = found;
        }
    }
    return element.endsWith(Helper::Device()) ? element + separator : element;
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::getDirectory() const
{
    size_type end = this->size();
    if (end && this->data()[end - 1] == *Helper::Separator())
        --end;
    const size_type separator = end ? this->rfind(*Helper::Separator(), end - 1) : npos;
    return separator == npos ? BasicString() : BasicString(this->substr(0, separator));
}

template <class Ch, class Traits, class Alloc> bool BasicString<Ch, Traits, Alloc>::isAbsolute(const BasicString& path)
{
    return path.startsWith(Helper::Separator()) || path.getPathElement(0).contains(Helper::Device());
}

template <class Ch, class Traits, class Alloc> bool BasicString<Ch, Traits, Alloc>::endsAtRoot() const
{
    return this->endsWith(Helper::Device()) || *this == Helper::Separator();
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::mergePath(BasicString base, BasicString relative)
{
    const Ch separator = *Helper::Separator();
    if (base.empty() || isAbsolute(relative))
        return relative;
    if (relative.empty())
        return base;

    const BasicString here = BasicString(Helper::UpperDir()).left(1);
    for (;;) {
        const BasicString first = relative.getPathElement(0);
        if (first != here && first != Helper::UpperDir())
            break;
        relative.erase(0, first.size() + 1);
        if (first == here)
            continue;
        if (base.size() > 1 && base.back() == separator)
            base.pop_back();
        if (base.endsAtRoot())
            continue;
        const size_type cut = base.rfind(separator);
        base.erase(cut == npos ? 0 : cut);
        if (base.empty())
            return relative;
    }
    if (relative.empty() && !base.endsWith(Helper::Device()))
        return base;
    if (base.back() != separator)
        base += separator;
    return base + relative;
}

template <class Ch, class Traits, class Alloc>
BasicString<Ch, Traits, Alloc> BasicString<Ch, Traits, Alloc>::format(const Ch* a1, const Ch* a2, const Ch* a3,
                                                                      const Ch* a4, const Ch* a5, const Ch* a6,
                                                                      const Ch* a7, const Ch* a8, const Ch* a9) const
{
    const View arguments[] = {viewOf(a1), viewOf(a2), viewOf(a3), viewOf(a4), viewOf(a5),
                              viewOf(a6), viewOf(a7), viewOf(a8), viewOf(a9)};
    // Measured first: growing on the way would copy a long text more than once.
    size_type length = 0;
    expand(arguments, [&](View part) { length += part.size(); });
    BasicString result;
    result.reserve(length);
    expand(arguments, [&](View part) { result.append(part.data(), part.size()); });
    return result;
}

template <class Ch, class Traits, class Alloc>
template <class Take>
void BasicString<Ch, Traits, Alloc>::expand(const View* arguments, Take take) const
{
    const View text = *this;
    const Ch percent('%');
    size_type position = 0;
    for (;;) {
        const size_type found = text.find(percent, position);
        if (found == npos || found + 1 == text.size())
            return take(text.substr(position));
        take(text.substr(position, found - position));
        const Ch code = text[found + 1];
        if (code >= Ch('1') && code <= Ch('9'))
            take(arguments[code - Ch('1')]);
        else
            take(text.substr(found, code == percent ? 1 : 2));
        position = found + 2;
    }
}
} // namespace tarn
