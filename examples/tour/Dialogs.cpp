// Builds a menu and prints it, and runs a modal dialog that answers itself.

#include "Tour.h"

#include <tarn/Dialog.h>
#include <tarn/Exception.h>
#include <tarn/FileDialog.h>
#include <tarn/Menu.h>

#include <iostream>
#include <string>

namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

void print(const tarn::Menu& menu, const std::string& indent)
{
    for (unsigned i = 0; i < menu.getItemCount(); ++i) {
        tarn::Menu::ItemInfo item;
        menu.getItemInfo(item, i, true);
        if (item.type & MFT_SEPARATOR) {
            std::cout << indent << "--------\n";
            continue;
        }
        std::cout << indent << (item.state & MFS_CHECKED ? "* " : "  ") << tarn::BasicString<char>(item.text.c_str());
        if (item.subMenu) {
            std::cout << " >\n";
            print(menu.getSubMenu(i), indent + "    ");
        } else {
            std::cout << (item.state & MFS_GRAYED ? " (grayed)\n" : "\n");
        }
    }
}

void showMenu()
{
    tarn::Menu bar(false);
    tarn::Menu zoom(true);
    zoom.insert("50 %", 0, MF_BYPOSITION, 21);
    zoom.insert("100 %", 1, MF_BYPOSITION, 22);
    const HMENU zoomHandle = zoom;
    bar.insert("Open", static_cast<unsigned>(-1), MF_BYPOSITION, 10);
    bar.insert("Save", static_cast<unsigned>(-1), MF_BYPOSITION, 11);
    bar.insertSeparator();
    bar.insert("Zoom", static_cast<unsigned>(-1), MF_BYPOSITION | MF_POPUP, reinterpret_cast<UINT_PTR>(zoomHandle));
    zoom.detach(); // It is the bar's now.
    bar.setItemState(tarn::Menu::grayed, 11, false);
    bar.setItemCheck(tarn::Menu::checked, 22, false);
    std::cout << "A menu:\n";
    print(bar, "    ");
    const tarn::Menu found = tarn::Menu(bar.getHandle(), false).findParentOfItem(22);
    std::cout << "Item 22 is in " << (found.getHandle() == zoomHandle ? "the Zoom menu" : "another menu") << '\n';
    try {
        bar.load(4711, program);
    } catch (const tarn::WindowsError&) {
        std::cout << "A menu resource that is not there is an error\n";
    }
}

/// A template without controls, as a resource would hold it.
struct Template {
    DLGTEMPLATE header;
    WORD menu, windowClass;
    wchar_t title[8];
};

class Question : public tarn::Dialog {
public:
    Question() = default;

    bool onInitDialog(tarn::Window&) override
    {
        setText(L"Continue?");
        std::cout << "The dialog \"" << getTextA() << "\" is open; it presses its own OK\n";
        postMessageW(WM_COMMAND, IDOK);
        return true;
    }

    int run()
    {
        const Template dialog{{WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, 0, 10, 10, 120, 40}, 0, 0, L"Tour"};
        return static_cast<int>(
            DialogBoxIndirectParamW(program, &dialog.header, nullptr, dlgProc, reinterpret_cast<LPARAM>(this)));
    }
};

void show()
{
    showMenu();
    Question question;
    const int result = question.run();
    std::cout << "It ended with " << result << " (IDOK is " << IDOK << ")";
    std::cout << ", and the object is " << (question.isOpen() ? "still" : "no longer") << " bound\n";
    try {
        tarn::Dialog(4711, program).showModal();
    } catch (const tarn::WindowsError& e) {
        std::cout << "A dialog without a template: " << e.getDescription() << '\n';
    }
    std::cout << "A file dialog's filter of two pairs takes "
              << tarn::FileDialog::getFilterLength("Music\0*.mid\0Text\0*.txt\0") << " characters\n";
}

const tour::Section section(110, "Dialogs", show);
} // namespace
