#pragma once

#include <tarn/BasicString.h>
#include <tarn/DPI.h>
#include <tarn/Export.h>
#include <tarn/OwnerDrawable.h>
#include <tarn/Point.h>
#include <tarn/Rect.h>
#include <tarn/Size.h>
#include <tarn/WindowMessageNames.h>
#include <tarn/WindowPointer.h>
#include <tarn/WindowTask.h>
#include <tarn/Windows.h>

#include <commctrl.h>

#include <boost/container/deque.hpp>
#include <boost/noncopyable.hpp>

#include <concepts>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <type_traits>

namespace tarn {
class ColourScheme;
class DeviceContext;
class Menu;
class WindowClass;

/// A window of the system and the object that handles its messages; the base of every window class.
///
/// Derive from it, override the handlers of interest and create() the window with a WindowClass. A handler
/// that is not overridden gets the system's default processing; one that is overridden asks for it with
/// defaultWindowProc(), which also makes the message's result that of the default.
///
/// An object is unbound, or it is bound to one window in one of three ways: create() makes a window, which
/// the object owns and destroys when it dies; attach() only makes the window findable through
/// getWindowFromHandle(); subclass() also takes over the messages of a window that exists already. When the
/// window dies the object becomes unbound and can be used again. Nothing deletes the object but its owner;
/// `delete this` as the last step of onNCDestroy() is allowed.
///
/// An object that dies first: call unsubclass() before a subclassing object dies, otherwise the window goes
/// on with the system's plain default processing; an attached window goes on as it was.
///
/// Every thread may have windows. A window and its object belong to the thread that made the window, which alone uses
/// the object; post() and call() are for the others. Failures throw WindowsError. An exception that leaves a handler is
/// thrown on by the library call that made the system send the message (dispatchMessage, sendMessageA, create, update
/// and so on). If it was sent by a call of the system's own functions the exception goes on to the library call outside
/// of that one, and it ends the program when there is none, with a message to the standard error and the debugger:
/// loops that call `DispatchMessage` themselves have to catch what their handlers throw. Code that calls windowProc()
/// directly gets it as it came.
///
/// An object stays where it is, because the system and the map know its address: it is neither copied nor moved. Keep
/// it as a member, or behind a `std::unique_ptr`.
///
/// The members, in this order: binding and lifetime; messages; handlers; visibility, position and size; painting; text;
/// dialog items; scroll bars; focus, mouse, timers and the rest; what derived classes use.
class TARN_API Window : public WindowTasks, private boost::noncopyable {
public:
    /// The state of a check box or radio button.
    enum check { unchecked = 0, checked = 1, indeterminate = 2 };
    /// Of a window's two icons: in lists and the title bar, or where programs are switched.
    enum icon_size { small_icon = 0, big_icon = 1 };
    /// At the bottom edge, at the right edge, or the window itself when it is a scroll bar.
    enum scroll_bar_type { horizontal = 0, vertical = 1, control = 2 };

    /// The answer to a message: what the handler returned, or, not handled, what the default gave.
    struct message_result {
        /// What the sender gets.
        LRESULT value;
        /// False when it was left to the default.
        bool handled;
    };

    /// What look-ups give: WindowPointer.h.
    template <class T> using Pointer = WindowPointer<T>;

    // ---- Binding and lifetime

    /// Holds the handle for the members below, without being bound: messages and look-ups do not find it.
    Window(HWND hwnd = nullptr) : hwnd_(hwnd) {}

