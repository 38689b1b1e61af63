#include "Windows.h"

#include <tarn/DeviceContext.h>
#include <tarn/TreeView.h>

#include <shlobj.h>

#include <sstream>

namespace {
using Word = unsigned short;

/// Writes down each handler that runs, with what it got.
class Recorder : public Window {
public:
    Recorder() { open(*this), log_.clear(); }

    std::string take() { return std::exchange(log_, {}); }

    bool callDefault = false;

    void onCommand(Window* sender, Word code, Word id) override { log("command", sender, code, id); }
    void onHScroll(Window* bar, Word code, Word position) override { log("hscroll", bar, code, position); }
    void onVScroll(Window* bar, Word code, Word position) override { log("vscroll", bar, code, position); }
    void onMouseMove(Word keys, const Point& at) override { log("move", keys, at); }
    void onMouseWheel(Word keys, short delta, const Point& at) override { log("wheel", keys, delta, at); }
    void onLeftButtonDown(Word keys, const Point& at) override { log("left down", keys, at); }
    void onLeftButtonUp(Word keys, const Point& at) override { log("left up", keys, at); }
    void onLeftButtonDoubleClick(Word keys, const Point& at) override { log("left double", keys, at); }
    void onMiddleButtonDown(Word keys, const Point& at) override { log("middle down", keys, at); }
    void onMiddleButtonUp(Word keys, const Point& at) override { log("middle up", keys, at); }
    void onMiddleButtonDoubleClick(Word keys, const Point& at) override { log("middle double", keys, at); }
    void onRightButtonDown(Word keys, const Point& at) override { log("right down", keys, at); }
    void onRightButtonUp(Word keys, const Point& at) override { log("right up", keys, at); }
    void onRightButtonDoubleClick(Word keys, const Point& at) override { log("right double", keys, at); }
    void onKeyDown(UINT key, Word repeat, unsigned char scanCode, bool extended, bool wasDown) override
    {
        log("key down", key, repeat, +scanCode, extended, wasDown);
    }
    void onKeyUp(UINT key, unsigned char scanCode, bool extended) override { log("key up", key, +scanCode, extended); }
    void onTimer(UINT_PTR id) override { log("timer", id); }
    void onClose() override { log("close"); }
    void onChar(wchar_t character, Word repeat) override { log("char", int(character), repeat); }
    void onFocusGained(Window* other) override { log("focus", other); }
    void onFocusLost(Window* other) override { log("no focus", other); }
    void onContextMenu(Window* sender, const Point& at) override { log("menu", sender, at); }
    bool onSetCursor(Window* sender, Word hit, Word mouse) override { return log("cursor", sender, hit, mouse), true; }
    bool onEraseBackground(const DeviceContext& to) override { return log("erase", to.getHandle() != nullptr), true; }
    void onMouseHWheel(Word keys, short delta, const Point& at) override { log("hwheel", keys, delta, at); }
    void onMouseLeave() override { log("leave"); }
    void onActivate(Word state, bool small, Window* other) override { log("activate", state, small, other); }
    void onShow(bool visible, UINT status) override { log("show", visible, status); }
    void onEnable(bool enabled) override { log("enable", enabled); }
    void onSettingsChanged(UINT what, const wchar_t* section) override
    {
        log("settings", what, section ? BasicString<char>(section) : "none");
    }
    void onDPIChanged(const DPI& dpi, const Rect& at) override { log("dpi", dpi.getDots(), at.left, at.bottom); }
    void onPaint() override { log("paint"), defaultWindowProc(); }
    HICON onQueryDragIcon() override { return log("icon"), reinterpret_cast<HICON>(77); }
    void onSize(UINT type, const Size& size) override { log("size", type, size.cx, size.cy); }
    void onSizing(UINT edge, Rect& rect) override { change("sizing", edge, rect); }
    void onMoving(Rect& rect) override { change("moving", 0, rect); }
    void onMove(const Point& at) override { log("moved", at); }
    void onEnterSizeMove() override { log("enter"); }
    void onExitSizeMove() override { log("exit"); }
    void onDrawItem(UINT id, const DRAWITEMSTRUCT& item) override { log("draw", id, item.itemID); }
    void onMeasureItem(UINT id, MEASUREITEMSTRUCT& item) override { log("measure", id, item.itemID); }
    void onDeleteItem(UINT id, const DELETEITEMSTRUCT& item) override { log("delete", id, item.itemID); }
    OwnerDrawable::compare_result onCompareItem(UINT id, const COMPAREITEMSTRUCT& items) override
    {
        return log("compare", id, items.itemID1), OwnerDrawable::less;
    }
    void onDoubleClick(const NMHDR& header) override { log("double click", header.idFrom); }
    void onNotification(const NMLISTVIEW& n) override { log("list view", n.iItem); }
    void onNotification(const NMTREEVIEWW& n) override { log("wide tree", n.action), Window::onNotification(n); }
    void onNotification(const NMTREEVIEWA& n) override
    {
        const TVITEMA& item = n.itemOld;
        log("narrow tree", item.pszText ? item.pszText : "-", n.itemNew.pszText == LPSTR_TEXTCALLBACKA, n.ptDrag.x,
            item.state, item.stateMask, item.cchTextMax, item.iImage, item.iSelectedImage, item.cChildren, item.lParam);
    }
    void onDroppedFiles(const Point& at, bool inClientArea, const std::list<BasicString<wchar_t>>& files) override
    {
        log("files", at, inClientArea, files.size(), BasicString<char>(files.front().c_str()), files.back().size());
    }

private:
    void change(const char* what, UINT edge, Rect& rect)
    {
        log(what, edge, rect.right);
        rect.right = 500;
        if (callDefault)
            defaultWindowProc();
    }

