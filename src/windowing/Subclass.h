#pragma once

#include <tarn/Windows.h>

#include "../foundation/Check.h"

#include <commctrl.h>

#include <boost/noncopyable.hpp>

namespace tarn {
/// Hands the messages of a window to a function first, with `self` as its data, for as long as it lives. The window may
/// end before.
class Subclass : private boost::noncopyable {
public:
    /// `failed` is the text of a failure.
    Subclass(HWND window, SUBCLASSPROC function, void* self, const char* failed)
        : window_(window), function_(function), id_(reinterpret_cast<UINT_PTR>(self))
    {
        ensureGDI([&] { return SetWindowSubclass(window_, function_, id_, id_); }, failed);
    }
    ~Subclass() { RemoveWindowSubclass(window_, function_, id_); }

    HWND getWindow() const { return window_; }

private:
    HWND window_;
    SUBCLASSPROC function_;
    UINT_PTR id_;
};
} // namespace tarn
