#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <utility>

namespace tarn {
/// Owns a BSTR, the text type of automation: counted wide text, which may contain zeros. Usable wherever a
/// BSTR is expected; null is the empty text.
///
/// Narrow text is converted in the system's ANSI code page. Throws BadAllocation, and WindowsError when
/// narrow text cannot be converted.
class TARN_API BStr {
public:
    BStr() noexcept = default;
    /// A copy of the text. Null gives a null BSTR, "" an allocated one of no characters.
    ///@{
    BStr(const wchar_t* text);
    BStr(const wchar_t* text, unsigned lengthInChars);
    BStr(const char* text);
    BStr(const BasicString<wchar_t>& text);
    BStr(const BasicString<char>& text);
    BStr(const BStr& other);
    ///@}
    /// Takes the text over and leaves null.
    BStr(BStr&& other) noexcept : text_(other.detach()) {}
    /// Frees the text held before.
    BStr& operator=(BStr other) noexcept
    {
        swap(other);
        return *this;
    }
    ~BStr() { SysFreeString(text_); }

    ///@{
    operator BSTR() const noexcept { return text_; } ///< Lent, not given.
    BSTR get() const noexcept { return text_; }
    ///@}
    unsigned length() const noexcept { return SysStringLen(text_); } ///< In characters.
    bool empty() const noexcept { return length() == 0; }            ///< True for null, too.
    ///@{
    BasicString<wchar_t> toString() const; ///< Zeros in the text included.
    BasicString<char> toAString() const;
    ///@}

    /// Equal lengths and equal characters; null equals "".
    bool operator==(const BStr& other) const noexcept;

    void attach(BSTR text) noexcept;                                 ///< Takes ownership of `text`.
    BSTR detach() noexcept { return std::exchange(text_, nullptr); } ///< The caller frees the result.
    /// Frees what it holds; the address is for calls that hand out a BSTR.
    BSTR* put() noexcept;
    /// Exchanges the texts; both stay where they are.
    void swap(BStr& other) noexcept { std::swap(text_, other.text_); }

private:
    BSTR text_ = nullptr;
};
} // namespace tarn
