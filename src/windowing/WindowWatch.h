#pragma once

#include <tarn/Window.h>

namespace tarn {
/// Learns that a window object died while a call of one of its members was in progress, so that the member
/// does not touch it any more. Handlers may delete their own object.
class Window::WindowInternals::Watch {
public:
    explicit Watch(Window& window) : Watch(window, nullptr) {}
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch()
    {
        if (window_)
            window_->watch_ = outer_;
    }

    bool isAlive() const { return window_ != nullptr; }

    /// The record of the message being handled; null outside of messages.
    static MessageRecord* currentRecord(Watch* innermost)
    {
        Watch* const watch = ofMessage(innermost);
        return watch ? watch->record_ : nullptr;
    }
    /// The innermost watch that belongs to a message.
    static Watch* ofMessage(Watch* watch)
    {
        while (watch && !watch->record_)
            watch = watch->outer_;
        return watch;
    }
    MessageRecord* record() const { return record_; }

    /// The last error that the message leaves behind: that of the default procedure if it ran, else the one from
    /// before. What a handler leaves is its own affair; the call that sent the message may take a zero for a
    /// failure because of it.
    DWORD error() const { return error_; }
    void setError(DWORD error) { error_ = error; }

    /// Tells all watches of an object that it dies. Records move from its stack into the watches.
    static void tellDeath(Watch* innermost)
    {
        for (Watch* watch = innermost; watch; watch = watch->outer_) {
            watch->window_ = nullptr;
            if (watch->record_) {
                watch->last_ = *watch->record_;
                watch->record_ = &watch->last_;
            }
        }
    }

protected:
    Watch(Window& window, MessageRecord* record) : window_(&window), outer_(window.watch_), record_(record)
    {
        link(window);
    }

    Window* window_;

private:
    // The destructor takes the pointer back, which the compiler's warning does not see.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdangling-pointer"
    void link(Window& window) { window.watch_ = this; }
#pragma GCC diagnostic pop

    Watch* outer_;
    MessageRecord* record_;
    MessageRecord last_;
    DWORD error_ = ERROR_SUCCESS;
};

/// One message being handled: its record is on the object's stack as long as this lives.
class Window::WindowInternals::ActiveMessage : public Watch {
public:
    ActiveMessage(Window& window, UINT msg, WPARAM wParam, LPARAM lParam)
        : Watch(window, &window.messages_.emplace_back(MessageRecord{0, true, msg, wParam, lParam})),
          hwnd_(window.hwnd_)
    {
        setError(GetLastError());
    }
    ~ActiveMessage()
    {
        if (window_)
            end();
        SetLastError(error());
    }

private:
    void end()
    {
        // Here again for handlers that threw or did not pass the message on to Window::onMessage: an object
        // that went on to hold the handle would destroy whatever window gets it next.
        if (record()->msg == WM_NCDESTROY)
            endOfWindow(*window_, hwnd_);
        window_->messages_.pop_back();
    }

    HWND hwnd_;
};
} // namespace tarn
