#include "DialogTemplate.h"

#include <tarn/Rect.h>

#include "../foundation/Check.h"
#include "../windowing/HandlerScope.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace tarn {
namespace {
constexpr const char* cannotCreate = "Can't create dummy dialog for getSize()";

/// What an extended template begins with; the platform documents it without declaring it.
struct ExtendedTemplate {
    WORD version;
    WORD signature;
    DWORD helpID;
    DWORD extendedStyle;
    DWORD style;
};

// A copy, because the style that would show the dialog has to go. In words of the alignment that it needs.
std::vector<DWORD> hiddenTemplate(HINSTANCE instance, unsigned short resource)
{
    const HRSRC found = ensure(FindResourceW(instance, MAKEINTRESOURCEW(resource), RT_DIALOG), cannotCreate);
    const void* const data = ensure(LockResource(ensure(LoadResource(instance, found), cannotCreate)), cannotCreate);
    const DWORD size = SizeofResource(instance, found);
    std::vector<DWORD> copy(size / sizeof(DWORD) + sizeof(ExtendedTemplate) / sizeof(DWORD));
    std::memcpy(copy.data(), data, size);
    const auto* const extended = reinterpret_cast<const ExtendedTemplate*>(copy.data());
    const bool isExtended = extended->version == 1 && extended->signature == 0xFFFF;
    copy[isExtended ? offsetof(ExtendedTemplate, style) / sizeof(DWORD) : 0] &= ~WS_VISIBLE;
    return copy;
}

INT_PTR CALLBACK ignore(HWND, UINT, WPARAM, LPARAM) { return FALSE; }
} // namespace

Size sizeOfTemplate(HINSTANCE instance, unsigned short resource)
{
    const std::vector<DWORD> hidden = hiddenTemplate(instance, resource);
    return runningHandlers([&] {
        const HWND hwnd = ensure(CreateDialogIndirectParamW(instance, reinterpret_cast<LPCDLGTEMPLATEW>(hidden.data()),
                                                            GetDesktopWindow(), ignore, 0),
                                 cannotCreate);
        Rect rect;
        const BOOL isKnown = GetWindowRect(hwnd, &rect);
        const DWORD error = GetLastError();
        DestroyWindow(hwnd);
        if (!isKnown)
            throwWindowsError(error, "Can't get window rect for dummy dialog in getSize()");
        return rect.getSize();
    });
}
} // namespace tarn
