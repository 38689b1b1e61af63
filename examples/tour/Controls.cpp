// Fills controls of a hidden window and asks them what they show: a tree, a list, a combo box, a group of
// radio buttons.

#include "Tour.h"

#include <tarn/ComboBox.h>
#include <tarn/Exception.h>
#include <tarn/ListView.h>
#include <tarn/ProgressBar.h>
#include <tarn/RadioButtonGroup.h>
#include <tarn/Rect.h>
#include <tarn/TrackBar.h>
#include <tarn/TreeView.h>
#include <tarn/WindowClass.h>

#include <iomanip>
#include <iostream>

namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

void addChild(HWND parent, const wchar_t* className, unsigned short id, unsigned long style)
{
    CreateWindowExW(0, className, L"", WS_CHILD | style, 0, 0, 200, 100, parent,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), program, nullptr);
}

void showTree(const tarn::Window& parent)
{
    tarn::TreeView tree;
    addChild(parent, WC_TREEVIEWW, 1, 0);
    tree.attach(parent, 1);
    const HTREEITEM instruments = tree.insertItem("instruments");
    for (const char* name : {"viola", "bassoon", "tuba", "harp"})
        tree.insertItem(name, instruments);
    tree.sortChildren(instruments, false);
    std::cout << "A tree sorts its " << tree.getItemTextA(instruments) << ": ";
    auto item = reinterpret_cast<HTREEITEM>(
        tree.sendMessageA(TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(instruments)));
    for (const char* separator = ""; item; separator = ", ") {
        std::cout << separator << tree.getItemTextA(item);
        item =
            reinterpret_cast<HTREEITEM>(tree.sendMessageA(TVM_GETNEXTITEM, TVGN_NEXT, reinterpret_cast<LPARAM>(item)));
    }
    std::cout << '\n';
}

void showList(const tarn::Window& parent)
{
    tarn::ListView list;
    list.create(parent, tarn::Rect(0, 0, 200, 100), LVS_REPORT | LVS_SORTASCENDING, program);
    list.insertColumn(0, "Instrument", 80);
    list.insertColumn(1, "Lowest tone", 80);
    const char* const tones[][2] = {{"tuba", "D1"}, {"bassoon", "B flat 1"}, {"viola", "C3"}, {"harp", "C flat 1"}};
    for (const auto& [instrument, tone] : tones)
        list.setItemText(static_cast<unsigned>(list.insertItem(instrument)), tone, 1);
    std::cout << "A sorted list view with " << list.getItemCount() << " items of two columns:\n";
    for (unsigned i = 0; i < list.getItemCount(); ++i)
        std::cout << "    " << std::left << std::setw(10) << list.getItemTextA(i, 0) << list.getItemTextA(i, 1) << '\n';
    try {
        list.deleteItem(9);
    } catch (const tarn::WindowsError& e) {
        std::cout << "Deleting its tenth item: " << e.getDescription() << '\n';
    }
}

void showChoices(tarn::Window& parent)
{
    tarn::ComboBox combo;
    addChild(parent, L"COMBOBOX", 2, CBS_DROPDOWNLIST | CBS_SORT);
    combo.attach(parent, 2);
    for (const wchar_t* name : {L"forte", L"piano", L"mezzo"})
        combo.addString(name);
    combo.setCurrentSelection(static_cast<unsigned>(combo.findString("p")));
    std::cout << "A combo box shows its item " << combo.getCurrentSelection() + 1 << " of " << combo.getCount() << ": "
              << combo.getTextA() << '\n';

    for (unsigned short id = 10; id < 13; ++id)
        addChild(parent, L"BUTTON", id, BS_AUTORADIOBUTTON | (id == 10 ? WS_GROUP : 0u));
    tarn::RadioButtonGroup group;
    group.create(parent, 10);
    std::cout << "Of three radio buttons " << group.getSelection() << " is checked (-1 means none); ";
    group.setSelection(2);
    std::cout << "after setSelection(2) it is " << group.getSelection() << '\n';
}

void showRanges(const tarn::Window& parent)
{
    tarn::TrackBar track;
    tarn::ProgressBar progress;
    addChild(parent, TRACKBAR_CLASSW, 3, 0);
    addChild(parent, PROGRESS_CLASSW, 4, 0);
    track.attach(parent, 3);
    progress.attach(parent, 4);
    track.setRange(-50, 50, false);
    progress.setRange(-50, 50);
    track.setPosition(75, false);
    progress.setPos(track.getPosition());
    std::cout << "A track bar pushed to 75 stops at " << track.getPosition() << " and fills the progress bar to "
              << progress.getPos() << " of " << progress.getMax() << '\n';
}

void showControls()
{
    const tarn::WindowClass windowClass(0, 0, nullptr, COLOR_BTNFACE, nullptr, program);
    tarn::Window parent;
    parent.create(windowClass, L"", WS_OVERLAPPEDWINDOW, tarn::Rect(0, 0, 300, 300), nullptr, nullptr, program);
    showTree(parent);
    showList(parent);
    showChoices(parent);
    showRanges(parent);
}

const tour::Section section(105, "Controls", showControls);
} // namespace
