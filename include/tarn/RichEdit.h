#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>

#include <optional>
#include <utility>

namespace tarn {
class InputStream;
class OutputStream;

/// A text field whose characters have fonts and colours, of any length. Its text is that of the window: getTextW(),
/// setText(). Failures throw WindowsError.
class TARN_API RichEdit : public Window {
public:
    /// What load() and save() work on: text in UTF-8, with ends of lines of two characters, or the Rich Text Format.
    enum text_format { plain, rtf };

    /// How characters look. What is missing stays as it is, or is not the same for all that are selected.
    struct CharacterFormat {
        /// Each may be combined with the others.
        ///@{
        std::optional<bool> isBold;
        std::optional<bool> isItalic;
        std::optional<bool> isUnderlined;
        std::optional<bool> isStruckOut;
        ///@}
        /// In points, 10.5 for instance.
        std::optional<double> size;
        /// An RGB colour.
        std::optional<unsigned long> colour;
        /// The name of the typeface, "Arial".
        std::optional<BasicString<wchar_t>> font;
    };

    using Window::Window;

    /// As Window has them.
    using Window::create;
    /// As ListView::create() with an id; `style` is made of `ES_...` and `WS_...`. Loads "msftedit.dll".
    void create(HWND parent, unsigned short id, const RECT& rect, unsigned long style);
    /// Before a dialog with such controls in its template ("RICHEDIT50W") is shown. They take up to 32,767 characters
    /// until they are sent an `EM_EXLIMITTEXT`. Throws "Can't create window".
    static void loadClass();

    /// Reads until the end of the stream, in the place of all that there is, or of what is selected. Throws "Can't load
    /// text", and what the stream throws.
    void load(InputStream& in, text_format kind = rtf, bool intoSelection = false) const;
    /// Throws "Can't save text", and what the stream throws.
    void save(OutputStream& out, text_format kind = rtf, bool selectionOnly = false) const;

    /// Selects the characters from `start` up to, not including, `end`; an `end` of -1 is the text's. The end of a line
    /// counts as one.
    void setSelection(int start, int end) const;
    /// The first character selected, and the one behind the last.
    std::pair<int, int> getSelection() const;
    /// Puts a text in the place of what is selected; with `undoable` the user can take it back.
    ///@{
    void replaceSelection(const char* text, bool undoable = true) const;
    void replaceSelection(const wchar_t* text, bool undoable = true) const;
    ///@}
    /// Of what is selected, or of what is entered next when nothing is. Throws "Can't set character format".
    void setFormat(const CharacterFormat& wanted) const;
    /// Of what is selected.
    CharacterFormat getFormat() const;
};
} // namespace tarn
