#include <tarn/ShellFileDialog.h>

#include <tarn/COMInterfacePointer.h>
#include <tarn/Exception.h>

#include "../foundation/TaskMemory.h"
#include "../foundation/Widened.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/SystemDialogs.h"

#include <shlobj.h>

#include <utility>

namespace tarn {
struct ShellFileDialog::Folders {
    COMInterfacePointer<IShellItem> start;
    std::vector<COMInterfacePointer<IShellItem>> places;
};

namespace {
constexpr const char* cannotShow = "Can't show file dialog";

void ensureShown(HRESULT result) { HRESULTHolder::throwOnError(result, cannotShow); }

COMInterfacePointer<IShellItem> folderAt(const wchar_t* path)
{
    COMInterfacePointer<IShellItem> folder;
    HRESULTHolder::throwOnError(SHCreateItemFromParsingName(path, nullptr, __uuidof(IShellItem), folder.putVoid()),
                                "Can't find folder for file dialog");
    return folder;
}

BasicString<wchar_t> pathOf(IShellItem& item)
{
    wchar_t* path = nullptr;
    ensureShown(item.GetDisplayName(SIGDN_FILESYSPATH, &path));
    return TaskText(path).get();
}

std::vector<BasicString<wchar_t>> pathsOf(IShellItemArray& items)
{
    std::vector<BasicString<wchar_t>> paths;
    DWORD count = 0;
    ensureShown(items.GetCount(&count));
    for (DWORD i = 0; i < count; ++i) {
        COMInterfacePointer<IShellItem> item;
        ensureShown(items.GetItemAt(i, item.put()));
        paths.push_back(pathOf(*item.get()));
    }
    return paths;
}
} // namespace

ShellFileDialog::ShellFileDialog(const GUID& shellClass, HWND owner, unsigned long options)
    : shellClass_(shellClass), owner_(owner), set_(options | FOS_FORCEFILESYSTEM | FOS_NOCHANGEDIR),
      folders_(std::make_unique<Folders>())
{
}
ShellFileDialog::~ShellFileDialog() = default;

OpenFileDialog::OpenFileDialog(HWND owner) : ShellFileDialog(__uuidof(::FileOpenDialog), owner, FOS_FILEMUSTEXIST) {}
SaveFileDialog::SaveFileDialog(HWND owner) : ShellFileDialog(__uuidof(::FileSaveDialog), owner, FOS_OVERWRITEPROMPT) {}
OpenFolderDialog::OpenFolderDialog(HWND owner) : ShellFileDialog(__uuidof(::FileOpenDialog), owner, FOS_PICKFOLDERS) {}

void ShellFileDialog::setTitle(const char* title) { title_ = widened(title); }
void ShellFileDialog::setTitle(const wchar_t* title) { title_ = title; }
void ShellFileDialog::setStartFolder(const char* folder) { setStartFolder(widened(folder).c_str()); }
void ShellFileDialog::setStartFolder(const wchar_t* folder) { folders_->start = folderAt(folder); }
void ShellFileDialog::addPlace(const char* folder) { addPlace(widened(folder).c_str()); }
void ShellFileDialog::addPlace(const wchar_t* folder) { folders_->places.push_back(folderAt(folder)); }
void ShellFileDialog::setDefaultExtension(const char* extension) { extension_ = widened(extension); }
void ShellFileDialog::setDefaultExtension(const wchar_t* extension) { extension_ = extension; }
void ShellFileDialog::setName(const char* name) { name_ = widened(name); }
void ShellFileDialog::setName(const wchar_t* name) { name_ = name; }
void ShellFileDialog::setMultiple(bool multiple)
{
    multiple ? setOptions(FOS_ALLOWMULTISELECT) : setOptions(0, FOS_ALLOWMULTISELECT);
}

void ShellFileDialog::setOptions(unsigned long set, unsigned long clear)
{
    set_ = (set_ | set) & ~clear;
    cleared_ = (cleared_ & ~set) | clear;
}

void ShellFileDialog::setFilters(std::vector<Filter> filters, unsigned selected)
{
    filters_ = std::move(filters);
    selectedFilter_ = selected;
}

bool ShellFileDialog::showModal()
{
    paths_.clear();
    // A new one each time, because the shell's takes its filters only once.
    const auto dialog = COMInterfacePointer<IFileDialog>::create(shellClass_);
    prepare(*dialog.get());
    const SystemDialogs dialogs;
    const HRESULT result = runningLoop([&] { return dialog->Show(owner_); }, [&]() noexcept { dialogs.cancel(); });
    if (result == HRESULT_FROM_WIN32(ERROR_CANCELLED))
        return false;
    ensureShown(result);
    takeResults(*dialog.get());
    return true;
}

void ShellFileDialog::prepare(IFileDialog& dialog) const
{
    FILEOPENDIALOGOPTIONS options = 0;
    ensureShown(dialog.GetOptions(&options));
    ensureShown(dialog.SetOptions((options | set_) & ~cleared_));
    std::vector<COMDLG_FILTERSPEC> filters;
    for (const Filter& filter : filters_)
        filters.push_back({filter.name.c_str(), filter.patterns.c_str()});
    if (!filters.empty()) {
        ensureShown(dialog.SetFileTypes(static_cast<UINT>(filters.size()), filters.data()));
        ensureShown(dialog.SetFileTypeIndex(selectedFilter_ + 1));
    }
    if (!title_.empty())
        ensureShown(dialog.SetTitle(title_.c_str()));
    if (!extension_.empty())
        ensureShown(dialog.SetDefaultExtension(extension_.c_str()));
    if (!name_.empty())
        ensureShown(dialog.SetFileName(name_.c_str()));
    if (folders_->start)
        ensureShown(dialog.SetFolder(folders_->start));
    for (const COMInterfacePointer<IShellItem>& place : folders_->places)
        ensureShown(dialog.AddPlace(place, FDAP_BOTTOM));
}

void ShellFileDialog::takeResults(IFileDialog& dialog)
{
    UINT filter = 0; // Counted from 1.
    if (!filters_.empty() && SUCCEEDED(dialog.GetFileTypeIndex(&filter)) && filter > 0)
        selectedFilter_ = filter - 1;
    if (const auto opening = COMInterfacePointer<IFileDialog>(&dialog).as<IFileOpenDialog>()) {
        COMInterfacePointer<IShellItemArray> items;
        ensureShown(opening->GetResults(items.put()));
        paths_ = pathsOf(*items.get());
    } else {
        COMInterfacePointer<IShellItem> item;
        ensureShown(dialog.GetResult(item.put()));
        paths_.push_back(pathOf(*item.get()));
    }
}

BasicString<char> ShellFileDialog::getPathA() const { return getPathW().c_str(); }
BasicString<wchar_t> ShellFileDialog::getPathW() const { return paths_.empty() ? BasicString<wchar_t>() : paths_[0]; }
} // namespace tarn
