#pragma once

#include <tarn/Windows.h>

#include "../foundation/Check.h"

#include <commctrl.h>

#include <boost/noncopyable.hpp>

#include <memory>

namespace tarn {
/// Hands the messages of a window to a function first, with `self` as its data, for as long as it lives. The window may
/// end before.
class Subclass : private boost::noncopyable {
public:
    /// `failed` is the text of a failure.
    Subclass(HWND window, SUBCLASSPROC function, void* self, const char* failed)
        : window_(window), link_(new Link{function, reinterpret_cast<DWORD_PTR>(self)})
    {
        ensureGDI([&] { return SetWindowSubclass(window_, onMessage, id(), id()); }, failed);
    }
    ~Subclass()
    {
        link_->function = nullptr;
        if (!RemoveWindowSubclass(window_, onMessage, id()) && IsWindow(window_))
            link_.release(); // The window, of another thread say, goes on asking it.
    }

    HWND getWindow() const { return window_; }

private:
    struct Link {
        SUBCLASSPROC function;
        DWORD_PTR self;
    };

    static LRESULT CALLBACK onMessage(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR data)
    {
        const Link link = *reinterpret_cast<const Link*>(data); // The function may end the object.
        return link.function ? link.function(hwnd, msg, wParam, lParam, id, link.self)
                             : DefSubclassProc(hwnd, msg, wParam, lParam);
    }
    UINT_PTR id() const { return reinterpret_cast<UINT_PTR>(link_.get()); }

    HWND window_;
    std::unique_ptr<Link> link_;
};
} // namespace tarn