    /// Destroys the window that the object is bound to and makes a new one; `rect` gives its position and
    /// size as a whole (`{CW_USEDEFAULT, CW_USEDEFAULT, 0, 0}` leaves them to the system), `extendedStyle` is made of
    /// `WS_EX_...`. Throws "Can't destroy window", "Can't create window" and what a handler of the creation messages
    /// throws.
    ///
    /// A window of a class that was not made with WindowClass ("BUTTON") sends its object messages only when
    /// made by the narrow form, which subclasses it (throws "Can't retrieve window procedure") and leaves
    /// its end to its parent; with the wide form call subclass() afterwards.
    ///@{
    void create(const char* className, const char* title, unsigned long style, const RECT& rect, HWND parent,
                HMENU menu, HINSTANCE instance, unsigned long extendedStyle = 0);
    void create(const wchar_t* className, const wchar_t* title, unsigned long style, const RECT& rect, HWND parent,
                HMENU menu, HINSTANCE instance, unsigned long extendedStyle = 0);
    void create(const WindowClass& windowClass, const char* title, unsigned long style, const RECT& rect, HWND parent,
                HMENU menu, HINSTANCE instance, unsigned long extendedStyle = 0);
    void create(const WindowClass& windowClass, const wchar_t* title, unsigned long style, const RECT& rect,
                HWND parent, HMENU menu, HINSTANCE instance, unsigned long extendedStyle = 0);
    ///@}
    /// Throws "Can't get dialog item ID for attaching".
    void attach(HWND parent, unsigned short id);
    /// A null handle unbinds. An object that subclasses the window already takes no second turn, and one
    /// that subclasses (or attaches to) what another object is bound to replaces that object: it becomes
    /// unbound, or, if it owns the window, gets no more messages and still destroys it. Its subclassing goes
    /// over to an object that subclasses, and ends when one attaches.
    void subclass(HWND hwnd);
    /// Throws "Can't retrieve dialogue item for subclassing".
    void subclass(HWND parent, unsigned short id);
    /// Of an object that is only attached it ends that.
    void unsubclass();
    /// Does nothing when unbound. Throws "Can't destroy window".
    void destroy();

    /// Null when there is no window. Lent, not given.
    ///@{
    HWND getWindowHandle() const { return hwnd_; }
    operator HWND() const { return hwnd_; }
    bool isOpen() const { return hwnd_ != nullptr; }
    // A template, which gives no other numbers.
    template <std::same_as<bool> Bool> operator Bool() const { return isOpen(); }
    bool operator!() const { return !isOpen(); }
    ///@}
    /// Whether subclass() took over the messages of the window.
    bool isSubclass() const { return previousProc_ != nullptr; }

    /// The object bound to a window; else a temporary one when wanted, else null (null is null, too).
    static Pointer<Window> getWindowFromHandle(HWND hwnd, bool createTemporary);
    /// Throws "Can't retrieve dialog item ID".
    Pointer<Window> getDialogItem(int id, bool createTemporary) const;

    // ---- Messages
    //
    // The loop of a program, without dialogs, is
    //     MSG msg;
    //     while (Window::getThreadMessage(msg)) {
    //         TranslateMessage(&msg); // or no WM_CHAR and no menu keys: nothing else here does it
    //         Window::dispatchMessage(msg);
    //     }
    // and runMessageLoop() of MessageLoop.h is just that. There is also what a loop needs for the keys of
    // dialogs and for accelerators.

    /// Waits for a message of this window; false for `WM_QUIT`. What a handler throws meanwhile, for a message that
    /// another thread sent, comes out of it and leaves the queue as it is; if a message was just being taken, that
    /// message is handed out first, and the next call throws. Throws "Error in GetMessage".
    bool getMessage(MSG& msg, UINT min = 0, UINT max = 0) const;
    /// The same for all windows of the calling thread and for messages without a window.
    static bool getThreadMessage(MSG& msg, UINT min = 0, UINT max = 0);
    /// Calls the window's procedure and gives its result; throws what the handler throws.
    static LRESULT dispatchMessage(const MSG& msg);

    /// All three are the narrow call: text that goes with a message is narrow text. Use setText() and
    /// getTextW(), or the system's own `SendMessageW`, for wide text.
    ///@{
    LRESULT sendMessageA(UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) const;
    LRESULT sendMessageT(UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) const;
    LRESULT sendMessageW(UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) const;
    ///@}
    /// False on failure.
    ///@{
    bool postMessageA(UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) const;
    bool postMessageT(UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) const;
    bool postMessageW(UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) const;
    ///@}

