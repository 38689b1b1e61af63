#pragma once

#include <tarn/BasicString.h>
#include <tarn/COMApartment.h>
#include <tarn/Export.h>
#include <tarn/ItemIDList.h>
#include <tarn/Window.h>
#include <tarn/Windows.h>

#include <shlobj.h>

namespace tarn {
/// The shell's dialog for choosing a folder, a tree. Derive from it to watch and check the choice. In new programs take
/// OpenFolderDialog of ShellFileDialog.h unless they need that.
///
/// Uses COM on the thread that constructs it, as an apartment; destroy it on the same thread. COM failures
/// throw as HRESULTHolder::throwOnError does. What the handlers throw cancels the dialog and comes out of
/// showModal().
class TARN_API FolderDialog : public Window {
public:
    /// `title` stands above the folders; `flags` are `BIF_...`. Throw "Can't initialize COM", on a
    /// multi-threaded thread for instance.
    ///@{
    FolderDialog(Window& owner, const char* title, unsigned flags);
    FolderDialog(Window& owner, const wchar_t* title, unsigned flags);
    FolderDialog(HWND owner, const char* title, unsigned flags);
    FolderDialog(HWND owner, const wchar_t* title, unsigned flags);
    ///@}
    ~FolderDialog() override;

    /// Everything is there; what setSelection() named is selected already.
    virtual void onInitialized();
    /// `selection` lives until it returns.
    virtual void onSelectionChanged(const ItemIDList& selection);
    /// With `BIF_VALIDATE`: the text that was typed is no folder. True keeps the dialog open.
    ///@{
    virtual bool onValidateFailed(const char* text);
    virtual bool onValidateFailed(const wchar_t* text);
    ///@}

    /// Shows only what is below a special folder, `CSIDL_...`. Throws "Can't get special folder location".
    void setRoot(int folder);
    /// The folder to begin with; copied.
    ///@{
    void setSelection(const char* path);
    void setSelection(const wchar_t* path);
    void setSelection(const ITEMIDLIST* folder);
    ///@}

    /// False when cancelled.
    bool showModal();
    /// The folder chosen last; null after a cancelled dialog.
    const ItemIDList& getSelection() const { return selection_; }
    /// As the shell shows the folder; empty before the dialog and after a cancelled one.
    BasicString<wchar_t> getDisplayName() const { return displayName_; }

protected:
    // For the handlers.
    /// Shown with `BIF_STATUSTEXT`.
    ///@{
    void setStatusText(const char* text);
    void setStatusText(const wchar_t* text);
    ///@}
    /// Whether the user can press OK.
    void enableOk(bool enable);

private:
    FolderDialog(HWND owner, BasicString<wchar_t> title, unsigned flags, int);
    struct FolderDialogInternals; // Derived classes see private names, and should see none that a program has.

    COMApartment com_; // First, so that it is there for everything else and ends last.
    BROWSEINFOW info_{};
    ItemIDList selection_;
    ItemIDList root_;
    ItemIDList preselected_;
    BasicString<wchar_t> preselectedPath_;
    BasicString<wchar_t> title_;
    wchar_t displayName_[MAX_PATH] = L"";
};
} // namespace tarn
