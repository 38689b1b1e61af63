#pragma once

#include "Messages.h"
#include "PlannerWindow.h"

#include <Script.h>
#include <tarn/Thread.h>

#include <exception>
#include <functional>
#include <string>

namespace planner {
/// Plays a script to the program from a thread of its own, as a user would, one command a line:
///
///     # what follows is a comment
///     size WIDTH HEIGHT           the window's client area
///     go YEAR MONTH [DAY]         selects a day; without one, the month's first
///     import FILE                 from the script's folder
///     open FILE, save FILE, export FILE
///     choose NAME                 a command of the menu: new, save, add, change, delete, today, options ...
///     type FIELD TEXT             into a field of the open dialog: subject, from-date, cutover ...
///     check FIELD                 presses a check box or a button of it
///     select FIELD TEXT           the item of a list that begins so
///     press BUTTON                ok, cancel, yes, no or apply
///     page NUMBER                 of the options, from 0
///     key NAME [TIMES]            to whatever has the focus: left, pageup, tab, enter, ...
///     click X Y                   in the sheet
///     wheel NOTCHES               over the sheet, away from the user when positive
///     expect COUNT                fails unless the selected day has so many appointments
///     find TEXT                   fails unless the selected day has an appointment with this subject
///     picture FILE                a picture of the open dialog, or of the window
///     wait MS
///
/// What a command has set going is done with when the next one begins.
class ScriptPlayer : public tarn::Thread {
public:
    /// Without a script, nothing is played; a screenshot is taken at the end, which then also ends the program.
    ScriptPlayer(PlannerWindow& window, const support::Options& options, Messages& messages);
    ~ScriptPlayer() override;

    unsigned long run() override;

private:
    using Command = std::function<void(ScriptPlayer&, support::Arguments&)>;
    support::Commands commands();
    void play();

    void size(support::Arguments& arguments);
    void go(support::Arguments& arguments);
    void importFile(support::Arguments& arguments);
    void type(support::Arguments& arguments);
    void select(support::Arguments& arguments);
    void press(support::Arguments& arguments);
    void key(support::Arguments& arguments);
    void click(support::Arguments& arguments);
    void expect(support::Arguments& arguments);
    void find(support::Arguments& arguments);

    HWND dialog() const;
    HWND field(support::Arguments& arguments) const;
    void takePicture(const std::string& file) const;

    PlannerWindow& window_;
    const support::Options& options_;
    Messages& messages_;
    tarn::Window windows_; // Never seen: what it is called for is done by the thread of the windows.
};
} // namespace planner
