#include "Campaign.h"

#include <tarn/AccessibleItems.h>
#include <tarn/COMInterfacePointer.h>
#include <tarn/ComboBox.h>
#include <tarn/DragDrop.h>
#include <tarn/Font.h>
#include <tarn/ImageList.h>
#include <tarn/Label.h>
#include <tarn/ListView.h>
#include <tarn/Menu.h>
#include <tarn/MessageLoop.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/Rect.h>
#include <tarn/TrayIcon.h>
#include <tarn/TreeView.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <chrono>
#include <exception>
#include <future>
#include <string>
#include <thread>

namespace failures {
namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);
const tarn::Rect place(900, 700, 1100, 800); // Where no test beside this one has its windows.

// The guide's own pattern: the class is a member, and the constructor makes the window.
class Painted : public tarn::Window {
public:
    Painted() : class_(0, 0, nullptr, COLOR_WINDOW, LoadCursorW(nullptr, IDC_ARROW), program)
    {
        create(class_, L"Painted", WS_OVERLAPPEDWINDOW, place, nullptr, nullptr, program);
        startTimer(1, 10000);
    }
    ~Painted() override { destroy(); }

    void onPaint() override
    {
        const tarn::PaintDeviceContext context(*this);
        context.drawText(5, 5, L"painted");
    }
    void onDestroy() override { PostQuitMessage(0); }

private:
    tarn::WindowClass class_;
};

void showWindow(const WorkPlace&)
{
    drainMessages();
    Painted window;
    window.show(SW_SHOW);
    window.setText("Another title");
    expect(window.getTextW() == L"Another title", "another title");
    window.move(910, 710, 300, 200, true);
    expect(window.getWindowSize().cx == 300, "another size");
    window.update();
    expect(window.postMessageW(WM_CLOSE), "not posted");
    tarn::runMessageLoop();
}

void workControls(const WorkPlace&)
{
    Painted window;
    tarn::ListView list;
    list.create(window, tarn::Rect(0, 0, 100, 50), LVS_REPORT, program);
    list.insertColumn(0, L"Name", 50);
    const auto item = static_cast<unsigned>(list.insertItem(L"first"));
    list.setItemText(item, "changed");
    expect(list.getItemTextA(item, 0) == "changed", "another text");
    tarn::ComboBox combo;
    combo.create(L"COMBOBOX", L"", WS_CHILD | CBS_DROPDOWNLIST, tarn::Rect(0, 60, 100, 160), window, nullptr, program);
    combo.addString("one");
    combo.setItemData(0, &combo);
    expect(combo.getItemData(0) == &combo, "other data");
}

void takeMessages(const WorkPlace&)
{
    drainMessages();
    const Painted window;
    expect(window.postMessageA(WM_APP, 7, 0), "not posted");
    MSG msg;
    expect(window.getMessage(msg, WM_APP, WM_APP) && msg.wParam == 7, "another message");
    PostThreadMessageW(GetCurrentThreadId(), WM_APP + 1, 8, 0);
    expect(tarn::Window::getThreadMessage(msg, WM_APP + 1, WM_APP + 1) && msg.wParam == 8, "another message");
}

void useMenu(const WorkPlace&)
{
    tarn::Menu bar(false), popup(true);
    popup.insert(L"Save", 0, MF_BYPOSITION | MF_STRING, 7);
    popup.insertSeparator();
    popup.setItemState(tarn::Menu::grayed, 7, false);
    bar.insert("File", 0, MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(HMENU(popup)));
    popup = tarn::Menu(); // The bar's from now on.
    const tarn::Menu found = bar.getSubMenu(0);
    expect(found, "no submenu");
    expect(found.getItemID(0) == 7, "another item");
    tarn::Menu::ItemInfo info;
    bar.getItemInfo(info, 0, true);
    expect(info.text == L"File", "another text");
    bar.close();
}

void scrollAndFocus(const WorkPlace&)
{
    drainMessages();
    Painted window;
    window.show(SW_SHOW);
    window.setStyle(0, WS_VSCROLL);
    window.setScrollRange(tarn::Window::vertical, 0, 100, false);
    window.setScrollPosition(tarn::Window::vertical, 7, false);
    expect(window.getScrollPosition(tarn::Window::vertical) == 7, "another position");
    SCROLLINFO info = window.getScrollInfo(SB_VERT, SIF_ALL);
    info.nPage = 10;
    window.setScrollInfo(SB_VERT, info, false);
    window.enableScrollBar(SB_VERT, ESB_DISABLE_BOTH);
    window.showScrollBar(tarn::Window::vertical, false);
    window.setPosition(nullptr, tarn::Rect(910, 710, 1010, 810), SWP_NOZORDER);
    expect(window.getClientSize().cx > 0, "no size");
    window.scroll(0, 5, nullptr, nullptr);
    window.invalidate(true);
    expect(window.fromScreen(window.toScreen(POINT{3, 4})).x == 3, "another point");
    expect(window.getClassNameW().startsWith(L"Tarn++"), "another class");
    window.captureMouse();
    tarn::Window::releaseMouse();
    tarn::Window child;
    child.create("STATIC", "child", WS_CHILD, tarn::Rect(0, 0, 10, 10), window, nullptr, program);
    expect(child.getParent()->getWindowHandle() == window.getWindowHandle(), "another parent");
    child.enable(false);
    expect(child.getTextA() == "child", "another text");
    window.stopTimer(1);
}

