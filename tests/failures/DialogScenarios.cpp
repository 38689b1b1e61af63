#include "Campaign.h"

#include "../dialogs/Driving.h"

#include <tarn/BasicString.h>
#include <tarn/Dialog.h>
#include <tarn/EditControl.h>
#include <tarn/FileDialog.h>
#include <tarn/FolderDialog.h>
#include <tarn/PropertyPage.h>
#include <tarn/PropertySheet.h>

#include <commdlg.h>
#include <prsht.h>
#include <shlobj.h>

namespace failures {
namespace {
const HINSTANCE program = GetModuleHandleW(nullptr);

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

void workModelessDialog(const WorkPlace&)
{
    drainMessages();
    tarn::EditControl field; // It hears of the end of its window, which the dialog takes along.
    Question question;
    question.create();
    question.setInt(questionField, 41);
    expect(question.getInt(questionField) == 41, "another number");
    question.setText(questionField, L"42");
    expect(question.getTextW(questionField) == L"42", "another text");
    field.subclass(question, questionField);
    expect(field.getID() == questionField, "another control");
    field.setFocus();
    field.unsubclass();
    question.enable(IDOK, false);
    question.destroy();
}

void showSheet(const WorkPlace&)
{
    drainMessages();
    tarn::PropertyPage page(questionDialog, program);
    tarn::PropertySheet sheet(nullptr);
    sheet.setTitle(L"Settings");
    sheet.addPage(&page);
    const support::Driver driver([] {
        const HWND shown = support::visibleDialog();
        return shown && PostMessageW(shown, PSM_PRESSBUTTON, PSBTN_OK, 0);
    });
    expect(sheet.showModal() != 0, "cancelled");
}

void showMessage(const WorkPlace&)
{
    drainMessages();
    const support::Driver driver(support::pressing(IDOK));
    expect(tarn::Window::messageBox(nullptr, L"Text", L"Caption", MB_OK) == IDOK, "another answer");
}

void chooseFolder(const WorkPlace&)
{
    drainMessages();
    tarn::FolderDialog dialog(static_cast<HWND>(nullptr), L"Choose", BIF_RETURNONLYFSDIRS);
    dialog.setRoot(CSIDL_WINDOWS);
    const support::Driver driver(support::pressing(IDCANCEL));
    expect(!dialog.showModal(), "chosen");
}

void chooseFile(const WorkPlace& place)
{
    drainMessages();
    tarn::FileDialog dialog(static_cast<HWND>(nullptr), false, OFN_EXPLORER | OFN_NOCHANGEDIR);
    dialog.setFilter(L"Texts\0*.txt\0");
    dialog.setPath(place.file(L"none.txt").c_str());
    const support::Driver driver(support::pressing(IDCANCEL));
    expect(!dialog.showModal(), "chosen");
}
} // namespace

std::vector<Scenario> dialogScenarios()
{
    return {{"dialog", askInDialog},      {"modeless dialog", workModelessDialog}, {"property sheet", showSheet},
            {"message box", showMessage}, {"folder dialog", chooseFolder},         {"file dialog", chooseFile}};
}
} // namespace failures
