#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <memory>

namespace tarn {
/// The system's dialogs for choosing a file to open or to save. In new programs take OpenFileDialog and SaveFileDialog
/// of ShellFileDialog.h, which give several files as a list and add the extension before they ask about replacing.
///
/// With `OFN_ALLOWMULTISELECT | OFN_EXPLORER` the path has, when several files were chosen, the folder and
/// the names with a zero behind each but the last. Throws BadAllocation when there is no memory.
class TARN_API FileDialog : private boost::noncopyable {
public:
    /// `flags` are the `OFN_...` that the dialog takes.
    ///@{
    FileDialog(HWND owner, bool save, unsigned long flags);
    FileDialog(Window* owner, bool save, unsigned long flags);
    ///@}
    ~FileDialog();

    /// Pairs of description and pattern, each with its zero, and an empty text behind the last one:
    /// "Text\0*.txt\0All files\0*.*\0". Null takes the filter away. Copied, as far as getFilterLength() goes.
    ///@{
    void setFilter(const char* filter);
    void setFilter(const wchar_t* filter);
    ///@}
    /// In characters, with all zeros but the last. It ends early at a pair whose description has a single
    /// character: make descriptions longer.
    ///@{
    static unsigned getFilterLength(const char* filter);
    static unsigned getFilterLength(const wchar_t* filter);
    ///@}
    /// Null has the system's title; copied. Narrow text is read in the runtime library's locale.
    ///@{
    void setTitle(const char* title);
    void setTitle(const wchar_t* title);
    ///@}
    /// The file name or path to begin with. One that is too long for any dialog throws CommonDialogError
    /// `FNERR_BUFFERTOOSMALL`, "Error in file dialog".
    ///@{
    void setPath(const char* path);
    void setPath(const wchar_t* path);
    ///@}

    /// False when the user cancelled. Throws CommonDialogError "Error in file dialog", and what the handlers
    /// of other windows throw meanwhile (the dialog is cancelled then).
    bool showModal();

    /// The full path that was chosen; before showModal() what setPath() was given.
    ///@{
    BasicString<char> getPathA() const;
    BasicString<wchar_t> getPathW() const;
    ///@}
    /// The path's last part, with its extension.
    ///@{
    BasicString<char> getFilenameA() const;
    BasicString<wchar_t> getFilenameW() const;
    ///@}
    /// Without the dot; empty when there is none.
    ///@{
    BasicString<char> getExtensionA() const;
    BasicString<wchar_t> getExtensionW() const;
    ///@}

private:
    struct Data;

    std::unique_ptr<Data> data_;
    bool save_;
};
} // namespace tarn