    template <class... Values> void log(const char* what, const Values&... values)
    {
        std::ostringstream text;
        text << what;
        (show(text << ' ', values), ...);
        log_ += text.str() + ";";
    }
    template <class T> static void show(std::ostream& out, const T& value) { out << value; }
    static void show(std::ostream& out, const Point& point) { out << point.x << ',' << point.y; }
    static void show(std::ostream& out, Window* window)
    {
        if (window)
            out << (getWindowFromHandle(*window, false) ? "bound" : "temporary") << ' ' << window->getID();
        else
            out << "none";
    }

    std::string log_;
};

LPARAM packed(int low, int high) { return MAKELPARAM(low, high); }

template <class T> LPARAM at(T& structure) { return reinterpret_cast<LPARAM>(&structure); }
} // namespace

TEST_CASE("Window: the values packed into a message reach its handler")
{
    struct Row {
        UINT msg;
        WPARAM wParam;
        LPARAM lParam;
        const char* expected;
    };
    const RECT suggested{5, 6, 70, 90};
    const Row rows[] = {
        {WM_MOVE, 0, packed(-5, 7), "moved 65531,7;"},
        {WM_SIZE, SIZE_MAXIMIZED, packed(40000, 300), "size 2 40000 300;"},
        {WM_MOUSEMOVE, 0x10009, packed(-5, -7), "move 9 -5,-7;"},
        {WM_LBUTTONDOWN, 1, packed(3, -4), "left down 1 3,-4;"},
        {WM_LBUTTONUP, 1, packed(3, -4), "left up 1 3,-4;"},
        {WM_LBUTTONDBLCLK, 1, packed(3, -4), "left double 1 3,-4;"},
        {WM_MBUTTONDOWN, 1, packed(3, -4), "middle down 1 3,-4;"},
        {WM_MBUTTONUP, 1, packed(3, -4), "middle up 1 3,-4;"},
        {WM_MBUTTONDBLCLK, 1, packed(3, -4), "middle double 1 3,-4;"},
        {WM_RBUTTONDOWN, 1, packed(3, -4), "right down 1 3,-4;"},
        {WM_RBUTTONUP, 1, packed(3, -4), "right up 1 3,-4;"},
        {WM_RBUTTONDBLCLK, 1, packed(3, -4), "right double 1 3,-4;"},
        {WM_MOUSEWHEEL, MAKEWPARAM(8, -120), packed(-1, 2), "wheel 8 -120 -1,2;"},
        {WM_KEYDOWN, VK_RETURN, 0x411C0003, "key down 13 3 28 1 1;"},
        {WM_KEYDOWN, 'A', 0x001E0001, "key down 65 1 30 0 0;"},
        {WM_KEYUP, VK_RETURN, 0x011C0001, "key up 13 28 1;"},
        {WM_TIMER, 70000, 0, "timer 70000;"},
        {WM_COMMAND, MAKEWPARAM(65535, 40000), 0, "command none 40000 65535;"},
        {WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 65000), 0, "hscroll none 5 65000;"},
        {WM_VSCROLL, MAKEWPARAM(SB_LINEDOWN, 1), 0, "vscroll none 1 1;"},
        {WM_ENTERSIZEMOVE, 0, 0, "enter;"},
        {WM_EXITSIZEMOVE, 0, 0, "exit;"},
        {WM_PAINT, 0, 0, "paint;"},
        {WM_CHAR, 0x80, 0x001E0003, "char 8364 3;"},
        {WM_SETFOCUS, 0, 0, "focus none;"},
        {WM_KILLFOCUS, 0, 0, "no focus none;"},
        {WM_CONTEXTMENU, 0, packed(-1, -1), "menu none -1,-1;"},
        {WM_MOUSEHWHEEL, MAKEWPARAM(8, -120), packed(-1, 2), "hwheel 8 -120 -1,2;"},
        {WM_MOUSELEAVE, 0, 0, "leave;"},
        {WM_ACTIVATE, MAKEWPARAM(WA_CLICKACTIVE, 1), 0, "activate 2 1 none;"},
        {WM_SHOWWINDOW, TRUE, SW_PARENTOPENING, "show 1 3;"},
        {WM_ENABLE, TRUE, 0, "enable 1;"},
        {WM_SETTINGCHANGE, SPI_SETMOUSE, 0, "settings 4 none;"},
        {WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>("intl"), "settings 0 intl;"},
        {WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested), "dpi 144 5 90;"},
        {WM_CLOSE, 0, 0, "close;"},
    };
    struct : Window {
        using Window::processMessage;
    } plain; // Whose handlers leave all to the default, but for the place on a new screen.
    Recorder window;
    plain.create(testClass(), "", WS_CHILD, Rect(), window, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(5)), nullptr);
    for (const Row& row : rows) {
        CAPTURE(getWMIdentifier(row.msg));
        CHECK(plain.processMessage(row.msg, row.wParam, row.lParam).handled == (row.msg == WM_DPICHANGED));
        window.take(); // What the default has told the parent.
        CHECK(window.sendMessageA(row.msg, row.wParam, row.lParam) == 0);
        CHECK(window.take() == row.expected);
    }
    CHECK(!plain.isOpen()); // By WM_CLOSE.
    CHECK(window.sendMessageA(WM_QUERYDRAGICON) == 77);
    CHECK(window.take() == "icon;");
    CHECK(window.sendMessageA(WM_SETCURSOR, 0, packed(HTCLIENT, WM_MOUSEMOVE)) == TRUE);
    CHECK(window.sendMessageA(WM_ERASEBKGND, 1, 0) == TRUE);
    CHECK(window.take() == "cursor none 1 512;erase 1;");
}

