#include <tarn/Window.h>

#include "../foundation/Check.h"
#include "../foundation/Memory.h"
#include "HandlerScope.h"
#include "WindowApi.h"

// The texts of windows and of dialog items, and the values shown in those.

namespace tarn {
namespace {
int textLength(HWND hwnd)
{
    return ensureCleared([&] { return runningHandlers([&] { return GetWindowTextLengthA(hwnd); }); },
                         "Error in retrieving window text length");
}

/// Reads a text whose length is not known for sure: `read(text, size)` gives the number of characters that
/// it stored, at most one less than `size`, and `isWhole(length)` tells whether a full buffer had it all.
template <class Ch, class Read, class IsWhole> BasicString<Ch> readText(std::size_t size, Read read, IsWhole isWhole)
{
    BasicString<Ch> text;
    for (;; size *= 2) {
        resizeOrThrow(text, size);
        const auto length = static_cast<std::size_t>(read(text.data(), static_cast<int>(size)));
        if (length + 1 < size || isWhole(length)) {
            text.resize(length);
            return text;
        }
    }
}

template <class Ch> BasicString<Ch> textOf(HWND hwnd)
{
    const int length = textLength(hwnd);
    return readText<Ch>(
        static_cast<std::size_t>(length) + 1,
        [&](Ch* text, int size) {
            return ensureCleared([&] { return runningHandlers([&] { return getWindowText(hwnd, text, size); }); },
                                 "Error in retrieving window text");
        },
        // The narrow length may be too short for a wide text.
        [&](std::size_t filled) {
            return std::is_same_v<Ch, char> ||
                   static_cast<std::size_t>(runningHandlers([&] { return GetWindowTextLengthW(hwnd); })) <= filled;
        });
}

template <class Ch> BasicString<Ch> itemTextOf(HWND hwnd, int id)
{
    return readText<Ch>(
        256,
        [&](Ch* text, int size) {
            return ensureCleared([&] { return runningHandlers([&] { return getDlgItemText(hwnd, id, text, size); }); },
                                 "Can't retrieve dialog item text");
        },
        [](std::size_t) { return false; });
}

template <class Ch> BasicString<Ch> classNameOf(HWND hwnd)
{
    return readText<Ch>(
        256, [&](Ch* name, int size) { return ensure(getClassName(hwnd, name, size), "Can't get window class name"); },
        [](std::size_t) { return false; });
}

template <class Ch> void setTextOf(HWND hwnd, const Ch* text)
{
    ensure(runningHandlers([&] { return setWindowText(hwnd, text); }), "Can't set window text");
}

template <class Ch> void setItemText(HWND hwnd, int id, const Ch* text)
{
    ensure(runningHandlers([&] { return setDlgItemText(hwnd, id, text); }), "Can't set dialog item text");
}

unsigned itemNumber(HWND hwnd, int id, bool isSigned)
{
    BOOL isNumber = FALSE;
    const UINT value = runningHandlers([&] { return GetDlgItemInt(hwnd, id, &isNumber, isSigned); });
    ensure(isNumber, "Can't get dialog item int");
    return value;
}
} // namespace

int Window::getTextLengthA() const { return textLength(hwnd_); }
int Window::getTextLengthW() const { return textLength(hwnd_); } // The narrow length: programs rely on it.
bool Window::hasText() const { return textLength(hwnd_) != 0; }
bool Window::hasText(unsigned short id) const { return textLength(GetDlgItem(hwnd_, id)) != 0; }

BasicString<char> Window::getTextA() const { return textOf<char>(hwnd_); }
BasicString<wchar_t> Window::getTextW() const { return textOf<wchar_t>(hwnd_); }
void Window::setText(const char* text) const { setTextOf(hwnd_, text); }
void Window::setText(const wchar_t* text) const { setTextOf(hwnd_, text); }

BasicString<char> Window::getTextA(int id) const { return itemTextOf<char>(hwnd_, id); }
BasicString<wchar_t> Window::getTextW(int id) const { return itemTextOf<wchar_t>(hwnd_, id); }
void Window::setText(int id, const char* text) const { setItemText(hwnd_, id, text); }
void Window::setText(int id, const wchar_t* text) const { setItemText(hwnd_, id, text); }

BasicString<char> Window::getClassNameA() const { return classNameOf<char>(hwnd_); }
BasicString<wchar_t> Window::getClassNameW() const { return classNameOf<wchar_t>(hwnd_); }

int Window::getID() const { return ensure(GetDlgCtrlID(hwnd_), "Can't retrieve control id"); }

int Window::getInt(int id) const { return static_cast<int>(itemNumber(hwnd_, id, true)); }
unsigned Window::getUInt(int id) const { return itemNumber(hwnd_, id, false); }
void Window::setInt(int id, int value) const
{
    ensure(runningHandlers([&] { return SetDlgItemInt(hwnd_, id, static_cast<UINT>(value), TRUE); }),
           "Can't set dialog item int");
}
void Window::setInt(int id, unsigned value) const
{
    ensure(runningHandlers([&] { return SetDlgItemInt(hwnd_, id, value, FALSE); }),
           "Can't set dialog item unsigned int");
}

void Window::setCheck(int id, check state) const
{
    ensure(runningHandlers([&] { return CheckDlgButton(hwnd_, id, static_cast<UINT>(state)); }),
           "Can't check dialog button");
}
void Window::setCheck(int id, bool isOn) const { setCheck(id, isOn ? checked : unchecked); }
Window::check Window::getCheck(int id) const
{
    return static_cast<check>(runningHandlers([&] { return IsDlgButtonChecked(hwnd_, id); }));
}
bool Window::isChecked(int id) const { return getCheck(id) == checked; }
} // namespace tarn
