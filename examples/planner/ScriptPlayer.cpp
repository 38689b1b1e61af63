#include "ScriptPlayer.h"

#include "Ids.h"
#include "Text.h"

#include <Picture.h>
#include <tarn/Exception.h>

#include <prsht.h>

#include <iostream>

namespace planner {
namespace {
using Names = std::map<std::string, int>;

const Names commandIds = {
    {"new", ID_NEW},       {"open", ID_OPEN},     {"save", ID_SAVE},     {"save-as", ID_SAVE_AS},
    {"import", ID_IMPORT}, {"export", ID_EXPORT}, {"recent", ID_RECENT}, {"exit", ID_EXIT},
    {"add", ID_ADD},       {"change", ID_CHANGE}, {"delete", ID_DELETE}, {"previous", ID_PREVIOUS},
    {"next", ID_NEXT},     {"today", ID_TODAY},   {"go-to", ID_GO_TO},   {"options", ID_OPTIONS}};
const Names fields = {{"subject", ID_SUBJECT}, {"place", ID_PLACE},         {"category", ID_CATEGORY},
                      {"all-day", ID_ALL_DAY}, {"from-date", ID_FROM_DATE}, {"from-time", ID_FROM_TIME},
                      {"to-date", ID_TO_DATE}, {"to-time", ID_TO_TIME},     {"repeat", ID_REPEAT},
                      {"note", ID_NOTE},       {"zone", ID_ZONE},           {"month", ID_MONTH},
                      {"year", ID_YEAR},       {"first-day", ID_FIRST_DAY}, {"minimal-days", ID_MINIMAL_DAYS},
                      {"cutover", ID_CUTOVER}};
const Names buttons = {{"ok", IDOK}, {"cancel", IDCANCEL}, {"yes", IDYES}, {"no", IDNO}, {"apply", 0x3021}};
const Names keys = {{"left", VK_LEFT},     {"right", VK_RIGHT},   {"up", VK_UP},         {"down", VK_DOWN},
                    {"pageup", VK_PRIOR},  {"pagedown", VK_NEXT}, {"home", VK_HOME},     {"end", VK_END},
                    {"enter", VK_RETURN},  {"tab", VK_TAB},       {"escape", VK_ESCAPE}, {"insert", VK_INSERT},
                    {"delete", VK_DELETE}, {"space", VK_SPACE}};

int idOf(const Names& names, support::Arguments& arguments)
{
    const auto name = arguments.next<std::string>("the name");
    const auto found = names.find(name);
    if (found == names.end())
        throw tarn::Exception("no such name: " + name);
    return found->second;
}

std::wstring path(support::Arguments& arguments) { return fromUTF8(arguments.rest()); }
} // namespace

ScriptPlayer::ScriptPlayer(PlannerWindow& window, const support::Options& options, Messages& messages)
    : window_(window), options_(options), messages_(messages)
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    static const tarn::WindowClass windowClass(0, 0, nullptr, static_cast<HBRUSH>(nullptr), nullptr, program);
    windows_.create(windowClass, L"", 0, RECT{}, HWND_MESSAGE, nullptr, program);
    messages_.setScripted(true);
    start();
}

// Here, and not by the base class, because the members are gone then.
ScriptPlayer::~ScriptPlayer()
{
    windows_.destroy(); // What the thread still waits for is not done any more.
    join();
}

unsigned long ScriptPlayer::run()
{
    try {
        play();
    } catch (...) {
        windows_.post([error = std::current_exception()] { std::rethrow_exception(error); });
    }
    return 0;
}

void ScriptPlayer::play()
{
    if (!options_.script.empty())
        support::playScript(options_.script, commands());
    windows_.call([this] {
        messages_.setScripted(false);
        if (options_.screenshot.empty())
            return;
        takePicture(options_.screenshot);
        PostQuitMessage(0);
    });
}

support::Commands ScriptPlayer::commands()
{
    static const std::map<std::string, Command> all = {
        {"size", &ScriptPlayer::size},
        {"go", &ScriptPlayer::go},
        {"open", [](auto& p, auto& a) { p.windows_.post([&p, file = path(a)] { p.window_.open(file); }); }},
        {"save", [](auto& p, auto& a) { p.window_.save(path(a)); }},
        {"import", &ScriptPlayer::importFile},
        {"export", [](auto& p, auto& a) { p.window_.exportFile(path(a)); }},
        {"choose", [](auto& p, auto& a) { p.window_.postMessageW(WM_COMMAND, idOf(commandIds, a)); }},
        {"type", &ScriptPlayer::type},
        {"check", [](auto& p, auto& a) { PostMessageW(p.field(a), BM_CLICK, 0, 0); }},
        {"select", &ScriptPlayer::select},
        {"press", &ScriptPlayer::press},
        {"page",
         [](auto& p, auto& a) { PostMessageW(p.dialog(), PSM_SETCURSEL, a.template next<WPARAM>("the number"), 0); }},
        {"key", &ScriptPlayer::key},
        {"click", &ScriptPlayer::click},
        {"wheel",
         [](auto& p, auto& a) {
             const int distance = a.template next<int>("the notches") * WHEEL_DELTA;
             PostMessageW(p.window_.sheet(), WM_MOUSEWHEEL, MAKEWPARAM(0, distance), 0);
         }},
        {"expect", &ScriptPlayer::expect},
        {"find", &ScriptPlayer::find},
        {"picture", [](auto& p, auto& a) { p.takePicture(a.rest()); }}};
    support::Commands commands;
    for (const auto& [name, command] : all) {
        commands[name] = [this, &command = command](support::Arguments& arguments) {
            windows_.call([&] { command(*this, arguments); });
            // What was posted meanwhile is handled before the next call is.
            windows_.call([] {});
        };
    }
    return commands;
}

