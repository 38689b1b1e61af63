#include "Campaign.h"

#include <tarn/Bitmap.h>
#include <tarn/ComboBox.h>
#include <tarn/Dialog.h>
#include <tarn/EditControl.h>
#include <tarn/ListView.h>
#include <tarn/Menu.h>
#include <tarn/MessageLoop.h>
#include <tarn/PaintDeviceContext.h>
#include <tarn/PropertyPage.h>
#include <tarn/PropertySheet.h>
#include <tarn/Rect.h>
#include <tarn/TreeView.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <cwchar>

namespace failures {
namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

// The guide's own pattern: the class is a member, and the constructor makes the window.
class Painted : public tarn::Window {
public:
    Painted() : class_(0, 0, nullptr, COLOR_WINDOW, LoadCursorW(nullptr, IDC_ARROW), program)
    {
        create(class_, L"Painted", WS_OVERLAPPEDWINDOW, tarn::Rect(10, 10, 210, 110), nullptr, nullptr, program);
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

// The next scenario finds no message of this one.
void drainMessages()
{
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE))
        continue;
}

void showWindow(const WorkPlace&)
{
    drainMessages();
    Painted window;
    window.show(SW_SHOW);
    window.setText("Another title");
    expect(window.getTextW() == L"Another title", "another title");
    window.move(20, 20, 300, 200, true);
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

constexpr unsigned short questionDialog = 100, questionField = 101;

struct Question : tarn::Dialog {
    Question() : Dialog(questionDialog, program) {}
    bool onInitDialog(tarn::Window&) override
    {
        setText(questionField, "36");
        expect(postMessageA(WM_COMMAND, IDOK), "not posted");
        return true;
    }
    void onCommand(tarn::Window* sender, unsigned short code, unsigned short id) override
    {
        if (id == IDOK)
            age = getUInt(questionField);
        Dialog::onCommand(sender, code, id);
    }
    unsigned age = 0;
};

void askInDialog(const WorkPlace&)
{
    drainMessages();
    Question question;
    expect(question.showModal() == IDOK && question.age == 36, "another answer");
}

void draw(const WorkPlace&)
{
    const tarn::DeviceContext screen(nullptr, false);
    tarn::DeviceContext memory(screen);
    const tarn::Bitmap picture(screen, 20, 20);
    const tarn::Bitmap previous = memory.select(picture);
    {
        const tarn::Brush brush(RGB(0, 0, 255));
        const tarn::Pen pen(RGB(255, 0, 0), PS_SOLID, 1);
        memory.fillRectangle(RGB(255, 255, 255), tarn::Rect(0, 0, 20, 20));
        memory.fillRectangle(brush, tarn::Rect(0, 0, 10, 10));
        const tarn::Pen previousPen = memory.select(pen.getHandle());
        memory.moveTo(0, 15);
        memory.lineTo(20, 15);
        memory.select(previousPen.getHandle());
        memory.drawText(0, 0, "x");
        memory.drawRectangle3D(tarn::Rect(0, 0, 20, 20), true);
    }
    expect(memory.getPixel(15, 15) == RGB(255, 0, 0), "another colour");
    memory.select(previous);
}

void drawTransparently(const WorkPlace&)
{
    const tarn::DeviceContext screen(nullptr, false);
    tarn::DeviceContext memory(screen);
    const tarn::Bitmap target(screen, 8, 8), source(screen, 8, 8);
    const tarn::Bitmap previous = memory.select(target);
    memory.blitTransparent(source, 0, 0, 8, 8, 0, 0, RGB(1, 2, 3));
    memory.select(previous);
}
} // namespace

std::vector<Scenario> graphicsScenarios() { return {{"drawing", draw}, {"transparent drawing", drawTransparently}}; }

std::vector<Scenario> windowScenarios()
{
    return {{"window", showWindow}, {"controls", workControls}, {"menu", useMenu}, {"dialog", askInDialog}};
}
} // namespace failures
