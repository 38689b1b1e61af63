#pragma once

#include <tarn/BasicString.h>
#include <tarn/COMApartment.h>
#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

#include <memory>
#include <vector>

struct IFileDialog;

namespace tarn {
/// What OpenFileDialog, SaveFileDialog and OpenFolderDialog have in common: the shell's dialogs of today, with its
/// places, search and paths of any length.
///
/// Set what the dialog begins with, call showModal(), ask for the path; an object may be shown again. Uses COM on the
/// thread that makes it, as a single-threaded apartment; destroy it on the same thread. The program's current folder
/// stays as it is. Failures throw COMError or WindowsError as HRESULTHolder::throwOnError does.
class TARN_API ShellFileDialog : private boost::noncopyable {
public:
    /// A kind of files: what the user reads, and patterns with semicolons between them, {L"Pictures", L"*.png;*.jpg"}.
    struct Filter {
        /// For example "Pictures".
        BasicString<wchar_t> name;
        /// For example "*.png;*.jpg".
        BasicString<wchar_t> patterns;
    };

    /// Null or empty has the system's title; copied.
    ///@{
    void setTitle(const char* title);
    void setTitle(const wchar_t* title);
    ///@}
    /// The folder to begin in, wherever the user was last. Throws "Can't find folder for file dialog", also for one
    /// that does not exist.
    ///@{
    void setStartFolder(const char* folder);
    void setStartFolder(const wchar_t* folder);
    ///@}
    /// Adds a folder to the places at the dialog's side. Throws the same.
    ///@{
    void addPlace(const char* folder);
    void addPlace(const wchar_t* folder);
    ///@}
    /// Sets and then clears `FOS_...` of <shobjidl.h>, beyond those that the class has by itself:
    /// `FOS_FORCEFILESYSTEM`, `FOS_NOCHANGEDIR` and the platform's own for the kind of dialog. Options that the system
    /// does not know throw from showModal().
    void setOptions(unsigned long set, unsigned long clear = 0);

    /// False when the user cancelled. Throws "Can't show file dialog", and what the handlers of other windows throw
    /// meanwhile (the dialog is cancelled then).
    bool showModal();

    /// The full path that was chosen, the first one of several; empty before the dialog and after a cancelled one.
    ///@{
    BasicString<char> getPathA() const;
    BasicString<wchar_t> getPathW() const;
    ///@}

protected:
    /// The shell's class for the kind of dialog, and the `FOS_...` that go with it.
    ShellFileDialog(const GUID& shellClass, HWND owner, unsigned long options);
    ~ShellFileDialog();

    /// The kinds to choose from, and which one to begin with.
    void setFilters(std::vector<Filter> filters, unsigned selected = 0);
    /// The filter that was selected last, counted from 0.
    unsigned getSelectedFilter() const { return selectedFilter_; }
    /// What is added to a name without an extension, without the dot: "txt". When the user selects a filter its first
    /// pattern takes its place. None for an empty text.
    ///@{
    void setDefaultExtension(const char* extension);
    void setDefaultExtension(const wchar_t* extension);
    ///@}
    /// What stands in the field for the name, without a folder.
    ///@{
    void setName(const char* name);
    void setName(const wchar_t* name);
    ///@}
    /// Lets the user choose several at once.
    void setMultiple(bool multiple);
    /// All that were chosen, with their full paths.
    const std::vector<BasicString<wchar_t>>& getPaths() const { return paths_; }

private:
    void prepare(IFileDialog& dialog) const;
    void takeResults(IFileDialog& dialog);

    struct Folders;

    COMApartment com_; // First, so that it is there for everything else and ends last.
    GUID shellClass_;
    HWND owner_;
    unsigned long set_;
    unsigned long cleared_ = 0;
    BasicString<wchar_t> title_, extension_, name_;
    std::vector<Filter> filters_;
    unsigned selectedFilter_ = 0;
    std::unique_ptr<Folders> folders_;
    std::vector<BasicString<wchar_t>> paths_;
};

/// Asks for a file that exists, or for several:
///
///     OpenFileDialog dialog(window);
///     dialog.setFilters({{L"Pictures", L"*.png;*.jpg"}, {L"All files", L"*.*"}});
///     if (dialog.showModal())
///         showPicture(dialog.getPathW());
class TARN_API OpenFileDialog : public ShellFileDialog {
public:
    /// `owner` is disabled meanwhile; null for none. Throws "Can't initialize COM".
    explicit OpenFileDialog(HWND owner = nullptr);

    /// As ShellFileDialog has them.
    ///@{
    using ShellFileDialog::getPaths;
    using ShellFileDialog::getSelectedFilter;
    using ShellFileDialog::setDefaultExtension;
    using ShellFileDialog::setFilters;
    using ShellFileDialog::setMultiple;
    using ShellFileDialog::setName;
    ///@}
};

/// Asks under which name to save, and whether to replace a file that exists.
class TARN_API SaveFileDialog : public ShellFileDialog {
public:
    /// As that of OpenFileDialog.
    explicit SaveFileDialog(HWND owner = nullptr);

    /// As ShellFileDialog has them.
    ///@{
    using ShellFileDialog::getSelectedFilter;
    using ShellFileDialog::setDefaultExtension;
    using ShellFileDialog::setFilters;
    using ShellFileDialog::setName;
    ///@}
};

/// Asks for a folder, or for several.
class TARN_API OpenFolderDialog : public ShellFileDialog {
public:
    /// As that of OpenFileDialog.
    explicit OpenFolderDialog(HWND owner = nullptr);

    /// As ShellFileDialog has them.
    ///@{
    using ShellFileDialog::getPaths;
    using ShellFileDialog::setMultiple;
    ///@}
};
} // namespace tarn