HWND ScriptPlayer::dialog() const
{
    const HWND popup = GetLastActivePopup(window_);
    if (popup == window_.getWindowHandle())
        throw tarn::Exception("no dialog is open");
    return popup;
}

// A control of the dialog, or of the page that a sheet shows.
HWND ScriptPlayer::field(support::Arguments& arguments) const
{
    const HWND popup = dialog();
    const int id = idOf(fields, arguments);
    if (const HWND control = GetDlgItem(popup, id))
        return control;
    const auto page = reinterpret_cast<HWND>(SendMessageW(popup, PSM_GETCURRENTPAGEHWND, 0, 0));
    if (const HWND control = page ? GetDlgItem(page, id) : nullptr)
        return control;
    throw tarn::Exception("the dialog does not have it");
}

void ScriptPlayer::size(support::Arguments& arguments)
{
    const auto width = arguments.next<int>("the width"), height = arguments.next<int>("the height");
    const tarn::Size outer = window_.getWindowSize(), inner = window_.getClientSize();
    window_.setSize(width + outer.cx - inner.cx, height + outer.cy - inner.cy, SWP_NOACTIVATE);
}

void ScriptPlayer::go(support::Arguments& arguments)
{
    const auto year = arguments.next<int>("the year"), month = arguments.next<int>("the month") - 1;
    const Reckoning& reckoning = window_.settings().reckoning;
    int number = 0;
    const auto day = arguments >> number ? reckoning.dayOf({year, month, number}) : reckoning.firstOfMonth(year, month);
    if (!day)
        throw tarn::Exception("there is no such day");
    window_.goTo(*day);
}

void ScriptPlayer::importFile(support::Arguments& arguments)
{
    const tarn::BasicString<wchar_t> script =
        tarn::BasicString<wchar_t>(widened(options_.script)).replaceAll(L"/", L"\\");
    window_.importFile(tarn::BasicString<wchar_t>::mergePath(script.getDirectory(), path(arguments)));
}

void ScriptPlayer::type(support::Arguments& arguments)
{
    HWND control = field(arguments);
    const std::wstring text = fromUTF8(arguments.rest());
    for (HWND inner = control; (inner = GetWindow(inner, GW_CHILD));) // The edit field of a combo box.
        control = inner;
    SetFocus(control);
    SendMessageW(control, EM_SETSEL, 0, -1);
    SendMessageW(control, WM_CLEAR, 0, 0);
    for (const wchar_t c : text)
        PostMessageW(control, WM_CHAR, c, 1);
}

void ScriptPlayer::select(support::Arguments& arguments)
{
    const HWND control = field(arguments);
    const std::wstring text = fromUTF8(arguments.rest());
    if (SendMessageW(control, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str())) < 0)
        throw tarn::Exception("the list does not have it");
    const WPARAM changed = MAKEWPARAM(GetDlgCtrlID(control), CBN_SELCHANGE);
    PostMessageW(GetParent(control), WM_COMMAND, changed, reinterpret_cast<LPARAM>(control));
}

void ScriptPlayer::press(support::Arguments& arguments)
{
    const HWND button = GetDlgItem(dialog(), idOf(buttons, arguments));
    if (!button || !IsWindowEnabled(button))
        throw tarn::Exception("there is no such button to press");
    PostMessageW(button, BM_CLICK, 0, 0);
}

void ScriptPlayer::key(support::Arguments& arguments)
{
    const auto code = static_cast<WPARAM>(idOf(keys, arguments));
    int times = 1;
    arguments >> times;
    for (int i = 0; i < times; ++i) {
        PostMessageW(GetFocus(), WM_KEYDOWN, code, 1);
        PostMessageW(GetFocus(), WM_KEYUP, code, static_cast<LPARAM>(0xC0000001));
    }
}

void ScriptPlayer::click(support::Arguments& arguments)
{
    const auto x = arguments.next<int>("x"), y = arguments.next<int>("y");
    PostMessageW(window_.sheet(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    PostMessageW(window_.sheet(), WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

void ScriptPlayer::expect(support::Arguments& arguments)
{
    const auto wanted = arguments.next<unsigned>("the number"), found = window_.list().getItemCount();
    if (wanted != found)
        throw tarn::Exception("the day has " + std::to_string(found));
}

void ScriptPlayer::find(support::Arguments& arguments)
{
    const std::wstring subject = fromUTF8(arguments.rest());
    const DayList& list = window_.list();
    for (unsigned item = 0; item < list.getItemCount(); ++item)
        if (list.getItemTextW(item, 1) == subject)
            return;
    throw tarn::Exception("the day has no such appointment");
}

void ScriptPlayer::takePicture(const std::string& file) const
{
    const HWND shown = GetLastActivePopup(window_);
    RedrawWindow(shown, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW | RDW_FRAME);
    support::savePicture(shown, true, widened(file).c_str());
    std::cout << "The picture is in " << file << std::endl;
}
} // namespace planner