void workTree(const WorkPlace&)
{
    Painted window;
    tarn::TreeView tree;
    tree.create(window, 7, tarn::Rect(0, 0, 100, 100), TVS_HASLINES);
    const HTREEITEM root = tree.insertItem(L"root");
    tree.insertItem("below", root);
    tree.expand(root, TVE_EXPAND);
    expect(tree.getItemTextW(tree.getFirstChild(root)) == L"below", "another text");
    constexpr int systemPicture = 32754;
    tarn::ImageList images(systemPicture, tarn::ImageList::bitmap, 8, CLR_NONE, LR_SHARED, nullptr);
    const HIMAGELIST former = tree.setImageList(images, tarn::TreeView::normal);
    tree.setImageList(former, tarn::TreeView::normal);
    images.destroy();
}

// Another thread posts and calls, and this one handles messages until it is over.
void postAndCall(const WorkPlace&)
{
    drainMessages();
    const Painted window;
    std::string calls;
    std::promise<void> over;
    auto outcome = over.get_future();
    const DWORD handling = GetCurrentThreadId();
    std::jthread other([&, hwnd = window.getWindowHandle()] {
        try {
            tarn::Window::post(hwnd, [&] { calls += 'a'; });
            expect(tarn::Window::call(hwnd, [&] { return calls += 'b'; }) == "ab", "called otherwise");
            over.set_value();
        } catch (...) {
            over.set_exception(std::current_exception());
        }
        PostThreadMessageW(handling, WM_NULL, 0, 0);
    });
    std::exception_ptr handlers; // Thrown when the other thread waits no more.
    MSG msg;
    while (outcome.wait_for(std::chrono::seconds(0)) != std::future_status::ready && GetMessageW(&msg, nullptr, 0, 0)) {
        try {
            tarn::Window::dispatchMessage(msg);
        } catch (...) {
            handlers = std::current_exception();
        }
    }
    outcome.get();
    if (handlers)
        std::rethrow_exception(handlers);
}

void createByIds(const WorkPlace&)
{
    const Painted window;
    tarn::Label label;
    label.create(window, 8, place, L"Name");
    expect(window.getTextA(8) == "Name", "another text");
    const tarn::Font font = tarn::Font::ofSystem(window.getDPI());
    label.setFont(font);
    expect(label.getFont() == font, "another font");
    label.setFont(nullptr);
}

void showTrayIcon(const WorkPlace&)
{
    drainMessages();
    tarn::TrayIcon icon;
    icon.create(32512, nullptr, "Campaign");
    expect(icon.isShown(), "not shown");
    icon.setTip(L"Changed");
    icon.showNotice("Title", "Text");
    icon.hideNotice();
    icon.destroy();
}

struct Taker : Painted, tarn::DropTarget {
    Taker()
    {
        SetWindowPos(*this, HWND_TOPMOST, place.left, place.top, 100, 100, SWP_SHOWWINDOW);
        SetCursorPos(place.left + 50, place.top + 50);
        begin(*this);
    }
    unsigned long onDrop(const tarn::DraggedData& data, unsigned long, const tarn::Point&, unsigned long) override
    {
        text = data.getText().value_or(L"");
        files = data.getFiles();
        return DROPEFFECT_COPY;
    }
    tarn::BasicString<wchar_t> text;
    std::vector<tarn::BasicString<wchar_t>> files;
};

// No button is down, so that it is dropped at once.
void dragAndDrop(const WorkPlace&)
{
    drainMessages();
    Taker taker;
    tarn::DragData data;
    data.setText(L"dragged");
    data.setFiles(std::vector<tarn::BasicString<wchar_t>>{L"C:\\dragged.txt"});
    expect(data.drag() == DROPEFFECT_COPY, "another effect");
    expect(taker.text == L"dragged" && taker.files.size() == 1, "other data");
}

struct Dice : Painted, tarn::AccessibleItems {
    Dice() { begin(*this); }
    int getItemCount() const override { return 1; }
    Item getItem(int) const override { return {L"six", ROLE_SYSTEM_STATICTEXT, 0, tarn::Rect(0, 0, 9, 9), L"Roll"}; }
};

// Under Wine each question of another one for the object leaks some memory: one window answers all.
IAccessible* askedOf(HWND window)
{
    tarn::COMInterfacePointer<IAccessible> object;
    AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), object.putVoid());
    return object.detach();
}

void askAccessibleItems(const WorkPlace&)
{
    static const auto* const asked = new Dice;
    static IAccessible* const object = askedOf(*asked);
    Dice().tell(EVENT_OBJECT_FOCUS, 0);
    VARIANT item{};
    item.vt = VT_I4;
    item.lVal = 1;
    BSTR name = nullptr;
    object->get_accName(item, &name);
    expect(name && name == std::wstring(L"six"), "another name");
    SysFreeString(name);
    LONG left = 0, top = 0, width = 0, height = 0;
    expect(object->accLocation(&left, &top, &width, &height, item) == S_OK && width == 9, "another place");
    expect(object->accHitTest(left, top, &item) == S_OK && item.lVal == 1, "another item");
}
} // namespace

std::vector<Scenario> windowScenarios()
{
    return {{"window", showWindow},
            {"controls", workControls},
            {"tree", workTree},
            {"scrolling and focus", scrollAndFocus},
            {"messages", takeMessages},
            {"menu", useMenu},
            {"tasks", postAndCall},
            {"labels", createByIds},
            {"tray icon", showTrayIcon},
            {"drag and drop", dragAndDrop},
            {"accessible items", askAccessibleItems}};
}
} // namespace failures
