#include <tarn/FileDialog.h>

#include <tarn/Exception.h>

#include "../foundation/Throw.h"
#include "../windowing/HandlerScope.h"
#include "../windowing/SystemDialogs.h"

#include <commdlg.h>

#include <cderr.h>

#include <algorithm>
#include <new>
#include <string>
#include <string_view>

namespace tarn {
namespace {
constexpr const char* dialogFailed = "Error in file dialog";
constexpr std::size_t bufferSize = 32768; // The longest path that the system knows, and a long selection.

// The quirk stands in the header: only the character behind the current one is looked at.
template <class Ch> unsigned filterLength(const Ch* filter)
{
    const Ch* end = filter;
    while (end && end[0] && end[1]) {
        end += std::char_traits<Ch>::length(end) + 1;
        end += std::char_traits<Ch>::length(end) + 1;
    }
    return static_cast<unsigned>(end - filter);
}

/// Converts each of the texts between the zeros.
template <class To, class From> BasicString<To> convertPieces(const From* text, std::size_t length)
{
    BasicString<To> result;
    for (std::size_t start = 0; start < length;) {
        const std::size_t piece = std::char_traits<From>::length(text + start);
        result += BasicString<To>(text + start);
        start += piece + 1;
        if (start <= length)
            result += To();
    }
    return result;
}
} // namespace

struct FileDialog::Data {
    OPENFILENAMEW info;
    wchar_t file[bufferSize];
    BasicString<wchar_t> filter;
    BasicString<wchar_t> title;

    void setFilter(const BasicString<wchar_t>& text)
    {
        filter = text;
        info.lpstrFilter = filter.c_str();
    }
    void setPath(const BasicString<wchar_t>& path)
    {
        if (path.size() >= bufferSize)
            throwError(CommonDialogError(FNERR_BUFFERTOOSMALL, dialogFailed));
        std::fill(std::copy(path.begin(), path.end(), file), file + bufferSize, L'\0');
        locateParts();
    }
    // What the system does for a path that was chosen.
    void locateParts()
    {
        const std::wstring_view path(file); // The folder when there are several names.
        const std::size_t offset = length() == path.size() ? path.find_last_of(L"\\/:") + 1 : path.size() + 1;
        const std::wstring_view name(file + offset);
        const std::size_t dot = name.rfind(L'.');
        info.nFileOffset = static_cast<WORD>(offset);
        info.nFileExtension = dot == name.npos ? WORD() : static_cast<WORD>(offset + dot + 1);
    }
    // Up to the zero behind the last text.
    std::size_t length() const
    {
        std::size_t end = std::char_traits<wchar_t>::length(file);
        if (info.Flags & OFN_ALLOWMULTISELECT) {
            while (end + 1 < bufferSize && file[end + 1])
                end += 1 + std::char_traits<wchar_t>::length(file + end + 1);
        }
        return end;
    }
};
TARN_LAYOUT(OPENFILENAMEW, 88, 152);

FileDialog::FileDialog(HWND owner, bool save, unsigned long flags) : data_(new (std::nothrow) Data()), save_(save)
{
    if (!data_)
        throwError(BadAllocation());
    OPENFILENAMEW& info = data_->info;
    info.lStructSize = sizeof info;
    info.hwndOwner = owner;
    info.lpstrFile = data_->file;
    info.nMaxFile = static_cast<DWORD>(bufferSize);
    info.Flags = flags;
}
FileDialog::FileDialog(Window* owner, bool save, unsigned long flags)
    : FileDialog(owner ? owner->getWindowHandle() : nullptr, save, flags)
{
}
FileDialog::~FileDialog() = default;

unsigned FileDialog::getFilterLength(const char* filter) { return filterLength(filter); }
unsigned FileDialog::getFilterLength(const wchar_t* filter) { return filterLength(filter); }

void FileDialog::setFilter(const char* filter)
{
    data_->setFilter(convertPieces<wchar_t>(filter, filterLength(filter)));
    if (!filter)
        data_->info.lpstrFilter = nullptr;
}
void FileDialog::setFilter(const wchar_t* filter)
{
    data_->setFilter(BasicString<wchar_t>(std::wstring(filter ? filter : L"", filterLength(filter))));
    if (!filter)
        data_->info.lpstrFilter = nullptr;
}

void FileDialog::setTitle(const char* title) { setTitle(title ? BasicString<wchar_t>(title).c_str() : nullptr); }
void FileDialog::setTitle(const wchar_t* title)
{
    data_->title = BasicString<wchar_t>(title);
    data_->info.lpstrTitle = title ? data_->title.c_str() : nullptr;
}

void FileDialog::setPath(const char* path) { data_->setPath(path); }
void FileDialog::setPath(const wchar_t* path) { data_->setPath(path); }

bool FileDialog::showModal()
{
    OPENFILENAMEW& info = data_->info;
    const SystemDialogs dialogs;
    const BOOL isChosen = runningLoop([&] { return save_ ? GetSaveFileNameW(&info) : GetOpenFileNameW(&info); },
                                      [&]() noexcept { dialogs.cancel(); });
    if (isChosen)
        return true;
    const DWORD error = CommDlgExtendedError();
    if (error == FNERR_BUFFERTOOSMALL) // The system put the size there that it needs.
        data_->setPath(BasicString<wchar_t>());
    data_->locateParts();
    if (error)
        throwError(CommonDialogError(error, dialogFailed));
    return false;
}

BasicString<char> FileDialog::getPathA() const { return convertPieces<char>(data_->file, data_->length()); }
BasicString<wchar_t> FileDialog::getPathW() const { return BasicString<wchar_t>(data_->file, data_->length()); }
BasicString<char> FileDialog::getFilenameA() const { return data_->file + data_->info.nFileOffset; }
BasicString<wchar_t> FileDialog::getFilenameW() const { return data_->file + data_->info.nFileOffset; }
BasicString<char> FileDialog::getExtensionA() const { return getExtensionW().c_str(); }
BasicString<wchar_t> FileDialog::getExtensionW() const
{
    // 0 says that there is none.
    return data_->info.nFileExtension ? data_->file + data_->info.nFileExtension : L"";
}
} // namespace tarn
