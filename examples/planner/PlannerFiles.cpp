#include "DocumentFile.h"
#include "Ids.h"
#include "PlannerWindow.h"
#include "ProgressDialog.h"
#include "SafeFile.h"
#include "Text.h"

#include <tarn/Menu.h>
#include <tarn/ShellFileDialog.h>
#include <tarn/WindowsFile.h>

// Documents and calendars in files.

namespace planner {
namespace {
std::wstring nameOf(const std::wstring& file) { return tarn::BasicString<wchar_t>(file).getPathElement(-1); }

std::wstring appointments(std::size_t count)
{
    return std::to_wstring(count) + (count == 1 ? L" appointment" : L" appointments");
}

// Empty when the user cancelled.
template <class Dialog> std::wstring ask(Dialog& dialog, bool isDocument, const wchar_t* title)
{
    dialog.setTitle(title);
    dialog.setFilters({isDocument ? tarn::ShellFileDialog::Filter{L"Planner documents (*.planner)", L"*.planner"}
                                  : tarn::ShellFileDialog::Filter{L"iCalendar files (*.ics)", L"*.ics"},
                       {L"All files", L"*.*"}});
    dialog.setDefaultExtension(isDocument ? L"planner" : L"ics");
    return dialog.showModal() ? dialog.getPathW() : std::wstring();
}
} // namespace

std::wstring PlannerWindow::askToOpen(FileKind kind, const wchar_t* title) const
{
    tarn::OpenFileDialog dialog(*this);
    return ask(dialog, kind == FileKind::document, title);
}

std::wstring PlannerWindow::askToSave(FileKind kind, const wchar_t* title) const
{
    tarn::SaveFileDialog dialog(*this);
    return ask(dialog, kind == FileKind::document, title);
}

void PlannerWindow::setFile(const std::wstring& file)
{
    file_ = file;
    if (!file.empty())
        settings_.recentFile = file;
    const tarn::BasicString<wchar_t> recent = nameOf(settings_.recentFile);
    const tarn::Menu menu = getMenu().getSubMenu(0);
    const unsigned position = menu.getItemCount() - 3; // Before the separator and Exit.
    menu.remove(position, true);
    menu.insert(recent.empty() ? L"Recent file" : (L"&Recent: " + recent.replaceAll(L"&", L"&&")).c_str(), position,
                MF_BYPOSITION | (recent.empty() ? MF_GRAYED : 0u), ID_RECENT);
}

bool PlannerWindow::mayDiscard()
{
    if (!document_->isModified())
        return true;
    const std::wstring name = file_.empty() ? L"The new document" : L"\"" + nameOf(file_) + L"\"";
    const int answer = Messages::ask(*this, name + L" has changes that are not saved.", L"&Save", L"Do&n't save");
    return answer == IDNO || (answer == IDYES && save());
}

void PlannerWindow::makeNew()
{
    if (!mayDiscard())
        return;
    document_ = DocumentPtr(new Document);
    setFile(L"");
    refresh();
}

void PlannerWindow::open(const std::wstring& file)
{
    if (!mayDiscard())
        return;
    const std::wstring path = tarn::WindowsFile::getFullPath(file.c_str());
    document_ = loadDocument(path); // When it throws, the open document stays.
    setFile(path);
    refresh();
}

bool PlannerWindow::save()
{
    if (file_.empty())
        return saveAs();
    save(std::wstring(file_));
    return true;
}

bool PlannerWindow::saveAs()
{
    const std::wstring file = askToSave(FileKind::document, L"Save as");
    if (file.empty())
        return false;
    save(file);
    return true;
}

void PlannerWindow::save(const std::wstring& file)
{
    const std::wstring path = tarn::WindowsFile::getFullPath(file.c_str());
    saveDocument(*document_, path);
    document_->setModified(false);
    setFile(path);
    refresh();
}

void PlannerWindow::importFile(const std::wstring& file)
{
    ImportedCalendar calendar;
    const Zone zone(settings_.zone);
    ProgressDialog dialog(*this, L"Importing " + nameOf(file), [&](const Progress& progress) {
        const std::string text = readWholeFile(file);
        try {
            calendar = readICalendar(text, zone, progress);
        } catch (const tarn::Exception& e) {
            throw tarn::Exception('"' + narrow(file) + "\" cannot be imported. " + e.what());
        }
    });
    if (!dialog.run())
        return showStatus(L"The import was cancelled; nothing has changed.");
    std::size_t replaced = 0;
    for (const Event& event : calendar.events)
        replaced += document_->put(event);
    refresh();
    std::wstring text = L"Imported " + appointments(calendar.events.size());
    if (replaced != 0)
        text += L", of which " + std::to_wstring(replaced) + L" replaced older ones";
    messages_.tell(*this, text + L".\n" + calendar.remarks());
}

void PlannerWindow::exportFile(const std::wstring& file)
{
    const std::vector<Event> events = document_->events();
    const Zone zone(settings_.zone);
    ProgressDialog dialog(*this, L"Exporting to " + nameOf(file),
                          [&](const Progress& progress) { replaceFile(file, writeICalendar(events, zone, progress)); });
    if (dialog.run())
        messages_.tell(*this, L"Exported " + appointments(events.size()) + L".\n");
    else
        showStatus(L"The export was cancelled.");
}
} // namespace planner
