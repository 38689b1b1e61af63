#pragma once

#include <tarn/ConstString.h>
#include <tarn/Export.h>

#include <cstdarg>

namespace tarn {
template <class Ch, class Traits = std::char_traits<Ch>, class Alloc = std::allocator<Ch>> class BasicString;

/// The runtime library's text functions under names that do not depend on the character type.
///
/// Each member but the conversions forwards to one runtime function and adds nothing: no checks, and
/// the caller supplies the buffers that the function needs. The conversions to the other width throw
/// BadAllocation, and wide to narrow also WindowsError.
template <class Ch> class StringHelper;

/// The narrow functions.
template <> class TARN_API StringHelper<char> {
public:
    /// `_strtime`: at least 9 characters.
    static char* time(char* buffer);
    /// `_strdate`: at least 9 characters.
    static char* date(char* buffer);
    /// `_vsnprintf`: the count written, or a negative value when the output did not fit; the buffer is
    /// then not terminated, nor is it when the output fills it.
    static int vsnprintf(char* buffer, unsigned count, const char* format, va_list args);
    /// `_strlwr`, `_strupr`: change the text in place.
    ///@{
    static char* lwr(char* s);
    static char* upr(char* s);
    ///@}
    /// `tmpnam`: at least `L_tmpnam` characters, or null for the runtime library's own buffer.
    static char* tmpnam(char* buffer);
    /// `_tempnam`: the caller frees the result with `free`.
    static char* tempnam(const char* directory, const char* prefix);
    /// `_itoa`, `_ltoa`: up to 33 characters with the terminator. The result is `buffer`.
    ///@{
    static char* itos(int value, char* buffer, int radix);
    static char* ltos(long value, char* buffer, int radix);
    ///@}
    /// `tolower`, `toupper`: `c` is an `unsigned char` or `EOF`.
    ///@{
    static int tolower(int c);
    static int toupper(int c);
    ///@}
    /// `atoi`: 0 when the text does not begin with a number.
    static int atoi(const char* s);
    /// `_stricmp`, `_strnicmp`: negative, 0 or positive, whatever the case of letters. `n` counts characters.
    ///@{
    static int icmp(const char* a, const char* b);
    static int nicmp(const char* a, const char* b, unsigned n);
    ///@}
    /// 0, or -1 with `errno` set.
    static int mkdir(const char* path);

    /// What paths are made of: the separator, the end of a device, and the name of the folder above.
    ///@{
    static const char* Separator() { return "\\"; }
    static const char* Device() { return ":"; }
    static const char* UpperDir() { return ".."; }
    ///@}

    /// The same characters, seen through a view.
    ///@{
    static ConstString<char> convert(const char* s) { return ConstString<char>(s); }
    static ConstString<char> convert(const char* s, unsigned n) { return ConstString<char>(s, n); }
    ///@}
    /// The text in `codePage` (0: the system's ANSI code page); `n` counts characters and may be
    /// ConstString::wholeText. Characters that the code page lacks become its default character.
    /// Throws WindowsError "Can't retrieve required buffer size for wchar_t -> char conversion" or
    /// "Can't convert wchar_t -> char string", and BadAllocation.
    static BasicString<char, std::char_traits<char>, std::allocator<char>>
    convert(const wchar_t* s, unsigned n = ConstString<char>::wholeText, unsigned codePage = 0);
};

/// The wide functions.
template <> class TARN_API StringHelper<wchar_t> {
public:
    /// `_wstrtime`: at least 9 characters.
    static wchar_t* time(wchar_t* buffer);
    /// `_wstrdate`: at least 9 characters.
    static wchar_t* date(wchar_t* buffer);
    /// `_vsnwprintf`, as the narrow form.
    static int vsnprintf(wchar_t* buffer, unsigned count, const wchar_t* format, va_list args);
    /// `_wcslwr`, `_wcsupr`: change the text in place.
    ///@{
    static wchar_t* lwr(wchar_t* s);
    static wchar_t* upr(wchar_t* s);
    ///@}
    /// `_wtmpnam`: at least `L_tmpnam` characters, or null for the runtime library's own buffer.
    static wchar_t* tmpnam(wchar_t* buffer);
    /// `_wtempnam`: the caller frees the result with `free`.
    static wchar_t* tempnam(const wchar_t* directory, const wchar_t* prefix);
    /// `_itow`, `_ltow`: up to 33 characters with the terminator. The result is `buffer`.
    ///@{
    static wchar_t* itos(int value, wchar_t* buffer, int radix);
    static wchar_t* ltos(long value, wchar_t* buffer, int radix);
    ///@}
    /// `towlower`, `towupper`: `c` is a `wchar_t` or `WEOF`.
    ///@{
    static int tolower(int c);
    static int toupper(int c);
    ///@}
    /// `_wtoi`: 0 when the text does not begin with a number.
    static int atoi(const wchar_t* s);
    /// `_wcsicmp`, `_wcsnicmp`: negative, 0 or positive, whatever the case of letters. `n` counts characters.
    ///@{
    static int icmp(const wchar_t* a, const wchar_t* b);
    static int nicmp(const wchar_t* a, const wchar_t* b, unsigned n);
    ///@}
    /// 0, or -1 with `errno` set.
    static int mkdir(const wchar_t* path);

    /// What paths are made of: the separator, the end of a device, and the name of the folder above.
    ///@{
    static const wchar_t* Separator() { return L"\\"; }
    static const wchar_t* Device() { return L":"; }
    static const wchar_t* UpperDir() { return L".."; }
    ///@}

    /// The same characters, seen through a view.
    ///@{
    static ConstString<wchar_t> convert(const wchar_t* s) { return ConstString<wchar_t>(s); }
    static ConstString<wchar_t> convert(const wchar_t* s, unsigned n) { return ConstString<wchar_t>(s, n); }
    ///@}
    /// `mbstowcs`, that is, in the runtime library's current locale and not in a code page of the
    /// system: use a2w when the code page matters. Reports no error: the text ends before the first
    /// bytes that the locale cannot read.
    static BasicString<wchar_t, std::char_traits<wchar_t>, std::allocator<wchar_t>> convert(const char* s);
    /// The same for at most the `n` bytes of `s`; a zero among them ends the text, as it does for `mbstowcs`.
    static BasicString<wchar_t, std::char_traits<wchar_t>, std::allocator<wchar_t>> convert(const char* s, unsigned n);
};
} // namespace tarn