TEST_CASE("Window: a control comes to the handler as its object, or as a temporary one")
{
    Recorder window;
    const HWND button = makeButton(window, 300);
    window.take();
    Window attached;
    const std::string kind = GENERATE("temporary", "bound");
    if (kind == "bound")
        attached.attach(window, 300);
    const auto answers = [&](UINT msg, WPARAM wParam, const char* before, const char* after) {
        window.sendMessageA(msg, wParam, reinterpret_cast<LPARAM>(button));
        CHECK(window.take() == before + kind + after);
    };
    answers(WM_COMMAND, MAKEWPARAM(300, BN_CLICKED), "command ", " 300 0 300;");
    answers(WM_HSCROLL, SB_ENDSCROLL, "hscroll ", " 300 8 0;");
    answers(WM_VSCROLL, SB_ENDSCROLL, "vscroll ", " 300 8 0;");
}

TEST_CASE("Window: a notification is answered in its structure and by the result")
{
    struct Answering : Window {
        LRESULT onNotifyToAnswer(NMHDR& header) override
        {
            if (header.code != LVN_GETDISPINFOW)
                return Window::onNotifyToAnswer(header);
            reinterpret_cast<NMLVDISPINFOW&>(header).item.iImage = 7;
            return 3;
        }
        LRESULT onNotify(const NMHDR&) override { return 4; }
    } window;
    open(window);
    NMLVDISPINFOW info{};
    info.hdr.code = LVN_GETDISPINFOW;
    CHECK(window.sendMessageA(WM_NOTIFY, 0, at(info)) == 3);
    CHECK(info.item.iImage == 7);
    info.hdr.code = NM_CLICK;
    CHECK(window.sendMessageA(WM_NOTIFY, 0, at(info)) == 4);
}