    // ---- From other threads

    /// Any thread may have the window's thread call a function: with the handle (WindowTasks) also when the object may
    /// have died.
    ///@{
    using WindowTasks::call;
    using WindowTasks::post;
    template <std::invocable F> void post(F f) const { post(hwnd_, std::move(f)); }
    template <std::invocable F> auto call(F f) const { return call(hwnd_, std::move(f)); }
    ///@}

    /// The window procedure of all windows made with WindowClass.
    static LRESULT CALLBACK windowProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);

    // ---- Handlers, in the order of their slots. Those that decode no more than is said here do what the
    // message of that name is documented to do; the mouse handlers get signed client coordinates.

    /// Decodes a message and calls its handler; override it for messages that have none.
    virtual LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam);
    /// Runs the default procedure for the message being handled and makes its result the message's.
    /// Outside of a message it does nothing.
    virtual void defaultWindowProc();
    /// `sender` (null for menus and accelerators) lives until the handler returns. By default the control's
    /// own object is asked first, through its onReflectedCommand().
    virtual void onCommand(Window* sender, unsigned short code, unsigned short id);
    /// A notification that this control sent to its parent; true when that settles it.
    virtual bool onReflectedCommand(unsigned short code);
    /// `WM_HSCROLL`, `WM_VSCROLL`: `code` is an `SB_...`, and `position` counts for thumb codes only. `bar` (null for
    /// the window's own bars) lives until the handler returns.
    ///@{
    virtual void onHScroll(Window* bar, unsigned short code, unsigned short position);
    virtual void onVScroll(Window* bar, unsigned short code, unsigned short position);
    ///@}
    /// `WM_DESTROY`: the window is going, its children are still there.
    virtual void onDestroy();
    /// By default routes to the four handlers below and returns 0.
    virtual LRESULT onNotify(const NMHDR& header);
    /// `NM_DBLCLK` of a control.
    virtual void onDoubleClick(const NMHDR& header);
    /// A tree view's notification. Of other structures than `NMTREEVIEW` that some codes of this family
    /// come with, only the header may be used without a cast. By default the tree view's own object is asked
    /// first, then the narrow form is tried for the codes that have this structure.
    virtual void onNotification(const NMTREEVIEWW& notification);
    /// The same notification, its code unchanged, with the texts of the items converted.
    virtual void onNotification(const NMTREEVIEWA& notification);
    /// A list view's notification. Of other structures than `NMLISTVIEW` only the header may be used without a cast.
    virtual void onNotification(const NMLISTVIEW& notification);
    /// The last message of a window; the object is unbound after it.
    virtual void onNCDestroy();
    /// The owner-draw messages `WM_DRAWITEM`, `WM_MEASUREITEM`, `WM_DELETEITEM` and `WM_COMPAREITEM`. By default they
    /// go to the control's own object when it is an OwnerDrawable, else to the default.
    ///@{
    virtual void onDrawItem(UINT id, const DRAWITEMSTRUCT& item);
    virtual void onMeasureItem(UINT id, MEASUREITEMSTRUCT& item);
    virtual void onDeleteItem(UINT id, const DELETEITEMSTRUCT& item);
    virtual OwnerDrawable::compare_result onCompareItem(UINT id, const COMPAREITEMSTRUCT& items);
    ///@}
    /// The mouse messages: `keys` are the `MK_...` that are down.
    virtual void onMouseMove(unsigned short keys, const Point& position);
    /// `delta` is positive away from the user; `position` counts from the screen's corner.
    virtual void onMouseWheel(unsigned short keys, short delta, const Point& position);
    /// The mouse messages: `keys` are the `MK_...` that are down.
    ///@{
    virtual void onLeftButtonDown(unsigned short keys, const Point& position);
    virtual void onLeftButtonUp(unsigned short keys, const Point& position);
    virtual void onLeftButtonDoubleClick(unsigned short keys, const Point& position);
    virtual void onMiddleButtonDown(unsigned short keys, const Point& position);
    virtual void onMiddleButtonUp(unsigned short keys, const Point& position);
    virtual void onMiddleButtonDoubleClick(unsigned short keys, const Point& position);
    virtual void onRightButtonDown(unsigned short keys, const Point& position);
    virtual void onRightButtonUp(unsigned short keys, const Point& position);
    virtual void onRightButtonDoubleClick(unsigned short keys, const Point& position);
    ///@}
    /// `WM_KEYDOWN`, `WM_KEYUP`: `key` is a `VK_...`, `repeat` how often the key has repeated since the last message,
    /// `wasDown` true when it repeats.
    ///@{
    virtual void onKeyDown(UINT key, unsigned short repeat, unsigned char scanCode, bool extended, bool wasDown);
    virtual void onKeyUp(UINT key, unsigned char scanCode, bool extended);
    ///@}
    /// `WM_TIMER`: the `id` is that of startTimer().
    virtual void onTimer(UINT_PTR id);
    /// `WM_PAINT`: make a PaintDeviceContext, or the message comes again and again.
    virtual void onPaint();
    /// `WM_QUERYDRAGICON`: the icon stays the window's.
    virtual HICON onQueryDragIcon();
    /// `WM_SIZE`: `type` is a `SIZE_...`.
    virtual void onSize(UINT type, const Size& clientSize);
    /// `WM_SIZING`, `WM_MOVING`, while the user drags: `edge` is a `WMSZ_...`, and what is written to `rect` (on the
    /// screen) counts.
    ///@{
    virtual void onSizing(UINT edge, Rect& rect);
    virtual void onMoving(Rect& rect);
    ///@}
    /// The coordinates are never negative: left of or above the screen's corner they are 65536 larger. Use
    /// getWindowPosition() when that matters.
    virtual void onMove(const Point& clientPosition);
    /// `WM_ENTERSIZEMOVE`, `WM_EXITSIZEMOVE`: the user begins and ends dragging the window or its edge.
    ///@{
    virtual void onEnterSizeMove();
    virtual void onExitSizeMove();
    ///@}
    /// `WM_DROPFILES`, once acceptDraggedFiles() was called: the full paths, and where in client coordinates.
    virtual void onDroppedFiles(const Point& position, bool inClientArea, const std::list<BasicString<wchar_t>>& files);
    /// Destroys an owned window; a failure to do so and what handlers throw meanwhile are dropped, so call
    /// destroy() to hear of them.
    /// It throws nothing itself, but derived classes may have members whose end does.
    virtual ~Window() noexcept(false);
    /// `WM_CLOSE`: the user wants the window closed, which the default does: destroy() it, or leave it open.
    virtual void onClose();
    /// `WM_CHAR`, which `TranslateMessage` makes of keys: a unit of UTF-16, of which some characters need two.
    virtual void onChar(wchar_t character, unsigned short repeat);
    /// `WM_SETFOCUS`, `WM_KILLFOCUS`: the keys come to this window from now on, or to `other`; null when the other
    /// belongs to another program or thread.
    ///@{
    virtual void onFocusGained(Window* other);
    virtual void onFocusLost(Window* other);
    ///@}
    /// `WM_CONTEXTMENU`: a menu is wanted for `sender`, this window or a child, at a position on the screen, or
    /// (-1, -1) when a key asked for it.
    virtual void onContextMenu(Window* sender, const Point& position);
    /// `WM_SETCURSOR`: the mouse moves in `sender`, this window or a child; `hitTest` is an `HT...`, `mouseMessage`
    /// what it is about. True when this has set the cursor, false lets the next window do so.
    virtual bool onSetCursor(Window* sender, unsigned short hitTest, unsigned short mouseMessage);
    /// `WM_ERASEBKGND`: true when nothing is to be erased any more.
    virtual bool onEraseBackground(const DeviceContext& context);
    /// `WM_MOUSEHWHEEL`: as onMouseWheel(), but that `delta` is positive to the right.
    virtual void onMouseHWheel(unsigned short keys, short delta, const Point& position);
    /// `WM_MOUSELEAVE`, once after each trackMouseLeave().
    virtual void onMouseLeave();
    /// `WM_ACTIVATE`: `state` is `WA_INACTIVE`, `WA_ACTIVE` or `WA_CLICKACTIVE`; `other` as for the focus.
    virtual void onActivate(unsigned short state, bool isMinimised, Window* other);
    /// `WM_SHOWWINDOW`: about to be shown or hidden; `status` is 0 when a call says so, else an `SW_...`.
    virtual void onShow(bool visible, UINT status);
    /// `WM_ENABLE`.
    virtual void onEnable(bool enabled);
    /// `WM_SETTINGCHANGE`: the user or a program has changed what `what`, an `SPI_...`, or `section` stands for. Either
    /// may be missing, 0 or null.
    virtual void onSettingsChanged(UINT what, const wchar_t* section);
    /// `WM_DPICHANGED`: the window has come to a screen with other dots, and should take the place `suggested`. By
    /// default it does; dialogs also adapt their font and controls.
    virtual void onDPIChanged(const DPI& dpi, const Rect& suggested);
    /// `WM_NOTIFY`, for notifications that are answered in their structure (`LVN_GETDISPINFO`) or by the result; by
    /// default the result of onNotify(), which tells of all others.
    virtual LRESULT onNotifyToAnswer(NMHDR& header);
    /// The user has chosen dark or light windows, or a scheme of high contrast, and possibly others than before. It
    /// comes to the windows without a parent, after onSettingsChanged(), and more than once for a change.
    virtual void onColourSchemeChanged(const ColourScheme& scheme);

    // ---- Visibility, position and size

    /// Whether it was visible before.
    bool show(unsigned int command) const;
    /// Whether it was visible before.
    bool hide() const;
    /// Whether the window is minimised.
    bool isIconic() const;
    /// Whether the window's procedure takes wide text.
    bool isUnicode() const;
    /// Whether it was disabled before. Throws "Can't enable window".
    ///@{
    bool enable(bool enabled) const;
    bool enable(unsigned short id, bool enabled) const;
    ///@}

    /// Throws "Can't move window".
    ///@{
    void move(int x, int y, int width, int height, bool repaint) const;
    void move(const RECT& rect, bool repaint) const;
    ///@}
    /// Throws "Can't get client rectangle".
    ///@{
    Rect getClientRectangle() const;
    Size getClientSize() const;
    ///@}
    /// Always (0, 0).
    Point getClientPosition() const;
    /// On the screen. Throws "Can't get window rectangle".
    ///@{
    Rect getWindowRectangle() const;
    Size getWindowSize() const;
    Point getWindowPosition() const;
    ///@}

    /// With the flags of `SetWindowPos`; the shorter forms add the flags for what they leave as it is.
    /// Throw "Error in SetWindowPos".
    ///@{
    void setPosition(HWND after, int x, int y, int width, int height, unsigned flags) const;
    void setPosition(HWND after, const POINT& position, const SIZE& size, unsigned flags) const;
    void setPosition(HWND after, const RECT& rect, unsigned flags) const;
    void setPosition(HWND after, unsigned flags) const;
    void setPosition(const POINT& position, unsigned flags) const;
    void setPosition(const RECT& rect, unsigned flags) const;
    void setPosition(int x, int y, unsigned flags) const;
    ///@}
    /// As setPosition(), with the flag for a position that stays.
    ///@{
    void setSize(const SIZE& size, unsigned flags) const;
    void setSize(int width, int height, unsigned flags) const;
    ///@}

    /// Throws "Can't map point from client to screen".
    Point toScreen(const POINT& point) const;
    /// Throws "Can't map point from screen to client".
    Point fromScreen(const POINT& point) const;

    /// Throws "Can't set window long GWL_STYLE" (sic), as the next ones.
    unsigned long getStyle() const;
    /// Return the style before. The second form clears the bits `remove`, then sets the bits `add`.
    ///@{
    unsigned long setStyle(unsigned long style) const;
    unsigned long setStyle(unsigned long remove, unsigned long add) const;
    ///@}
    /// The same for the `WS_EX_...` bits; throw the same text.
    ///@{
    unsigned long getExtendedStyle() const;
    unsigned long setExtendedStyle(unsigned long style) const;
    unsigned long setExtendedStyle(unsigned long remove, unsigned long add) const;
    ///@}

    // ---- Resolution

    /// Of the screen that the window is on, or what the system makes a program believe that has no manifest for it.
    DPI getDPI() const;
    /// Moves and sizes the controls by what two screens differ in, and gives those with the font `former` (null:
    /// none has to change) the font `next`, which has to live as long as they use it.
    void rescaleControls(const DPI& from, const DPI& to, HFONT former, HFONT next) const;

    // ---- Painting

    /// Throws "Can't invalidate window".
    void invalidate(bool erase) const;
    /// Throws "Can't invalidate window rectangle".
    void invalidate(const RECT& rect, bool erase) const;
    /// Throws "Can't update the window" and what onPaint() throws.
    void update() const;
    /// Null rectangles mean the whole client area. Throw "Can't scroll window".
    ///@{
    void scroll(int dx, int dy, const RECT* scrolled, const RECT* clip) const;
    void scroll(const POINT& distance, const RECT* scrolled, const RECT* clip) const;
    void scroll(const SIZE& distance, const RECT* scrolled, const RECT* clip) const;
    ///@}

    // ---- Text

    /// In narrow characters, for both. Throw "Error in retrieving window text length".
    ///@{
    int getTextLengthA() const;
    int getTextLengthW() const;
    ///@}
    /// Without fetching the text; `id` is that of a dialog item. Throw "Error in retrieving window text length".
    ///@{
    bool hasText() const;
    bool hasText(unsigned short id) const;
    ///@}
    /// Throws "Error in retrieving window text".
    ///@{
    BasicString<char> getTextA() const;
    BasicString<wchar_t> getTextW() const;
    ///@}
    /// Throws "Can't set window text".
    ///@{
    void setText(const char* text) const;
    void setText(const wchar_t* text) const;
    ///@}
    /// Throws "Can't retrieve dialog item text".
    ///@{
    BasicString<char> getTextA(int id) const;
    BasicString<wchar_t> getTextW(int id) const;
    ///@}
    /// Throws "Can't set dialog item text".
    ///@{
    void setText(int id, const char* text) const;
    void setText(int id, const wchar_t* text) const;
    ///@}
    /// Throws "Can't get window class name".
    ///@{
    BasicString<char> getClassNameA() const;
    BasicString<wchar_t> getClassNameW() const;
    ///@}

    // ---- Dialog items

    /// Throws "Can't retrieve control id", also for the id 0.
    int getID() const;
    /// Throws "Can't get dialog item int".
    int getInt(int id) const;
    /// Throws "Can't get dialog item int".
    unsigned getUInt(int id) const;
    /// Throws "Can't set dialog item int".
    void setInt(int id, int value) const;
    /// Throws "Can't set dialog item unsigned int".
    void setInt(int id, unsigned value) const;
    /// Throws "Can't check dialog button".
    ///@{
    void setCheck(int id, check state) const;
    void setCheck(int id, bool isOn) const;
    ///@}
    /// `unchecked` when there is no such item.
    check getCheck(int id) const;
    /// False for `indeterminate`.
    bool isChecked(int id) const;

    // ---- Scroll bars; `bar` is `SB_HORZ`, `SB_VERT` or `SB_CTL`

    /// Throws "Can't change scrollbar arrow state".
    void enableScrollBar(unsigned bar, unsigned arrows) const;
    /// Size and mask of `info` have to be filled in. Throws "Can't get scroll info".
    void getScrollInfo(int bar, SCROLLINFO& info) const;
    /// `mask` is made of `SIF_...`. Throws the same.
    SCROLLINFO getScrollInfo(int bar, unsigned mask) const;
    /// The position that it has now.
    int setScrollInfo(int bar, const SCROLLINFO& info, bool redraw) const;
    /// Throws "Can't show/hide scrollbar".
    void showScrollBar(scroll_bar_type bar, bool visible) const;
    /// The position before. Throws "Can't set scroll position".
    int setScrollPosition(scroll_bar_type bar, int position, bool redraw) const;
    /// Throws "Can't get scroll position".
    int getScrollPosition(scroll_bar_type bar) const;
    /// Throws "Can't set scroll range".
    void setScrollRange(scroll_bar_type bar, int min, int max, bool redraw) const;
    /// In the units of the range. Throws "Can't get scroll info".
    unsigned getScrollPageSize(scroll_bar_type bar) const;
    /// For `control`: whether the window is a scroll bar.
    bool hasScrollBar(scroll_bar_type bar) const;

    // ---- Focus, mouse, timers and the rest. Windows without an object come as temporary objects.

    /// Throws "Can't retrieve parent window". Keep the result in a variable, `const auto parent = child.getParent();`:
    /// a temporary object is gone at the end of the line that only takes its address.
    Pointer<Window> getParent() const;
    /// What had it before. Throws "Can't set focus".
    Pointer<Window> setFocus() const;
    /// What had it before.
    Pointer<Window> captureMouse() const;
    /// Throws "Can't release mouse capture".
    static void releaseMouse();
    /// Null when no window of the thread has captured the mouse.
    static Pointer<Window> getMouseOwner();
    /// onDroppedFiles() tells of them.
    void acceptDraggedFiles(bool accept) const;

    /// Throws "Can't create timer with id ID and interval INTERVAL".
    void startTimer(UINT_PTR id, unsigned int intervalMs) const;
    /// The same, with a function that is called instead of onTimer(), until stopTimer() or the end of the window. Only
    /// for windows that send their messages to this object.
    void startTimer(UINT_PTR id, unsigned int intervalMs, std::function<void()> f);
    /// Throws "Can't stop timer with id ID".
    void stopTimer(UINT_PTR id) const;
    /// Has onMouseLeave() called when the mouse leaves the client area. Throws "Can't track the mouse".
    void trackMouseLeave() const;

    /// What a control shows its text in; it has to live as long as the control uses it.
    void setFont(HFONT font, bool redraw = true) const;
    /// Null for the system's first one, and for windows that draw their texts themselves. Lent, not given.
    HFONT getFont() const;
    /// The icon before. Neither call makes or takes ownership.
    HICON setIcon(HICON icon, bool big) const;
    /// Null when the window was given none. Lent, not given.
    HICON getIcon(icon_size size) const;
    /// A dark title bar or a light one: see ColourScheme. False where the system has none that is dark, before the
    /// Windows 10 of 2020.
    bool setDarkTitleBar(bool isDark) const;

    /// What was pressed, an `ID...` constant. Throws "Can't show message box".
    ///@{
    static int messageBox(HWND owner, const char* text, const char* caption, unsigned type);
    static int messageBox(HWND owner, const wchar_t* text, const wchar_t* caption, unsigned type);
    int messageBox(const char* text, const char* caption, unsigned type) const;
    int messageBox(const wchar_t* text, const wchar_t* caption, unsigned type) const;
    ///@}

    /// Borrowed.
    Menu getMenu() const;
    /// Throws "Error drawing the menu bar".
    void drawMenuBar() const;
    /// At screen coordinates. With `TPM_RETURNCMD` the command chosen, or 0 when none was, which is a failure
    /// only if the system sets an error; without, what was chosen comes as a message, and 0 is always a
    /// failure. Throws "Error tracking popup menu".
    ///@{
    int trackPopupMenu(HMENU menu, int x, int y, unsigned flags) const;
    int trackPopupMenu(HMENU menu, const POINT& position, unsigned flags) const;
    ///@}

