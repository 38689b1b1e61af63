#include "AppointmentDialog.h"

#include "Ids.h"
#include "Text.h"

#include <tarn/Exception.h>

#include <initializer_list>

namespace planner {
namespace {
constexpr const wchar_t* repeats[] = {L"Does not repeat", L"Every day", L"Every week", L"Every month", L"Every year"};

// The choice that stands for a rule: 0 for none, and one behind the others for a rule with more to it.
int choiceFor(const std::optional<Recurrence>& rule)
{
    if (!rule)
        return 0;
    Recurrence simple;
    simple.frequency = rule->frequency;
    return *rule == simple ? rule->frequency + 1 : static_cast<int>(std::size(repeats));
}
} // namespace

AppointmentDialog::AppointmentDialog(HWND owner, Event event, std::vector<std::wstring> categories,
                                     const Reckoning& reckoning)
    : Dialog(owner, DIALOG_APPOINTMENT, GetModuleHandleW(nullptr)), event_(std::move(event)),
      categories_(std::move(categories)), reckoning_(reckoning)
{
}

bool AppointmentDialog::onInitDialog(tarn::Window&)
{
    setText(event_.subject.empty() ? L"New appointment" : L"Change the appointment");
    setText(ID_SUBJECT, event_.subject.c_str());
    setText(ID_PLACE, event_.place.c_str());
    setText(ID_NOTE, tarn::BasicString<wchar_t>(event_.note).replaceAll(L"\n", L"\r\n"));
    category_.attach(*this, ID_CATEGORY);
    for (const std::wstring& category : categories_)
        category_.addString(category.c_str());
    category_.setText(event_.category.c_str());

    // The last day is one that it lasts, where the event has the midnight after it.
    const Local end = event_.allDay ? event_.end - dayLength : event_.end;
    setCheck(ID_ALL_DAY, event_.allDay);
    setText(ID_FROM_DATE, shortDateText(reckoning_.dateOf(dayOf(event_.start))).c_str());
    setText(ID_FROM_TIME, timeText(timeOfDay(event_.start)).c_str());
    setText(ID_TO_DATE, shortDateText(reckoning_.dateOf(dayOf(end))).c_str());
    setText(ID_TO_TIME, timeText(timeOfDay(end)).c_str());
    if (event_.zone != Zone::system)
        setText(ID_ZONE, (L"Times of the zone\n" + widened(event_.zone)).c_str());
    fillRepeats();
    enableTimes();
    followSize();
    return true;
}

// The fields grow with the dialog, the note in both directions.
void AppointmentDialog::followSize()
{
    using tarn::Anchors;
    for (const int id : {ID_SUBJECT, ID_PLACE, ID_REPEAT})
        anchors_.add(id, Anchors::left | Anchors::top | Anchors::right);
    anchors_.add(ID_NOTE, Anchors::all);
    anchors_.add(ID_HINT, Anchors::left | Anchors::right | Anchors::bottom);
    for (const int id : {IDOK, IDCANCEL})
        anchors_.add(id, Anchors::right | Anchors::bottom);
    anchors_.begin(*this);
}

void AppointmentDialog::fillRepeats()
{
    repeat_.attach(*this, ID_REPEAT);
    for (const wchar_t* repeat : repeats)
        repeat_.addString(repeat);
    const int choice = choiceFor(event_.recurrence);
    if (choice == static_cast<int>(std::size(repeats)))
        repeat_.addString(describe(*event_.recurrence).c_str());
    repeat_.setCurrentSelection(static_cast<unsigned>(choice));
}

void AppointmentDialog::enableTimes() const
{
    for (const unsigned short id : std::initializer_list<unsigned short>{ID_FROM_TIME, ID_TO_TIME})
        enable(id, !isChecked(ID_ALL_DAY));
}

void AppointmentDialog::onCommand(tarn::Window* sender, unsigned short code, unsigned short id)
{
    if (id == ID_ALL_DAY && code == BN_CLICKED)
        enableTimes();
    else if (id == IDOK)
        accept();
    else
        Dialog::onCommand(sender, code, id);
}

void AppointmentDialog::accept()
{
    try {
        event_ = read();
        end(IDOK);
    } catch (const tarn::Exception& e) {
        setText(ID_HINT, tarn::whatW(e));
        MessageBeep(MB_ICONWARNING);
        sendMessageW(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(*this, field_)), TRUE);
    }
}

template <class Read> auto AppointmentDialog::readField(int id, Read convert)
{
    field_ = id;
    return convert(trimmed(getTextW(id)));
}

Event AppointmentDialog::read()
{
    const auto text = [](const std::wstring& t) { return t; };
    Event event = event_;
    event.subject = readField(ID_SUBJECT, text);
    if (event.subject.empty())
        event.validate(); // Here, to say so before anything about the fields below.
    event.place = readField(ID_PLACE, text);
    event.category = readField(ID_CATEGORY, text);
    event.note = readField(ID_NOTE, text);
    std::erase(event.note, L'\r'); // An edit field breaks lines in two characters.
    readTimes(event);
    readRepeat(event);
    field_ = ID_TO_DATE;
    event.validate();
    return event;
}

void AppointmentDialog::readTimes(Event& event)
{
    const auto date = [this](const std::wstring& text) { return midnightOf(parseDay(text, reckoning_)); };
    event.allDay = isChecked(ID_ALL_DAY);
    event.start = readField(ID_FROM_DATE, date);
    if (event.allDay) {
        event.zone = Zone::system;
        event.end = readField(ID_TO_DATE, date) + dayLength;
    } else {
        event.start += readField(ID_FROM_TIME, parseTimeOfDay);
        event.end = readField(ID_TO_DATE, date);
        event.end += readField(ID_TO_TIME, parseTimeOfDay);
    }
}

// The days that are left out and the last day move along with the first one.
void AppointmentDialog::readRepeat(Event& event)
{
    field_ = ID_REPEAT;
    const int choice = repeat_.getCurrentSelection();
    if (choice != choiceFor(event_.recurrence)) {
        event.exceptions.clear();
        event.recurrence.reset();
        if (choice > 0)
            event.recurrence.emplace().frequency = static_cast<Recurrence::Frequency>(choice - 1);
    }
    const Local moved = event.start - event_.start;
    for (Local& exception : event.exceptions)
        exception += moved;
    if (event.recurrence && event.recurrence->until)
        *event.recurrence->until += moved;
}
} // namespace planner