namespace {
/// The structures of the owner-draw messages, about the item 4 of a control.
struct Items {
    explicit Items(HWND control = nullptr)
    {
        draw.hwndItem = deleted.hwndItem = compared.hwndItem = control;
        draw.itemID = measure.itemID = deleted.itemID = compared.itemID1 = 4;
        measure.CtlType = ODT_BUTTON;
        measure.CtlID = 9;
    }
    /// Sends all; gives what the comparison answers.
    LRESULT sendTo(const Window& window)
    {
        CHECK(window.sendMessageA(WM_DRAWITEM, 9, at(draw)) == TRUE);
        CHECK(window.sendMessageA(WM_MEASUREITEM, 9, at(measure)) == TRUE);
        CHECK(window.sendMessageA(WM_DELETEITEM, 9, at(deleted)) == TRUE);
        return window.sendMessageA(WM_COMPAREITEM, 9, at(compared));
    }

    DRAWITEMSTRUCT draw{};
    MEASUREITEMSTRUCT measure{};
    DELETEITEMSTRUCT deleted{};
    COMPAREITEMSTRUCT compared{};
};
} // namespace

TEST_CASE("Window: owner-draw and sizing messages answer TRUE once they are handled")
{
    Recorder window;
    CHECK(Items().sendTo(window) == OwnerDrawable::less);
    CHECK(window.take() == "draw 9 4;measure 9 4;delete 9 4;compare 9 4;");

    Rect rect(0, 0, 100, 50);
    CHECK(window.sendMessageA(WM_SIZING, WMSZ_RIGHT, at(rect)) == TRUE);
    CHECK(rect.right == 500);
    CHECK(window.sendMessageA(WM_MOVING, 0, at(rect)) == TRUE);
    window.callDefault = true;
    CHECK(window.sendMessageA(WM_SIZING, WMSZ_RIGHT, at(rect)) ==
          DefWindowProcW(window, WM_SIZING, WMSZ_RIGHT, at(rect)));
    CHECK(window.take() == "sizing 2 100;moving 0 500;sizing 2 500;");
}

TEST_CASE("Window: notifications are routed by the range of their code")
{
    Recorder window;
    const auto notify = [&](auto& structure, int code) {
        auto& header = reinterpret_cast<NMHDR&>(structure);
        header.code = static_cast<UINT>(code);
        header.idFrom = 12;
        CHECK(window.sendMessageA(WM_NOTIFY, 12, at(structure)) == 0);
        return window.take();
    };
    NMLISTVIEW list{};
    list.iItem = 3;
    for (const int code : {-100, -199})
        CHECK(notify(list, code) == "list view 3;");
    CHECK(notify(list, NM_DBLCLK) == "double click 12;");
    for (const int code : {-99, -200, -399, -500})
        CHECK(notify(list, code) == "");

    wchar_t text[] = L"\u20ac leaf";
    char narrowText[] = "\x80 leaf";
    NMTREEVIEWW tree{};
    tree.action = 2;
    tree.ptDrag.x = 9;
    tree.itemOld = {TVIF_TEXT, nullptr, 1, 2, text, 3, 4, 5, 6, 7};
    tree.itemNew.mask = TVIF_TEXT;
    tree.itemNew.pszText = LPSTR_TEXTCALLBACKW;
    for (const UINT code : {TVN_SELCHANGINGW, TVN_SELCHANGEDW, TVN_ITEMEXPANDINGW, TVN_ITEMEXPANDEDW, TVN_BEGINDRAGW,
                            TVN_BEGINRDRAGW, TVN_DELETEITEMW, TVN_SINGLEEXPAND})
        CHECK(notify(tree, static_cast<int>(code)) == "wide tree 2;narrow tree \x80 leaf 1 9 1 2 3 4 5 6 7;");
    tree.itemOld.pszText = reinterpret_cast<wchar_t*>(narrowText); // As a narrow control has it.
    for (const UINT code : {TVN_SELCHANGINGA, TVN_SELCHANGEDA, TVN_ITEMEXPANDINGA, TVN_ITEMEXPANDEDA, TVN_BEGINDRAGA,
                            TVN_BEGINRDRAGA, TVN_DELETEITEMA})
        CHECK(notify(tree, static_cast<int>(code)) == "wide tree 2;narrow tree \x80 leaf 1 9 1 2 3 4 5 6 7;");
    tree.itemOld = {};
    CHECK(notify(tree, static_cast<int>(TVN_DELETEITEMW)) == "wide tree 2;narrow tree - 1 9 0 0 0 0 0 0 0;");
    // The structure of these begins with the header only.
    for (const int code : {static_cast<int>(TVN_GETDISPINFOW), -400, -499})
        CHECK(notify(tree, code) == "wide tree 2;");
}