protected:
    /// Binds any window, owned or not, without taking over its messages. A null handle unbinds. With the
    /// handle that the object holds already only the ownership changes. Takes nothing but a `bool`, so that
    /// attach(parent, IDOK) means the dialog item.
    template <std::same_as<bool> Owns> void attach(HWND hwnd, Owns owns) { WindowInternals::attach(*this, hwnd, owns); }

    /// Handles a message as if the window had got it, for callbacks of other kinds (a dialog procedure).
    message_result processMessage(UINT msg, WPARAM wParam, LPARAM lParam);
    /// The default procedure (of a subclassed window, its previous one), apart from any message.
    LRESULT defaultWindowProc(UINT msg, WPARAM wParam, LPARAM lParam) const;
    /// Makes the message being handled one that was left to the default.
    void markLastMessageUnhandled();

    /// Throw "Can't set window long GWL_STYLE" (sic), whatever the index and also for reading.
    ///@{
    LONG_PTR getWindowLong(int index) const;
    LONG_PTR setWindowLong(int index, LONG_PTR value) const;
    ///@}

private:
    friend class Dialog;
    friend struct detail::WindowTaskQueue;

    // Derived classes would find the names of private members in place of the program's own functions and classes. So
    // these are together behind a name that no program has.
    struct WindowInternals {
        struct MessageRecord {
            LRESULT result;
            bool handled;
            UINT msg;
            WPARAM wParam;
            LPARAM lParam;
        };
        using MessageStack =
            boost::container::deque<MessageRecord, void,
                                    boost::container::deque_options_t<boost::container::block_size<204u>>>;
        class Watch;
        class ActiveMessage;

        static bool getMessage(MSG& msg, HWND hwnd, UINT min, UINT max);
        static Window* find(HWND hwnd);
        static Window* enter(HWND hwnd, Window* window);
        static void leave(HWND hwnd);
        static bool runTask(HWND hwnd, UINT msg, WPARAM number);
        static bool runTimerFunction(Window& window, UINT_PTR id);
        static Window* bindCreated(HWND hwnd, LPARAM lParam);
        static LRESULT route(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
        template <class Ch>
        static void createWindow(Window& window, const Ch* className, const Ch* title, unsigned long style,
                                 const RECT& rect, HWND parent, HMENU menu, HINSTANCE instance,
                                 unsigned long extendedStyle);
        TARN_API static void attach(Window& window, HWND hwnd, bool owns);
        static void bind(Window& window, HWND hwnd);
        static void unbind(Window& window);
        static void restoreProcedure(Window& window);
        static bool isBound(const Window& window);
        static void forget(Window& window);
        static void destroyForNext(Window& window, const char* failed);
        static void destroyQuietly(HWND hwnd) noexcept;
        static void endOfWindow(Window& window, HWND hwnd);
        static void takeOverCreated(Window& window);
        static void reportDroppedFiles(Window& window, WPARAM drop);
        static void reportSettings(Window& window, UINT what, const wchar_t* section);
    };

    static std::map<HWND, Window*> WindowMap;

    HWND hwnd_ = nullptr;
    bool owns_ = false;
    bool listens_ = false; // Whether the messages of the window come to this object.
    WNDPROC previousProc_ = nullptr;
    WindowInternals::MessageStack messages_;
    // Shared with the call of one that stops itself.
    mutable std::map<UINT_PTR, std::shared_ptr<std::function<void()>>> timers_;
    // The innermost of the calls in progress that must notice the object's death.
    WindowInternals::Watch* watch_ = nullptr;
};

/// Throws "Can't insert menu item".
TARN_API void insertMenu(HMENU menu, unsigned position, unsigned flags, UINT_PTR id, const char* text);
/// Throws "Can't set menu bitmaps".
TARN_API void setMenuItemBitmaps(HMENU menu, unsigned position, unsigned flags, HBITMAP unchecked, HBITMAP checked);
} // namespace tarn
