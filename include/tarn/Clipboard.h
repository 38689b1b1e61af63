#pragma once

#include <tarn/BasicString.h>
#include <tarn/Bitmap.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tarn {
/// The clipboard, open while this lives: other programs wait for its end, so keep it for as short as possible.
///
///     Clipboard clipboard(window);
///     clipboard.clear();
///     clipboard.setText(L"Hello");
///
/// What is put there is copied, and stays when the program has ended. Put the same thing in several formats, the best
/// one first, after one clear(). Failures throw WindowsError.
class TARN_API Clipboard {
public:
    /// `owner` is a window of the program: without one nothing can be put on the clipboard. Waits for up to a quarter
    /// of a second while another program has it open. Throws "Can't open clipboard".
    [[nodiscard]] explicit Clipboard(HWND owner);
    Clipboard(const Clipboard&) = delete;
    Clipboard& operator=(const Clipboard&) = delete;
    ~Clipboard();

    /// What other programs have put there goes. Throws "Can't empty clipboard".
    void clear();
    /// Whether there is something in a format: `CF_UNICODETEXT`, `CF_BITMAP`, `CF_HDROP` or one of registerFormat().
    /// The system makes related formats of each other.
    static bool has(unsigned format);
    /// The number of a format of one's own: the same name has the same number in all programs. Throws "Can't register
    /// clipboard format".
    ///@{
    static unsigned registerFormat(const char* name);
    static unsigned registerFormat(const wchar_t* name);
    ///@}

    // What is put there. Throw "Can't put data on clipboard".

    /// Narrow text is read in the system's ANSI code page.
    ///@{
    void setText(const char* text);
    void setText(const wchar_t* text);
    ///@}
    /// A bitmap that is not selected into a context.
    void setPicture(HBITMAP bitmap);
    /// Full paths, for the shell to copy them.
    void setFiles(std::span<const BasicString<wchar_t>> files);
    /// Bytes in a format of registerFormat().
    void setData(unsigned format, std::span<const std::byte> data);

    // What is there; nothing when there is none in this format. Throw "Can't get data from clipboard".

    /// Up to the first zero.
    std::optional<BasicString<wchar_t>> getText() const;
    /// Null when there is none.
    Bitmap getPicture() const;
    /// Empty when there are none.
    std::vector<BasicString<wchar_t>> getFiles() const;
    /// Possibly with more bytes than were put there, since the system rounds up: write the length in front if it
    /// counts.
    std::optional<std::vector<std::byte>> getData(unsigned format) const;
};
} // namespace tarn