TEST_CASE("Window: dropped files are listed with their point and released")
{
    Recorder window;
    const std::wstring names = L"C:\\a.txt" + std::wstring(1, L'\0') + std::wstring(700, L'n') + std::wstring(2, L'\0');
    const HGLOBAL memory =
        GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + names.size() * sizeof(wchar_t));
    auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
    *drop = {sizeof(DROPFILES), {4, 5}, FALSE, TRUE};
    std::memcpy(drop + 1, names.data(), names.size() * sizeof(wchar_t));
    GlobalUnlock(memory);
    window.sendMessageA(WM_DROPFILES, reinterpret_cast<WPARAM>(memory));
    CHECK(window.take() == "files 4,5 1 2 C:\\a.txt 700;");
    CHECK(GlobalFlags(memory) == GMEM_INVALID_HANDLE);
}

namespace {
class DrawnButton : public Window, public OwnerDrawable {
public:
    void onDrawItem(const DRAWITEMSTRUCT&) override { calls += "draw "; }
    void onMeasureItem(MEASUREITEMSTRUCT& item) override { item.itemHeight = 33; }
    void onDeleteItem(const DELETEITEMSTRUCT&) override { calls += "delete "; }
    OwnerDrawable::compare_result onCompareItem(const COMPAREITEMSTRUCT&) override { return OwnerDrawable::greater; }
    bool onReflectedCommand(Word code) override { return calls += "command " + std::to_string(code), true; }
    // The handlers of the messages that it gets itself as a parent.
    using Window::onCompareItem;
    using Window::onDeleteItem;
    using Window::onDrawItem;
    using Window::onMeasureItem;

    std::string calls;
};

class Tree : public TreeView {
public:
    bool onReflectedNotification(const NMTREEVIEWA&) override { return ++narrow, true; }
    bool onReflectedNotification(const NMTREEVIEWW&) override { return ++wide, settles; }

    bool settles = false;
    int narrow = 0, wide = 0;
};
} // namespace

TEST_CASE("Window: by default a parent passes its controls' messages back to their objects")
{
    OpenWindow parent;
    Items items(makeButton(parent, 9, BS_OWNERDRAW));
    DrawnButton button;
    button.attach(parent, 9);
    CHECK(items.sendTo(parent) == OwnerDrawable::greater);
    parent.sendMessageA(WM_COMMAND, MAKEWPARAM(9, BN_DBLCLK), reinterpret_cast<LPARAM>(button.getWindowHandle()));
    CHECK((button.calls == "draw delete command 5" && items.measure.itemHeight == 33));

    items = Items();
    items.measure.CtlType = ODT_MENU; // Menus have no control: the id says nothing.
    const auto isLeftToDefault = [&](UINT msg, auto& item) {
        CHECK(parent.sendMessageA(msg, 9, at(item)) == DefWindowProcW(parent, msg, 9, at(item)));
    };
    isLeftToDefault(WM_DRAWITEM, items.draw);
    isLeftToDefault(WM_MEASUREITEM, items.measure);
    isLeftToDefault(WM_DELETEITEM, items.deleted);
    isLeftToDefault(WM_COMPAREITEM, items.compared);
    CHECK((button.calls == "draw delete command 5" && items.measure.itemHeight == 0));
}

TEST_CASE("Window: a tree view's object is asked before its parent's narrow handler")
{
    Recorder parent;
    makeButton(parent, 6);
    Tree tree;
    tree.attach(parent, 6);
    parent.take();
    NMTREEVIEWW notification{};
    notification.hdr = {tree, 6, TVN_SELCHANGEDW};
    parent.sendMessageA(WM_NOTIFY, 6, at(notification));
    CHECK(parent.take() == "wide tree 0;narrow tree - 0 0 0 0 0 0 0 0 0;");
    CHECK((tree.wide == 1 && tree.narrow == 0)); // The recorder's narrow handler did not pass it on.
    tree.settles = true;
    parent.sendMessageA(WM_NOTIFY, 6, at(notification));
    CHECK(parent.take() == "wide tree 0;");
}
