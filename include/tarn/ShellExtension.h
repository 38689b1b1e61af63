#pragma once

#include <tarn/BasicString.h>
#include <tarn/IUnknownImpl.h>
#include <tarn/Windows.h>

#include <ole2.h>
#include <shlobj.h>

#include <functional>
#include <vector>

namespace tarn {
/// The base of what Explorer calls a shell extension: takes in the files that the user has selected.
///
/// Use ContextMenuHandler for menu commands and PropertySheetHandler for pages; derive from this class
/// for other kinds that Explorer initialises through `IShellExtInit`. Explorer creates one object for each
/// selection, on an apartment thread: register the class with COMModule::apartment.
class TARN_API ShellExtension : public IShellExtInit, public IUnknownImpl {
public:
    /// Full paths.
    using Items = std::vector<BasicString<wchar_t>>;

    /// `outer` is the aggregating object or null, as for IUnknownImpl.
    explicit ShellExtension(IUnknown* outer) : IUnknownImpl(outer) {}

    TARN_IUNKNOWN_METHODS
    /// Called by Explorer: takes the paths from `data` and the folder. Failures are results.
    HRESULT STDMETHODCALLTYPE Initialize(PCIDLIST_ABSOLUTE folder, IDataObject* data, HKEY progID) override;

    /// Full paths; empty when the folder itself was clicked.
    const Items& getItems() const { return items_; }
    /// The folder whose background was clicked, or onto which the items are dropped; otherwise empty, as it
    /// is for folders that are not on a disk.
    const BasicString<wchar_t>& getFolder() const { return folder_; }

    /// The paths that a data object carries, none when it carries no files.
    static Items readItems(IDataObject* data);

protected:
    void* queryInterface(const GUID& iid) override;

private:
    Items items_;
    BasicString<wchar_t> folder_;
};

/// Adds commands to the menu of files or folders, and as a drag-and-drop handler to the menu of a drop
/// with the right button: override getCommands, the rest is done.
class TARN_API ContextMenuHandler : public ShellExtension, public IContextMenu {
public:
    /// A line of the menu.
    struct Command {
        /// What the menu shows, "&" before the access key; "" is a separator.
        BasicString<wchar_t> text;
        /// Called with the window that may own dialogs (or null). What it throws becomes the result.
        std::function<void(HWND owner)> action;
        /// The name by which programs call it; may be empty.
        BasicString<wchar_t> verb;
        /// For the status bar; may be empty.
        BasicString<wchar_t> help;
    };

    /// `outer` is the aggregating object or null, as for IUnknownImpl.
    explicit ContextMenuHandler(IUnknown* outer) : ShellExtension(outer) {}

    TARN_IUNKNOWN_METHODS
    /// Called by Explorer, to fill the menu, to run a command and to learn its help and verb. Failures are results;
    /// the menu is as it was then.
    ///@{
    HRESULT STDMETHODCALLTYPE QueryContextMenu(HMENU menu, UINT position, UINT firstID, UINT lastID,
                                               UINT flags) override;
    HRESULT STDMETHODCALLTYPE InvokeCommand(CMINVOKECOMMANDINFO* info) override;
    HRESULT STDMETHODCALLTYPE GetCommandString(UINT_PTR command, UINT what, UINT* reserved, CHAR* text,
                                               UINT size) override;
    ///@}

protected:
    void* queryInterface(const GUID& iid) override;
    /// The commands for getItems() and getFolder(), in the menu's order. Called once, after Initialize.
    virtual std::vector<Command> getCommands() = 0;

private:
    struct ContextMenuInternals; // Derived classes see private names, and should see none that a program has.

    std::vector<Command> commands_;
    bool hasCommands_ = false;
};

/// Adds pages to the properties of files or folders: override createPages.
class TARN_API PropertySheetHandler : public ShellExtension, public IShellPropSheetExt {
public:
    /// `outer` is the aggregating object or null, as for IUnknownImpl.
    explicit PropertySheetHandler(IUnknown* outer) : ShellExtension(outer) {}

    TARN_IUNKNOWN_METHODS
    /// Called by Explorer: hands it what createPages() makes. Failures are results.
    HRESULT STDMETHODCALLTYPE AddPages(LPFNSVADDPROPSHEETPAGE add, LPARAM context) override;
    /// `E_NOTIMPL`: only the pages of the control panel are replaced.
    HRESULT STDMETHODCALLTYPE ReplacePage(UINT page, LPFNSVADDPROPSHEETPAGE replace, LPARAM context) override;

protected:
    void* queryInterface(const GUID& iid) override;
    /// Pages of `CreatePropertySheetPage` for getItems(). The sheet owns them; those that it does not take
    /// are destroyed.
    virtual std::vector<HPROPSHEETPAGE> createPages() = 0;
};

/// Takes what is dropped on a file of its type: override drop, and getEffect if it matters how.
class TARN_API DropHandler : public IPersistFile, public IDropTarget, public IUnknownImpl {
public:
    /// Full paths.
    using Items = ShellExtension::Items;

    /// `clsid` is the class under which the handler is registered.
    DropHandler(IUnknown* outer, const GUID& clsid) : IUnknownImpl(outer), clsid_(clsid) {}

    TARN_IUNKNOWN_METHODS
    /// The methods of `IPersistFile`, by which Explorer names the file that is dropped on. Save() is `E_NOTIMPL`; the
    /// text of GetCurFile() is the caller's to free with `CoTaskMemFree`.
    ///@{
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override;
    HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR file, DWORD mode) override;
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR file, BOOL remember) override;
    HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR file) override;
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR* file) override;
    ///@}
    /// The methods of `IDropTarget`, which ask getEffect() and at the end call drop(). Failures are results, with
    /// the effect `DROPEFFECT_NONE`, and `E_POINTER` for a null `effect`.
    ///@{
    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) override;
    ///@}

    /// The file that is dropped on.
    const BasicString<wchar_t>& getTarget() const { return target_; }

protected:
    void* queryInterface(const GUID& iid) override;
    /// One of the `DROPEFFECT_...` in `allowed`, or `DROPEFFECT_NONE` to refuse the items. `keys` are the
    /// `MK_...` that are down. As it stands, any files are copied.
    virtual unsigned long getEffect(const Items& items, unsigned long keys, unsigned long allowed) const;
    /// What it throws becomes the result.
    virtual void drop(const Items& items, unsigned long effect) = 0;

private:
    unsigned long chooseEffect(unsigned long keys, unsigned long allowed) const;

    GUID clsid_;
    BasicString<wchar_t> target_;
    Items dragged_;
};
} // namespace tarn
