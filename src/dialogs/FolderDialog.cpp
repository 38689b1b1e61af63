#include <tarn/FolderDialog.h>

#include <tarn/Exception.h>

#include "../windowing/HandlerScope.h"

#include <objbase.h>

#include <utility>

namespace tarn {
struct FolderDialog::FolderDialogInternals {
    static int CALLBACK callback(HWND hwnd, UINT msg, LPARAM lParam, LPARAM data);
    static int handle(FolderDialog& dialog, HWND hwnd, UINT msg, LPARAM lParam);
    static void select(const FolderDialog& dialog);
};

FolderDialog::FolderDialog(HWND owner, BasicString<wchar_t> title, unsigned flags, int) : title_(std::move(title))
{
    info_.hwndOwner = owner;
    info_.pszDisplayName = displayName_;
    info_.lpszTitle = title_.c_str();
    info_.ulFlags = flags;
    info_.lpfn = &FolderDialogInternals::callback;
    info_.lParam = reinterpret_cast<LPARAM>(this);
}
FolderDialog::FolderDialog(Window& owner, const char* title, unsigned flags)
    : FolderDialog(owner.getWindowHandle(), BasicString<wchar_t>(title), flags, 0)
{
}
FolderDialog::FolderDialog(Window& owner, const wchar_t* title, unsigned flags)
    : FolderDialog(owner.getWindowHandle(), BasicString<wchar_t>(title), flags, 0)
{
}
FolderDialog::FolderDialog(HWND owner, const char* title, unsigned flags)
    : FolderDialog(owner, BasicString<wchar_t>(title), flags, 0)
{
}
FolderDialog::FolderDialog(HWND owner, const wchar_t* title, unsigned flags)
    : FolderDialog(owner, BasicString<wchar_t>(title), flags, 0)
{
}
FolderDialog::~FolderDialog() = default;

void FolderDialog::onInitialized() {}
void FolderDialog::onSelectionChanged(const ItemIDList&) {}
bool FolderDialog::onValidateFailed(const char*) { return false; }
bool FolderDialog::onValidateFailed(const wchar_t*) { return false; }

void FolderDialog::setRoot(int folder)
{
    LPITEMIDLIST list = nullptr;
    HRESULTHolder::throwOnError(SHGetSpecialFolderLocation(nullptr, folder, &list),
                                "Can't get special folder location");
    root_.attach(list);
    info_.pidlRoot = list;
}

void FolderDialog::setSelection(const char* path) { setSelection(BasicString<wchar_t>(path).c_str()); }
void FolderDialog::setSelection(const wchar_t* path)
{
    preselected_.close();
    preselectedPath_ = BasicString<wchar_t>(path);
}
void FolderDialog::setSelection(const ITEMIDLIST* folder)
{
    preselected_.copy(folder);
    preselectedPath_.clear();
}

bool FolderDialog::showModal()
{
    struct Unbinding {
        ~Unbinding() { dialog.attach(nullptr, false); }
        FolderDialog& dialog;
    };
    const Unbinding unbinding{*this};
    // Taken over inside, so that it is not lost when an exception comes back with it.
    const auto run = [&] {
        selection_.attach(SHBrowseForFolderW(&info_));
        if (!selection_)
            displayName_[0] = 0; // The system writes the name of what is selected, and of what was.
    };
    runningLoop(run, [&]() noexcept {
        if (isOpen()) // Not yet: the message would be one of the thread.
            PostMessageW(*this, WM_COMMAND, IDCANCEL, 0);
    });
    return static_cast<bool>(selection_);
}

void FolderDialog::setStatusText(const char* text)
{
    runningHandlers([&] { SendMessageW(*this, BFFM_SETSTATUSTEXTA, 0, reinterpret_cast<LPARAM>(text)); });
}
void FolderDialog::setStatusText(const wchar_t* text)
{
    runningHandlers([&] { SendMessageW(*this, BFFM_SETSTATUSTEXTW, 0, reinterpret_cast<LPARAM>(text)); });
}
void FolderDialog::enableOk(bool enable)
{
    runningHandlers([&] { SendMessageW(*this, BFFM_ENABLEOK, 0, enable); });
}

void FolderDialog::FolderDialogInternals::select(const FolderDialog& dialog)
{
    const BasicString<wchar_t>& path = dialog.preselectedPath_;
    const bool isPath = !path.empty();
    const void* const folder =
        isPath ? static_cast<const void*>(path.c_str()) : static_cast<const void*>(dialog.preselected_.get());
    if (folder)
        runningHandlers([&] { SendMessageW(dialog, BFFM_SETSELECTIONW, isPath, reinterpret_cast<LPARAM>(folder)); });
}

int CALLBACK FolderDialog::FolderDialogInternals::callback(HWND hwnd, UINT msg, LPARAM lParam, LPARAM data)
{
    return guardedCallback(0, {"a handler of a folder dialog", hwnd, msg},
                           [&] { return handle(*reinterpret_cast<FolderDialog*>(data), hwnd, msg, lParam); });
}

int FolderDialog::FolderDialogInternals::handle(FolderDialog& dialog, HWND hwnd, UINT msg, LPARAM lParam)
{
    if (!dialog.isOpen())
        dialog.attach(hwnd, false);
    switch (msg) {
    case BFFM_INITIALIZED:
        select(dialog);
        dialog.onInitialized();
        return 0;
    case BFFM_SELCHANGED:
        dialog.onSelectionChanged(ItemIDList(reinterpret_cast<ITEMIDLIST*>(lParam), false));
        return 0;
    case BFFM_VALIDATEFAILEDA:
        return dialog.onValidateFailed(reinterpret_cast<const char*>(lParam));
    case BFFM_VALIDATEFAILEDW:
        return dialog.onValidateFailed(reinterpret_cast<const wchar_t*>(lParam));
    default:
        return 0;
    }
}
} // namespace tarn
