#pragma once

#include "../windowing/Windows.h"

#include <commctrl.h>

namespace support {
constexpr unsigned short stringResource = 40;             // "alpha\r\nbeta\n\r\n gamma"
constexpr unsigned short stripResource = 7;               // Four pictures of 2 by 2 pixels.
constexpr ULONG_PTR number = ~ULONG_PTR{0} / 0xFF * 0x5A; // In 64-bit programs one of more than 32 bits.
inline void* const address = reinterpret_cast<void*>(number);

/// A hidden window with controls of the system in it.
class Host : public tarn::Window {
public:
    static constexpr unsigned short id = 100;

    Host() { open(*this); }

    /// Makes the control and attaches an object to it.
    template <class Control>
    void add(Control& object, const wchar_t* className, unsigned long style = 0, unsigned short childId = id)
    {
        makeChild(*this, className, childId, style);
        object.attach(*this, childId);
    }

    static HWND makeChild(HWND parent, const wchar_t* className, unsigned short childId, unsigned long style)
    {
        const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
        InitCommonControlsEx(&classes);
        const HWND child = CreateWindowExW(0, className, L"", WS_CHILD | style, 0, 0, 180, 80, parent,
                                           reinterpret_cast<HMENU>(static_cast<UINT_PTR>(childId)), nullptr, nullptr);
        REQUIRE(child);
        return child;
    }
};

/// A host with one control.
template <class Control> struct Hosted : Host {
    explicit Hosted(const wchar_t* className, unsigned long style = 0) { add(control, className, style); }

    Control control;
};

/// Stands in for a control that answers one message as it is told to.
class Stubborn : public tarn::Window {
public:
    Stubborn(UINT msg, LRESULT answer) : msg_(msg), answer_(answer) { open(*this); }

    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override
    {
        return msg == msg_ ? answer_ : Window::onMessage(msg, wParam, lParam);
    }

private:
    UINT msg_;
    LRESULT answer_;
};
} // namespace support
