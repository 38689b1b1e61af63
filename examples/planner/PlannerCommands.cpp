#include "AppointmentDialog.h"
#include "GoToDialog.h"
#include "Ids.h"
#include "OptionsSheet.h"
#include "PlannerWindow.h"

// What the menu's commands do, except those about files.

namespace planner {
namespace {
constexpr Local usualTime = 9 * hourLength;
constexpr const wchar_t* nothingSelected = L"No appointment is selected in the list.";
} // namespace

void PlannerWindow::onCommand(Window* sender, unsigned short code, unsigned short id)
{
    if (sender)
        Window::onCommand(sender, code, id);
    else
        performGuarded([&] { perform(id); });
}

void PlannerWindow::performGuarded(const std::function<void()>& action)
{
    try {
        action();
    } catch (...) {
        messages_.error(*this);
    }
}

void PlannerWindow::perform(unsigned short id)
{
    switch (id) {
    case ID_NEW:
        return makeNew();
    case ID_OPEN:
        if (const std::wstring file = askToOpen(FileKind::document, L"Open"); !file.empty())
            open(file);
        return;
    case ID_SAVE:
        save();
        return;
    case ID_SAVE_AS:
        saveAs();
        return;
    case ID_IMPORT:
        if (const std::wstring file = askToOpen(FileKind::calendar, L"Import"); !file.empty())
            importFile(file);
        return;
    case ID_EXPORT:
        if (const std::wstring file = askToSave(FileKind::calendar, L"Export"); !file.empty())
            exportFile(file);
        return;
    case ID_RECENT:
        return open(std::wstring(settings_.recentFile));
    case ID_EXIT:
        if (mayDiscard())
            destroy();
        return;
    case ID_ADD:
        return add();
    case ID_CHANGE:
        return change();
    case ID_DELETE:
        return remove();
    case ID_PREVIOUS:
        return goTo(settings_.reckoning.addMonths(selected_, -1));
    case ID_NEXT:
        return goTo(settings_.reckoning.addMonths(selected_, 1));
    case ID_TODAY:
        return goTo(today(Zone(settings_.zone)));
    case ID_GO_TO:
        return askForMonth();
    case ID_OPTIONS:
        return setOptions();
    default:
        return;
    }
}

void PlannerWindow::add()
{
    Event event;
    event.uid = newUID();
    event.start = midnightOf(selected_) + usualTime;
    event.end = event.start + hourLength;
    edit(std::move(event));
}

void PlannerWindow::change()
{
    if (const Occurrence* const selected = list_.selected())
        edit(selected->event());
    else
        showStatus(nothingSelected);
}

void PlannerWindow::edit(Event event)
{
    std::vector<std::wstring> categories;
    for (const CategoryPtr& category : document_->categories())
        categories.push_back(category->name());
    AppointmentDialog dialog(*this, std::move(event), std::move(categories), settings_.reckoning);
    if (dialog.showModal() != IDOK)
        return;
    const bool isNew = !document_->put(dialog.event());
    if (isNew)
        selected_ = dayOf(dialog.event().start);
    refresh();
}

void PlannerWindow::remove()
{
    const Occurrence* const selected = list_.selected();
    if (!selected)
        return showStatus(nothingSelected);
    // Copies, because the list may be filled anew while the question is open.
    const AppointmentPtr appointment = selected->appointment;
    const Local start = selected->original;
    Event event = appointment->event();
    if (!event.recurrence) {
        if (Messages::confirm(*this, L"Delete \"" + event.subject + L"\"?"))
            document_->remove(appointment);
    } else {
        const std::wstring question = L"\"" + event.subject + L"\" repeats. What is to be deleted?";
        const int answer = Messages::ask(*this, question, L"&Only this day", L"&All days");
        event.exceptions.push_back(start);
        // Without a day left, none would show it to be changed or deleted.
        if (answer == IDYES && event.takesPlace())
            document_->put(event);
        else if (answer == IDYES || answer == IDNO)
            document_->remove(appointment);
    }
    refresh();
}

void PlannerWindow::askForMonth()
{
    GoToDialog dialog(*this, settings_.reckoning.dateOf(selected_));
    if (dialog.showModal() == IDOK)
        goTo(settings_.reckoning.firstOfMonth(dialog.year(), dialog.month()));
}

void PlannerWindow::setOptions()
{
    OptionsSheet(*this, settings_, [this] {
        settings_.save(HKEY_CURRENT_USER, Settings::registryKey);
        refresh();
    }).showModal();
}
} // namespace planner
