#pragma once

#include "DayList.h"
#include "Messages.h"
#include "MonthSheet.h"
#include "MonthTree.h"
#include "Reminder.h"
#include "Settings.h"

#include <tarn/AcceleratorTable.h>
#include <tarn/StatusBar.h>
#include <tarn/WindowClass.h>

#include <functional>
#include <optional>
#include <string>

namespace planner {
/// The program's window: the tree of months, the sheet of one of them and the list of a day's appointments.
class PlannerWindow : public tarn::Window {
public:
    PlannerWindow(HINSTANCE program, const Messages& messages);
    ~PlannerWindow() override;

    /// As the user left it.
    void showAsLeft();
    /// Tells of appointments that are about to begin, from now on.
    void beginReminding() { reminder_.emplace(*this, program_); }
    /// The menu's keys, and Tab to the next control: true when the message was one.
    bool handleKey(MSG& msg) const;

    void goTo(Day day);
    const Settings& settings() const { return settings_; }
    const DayList& list() const { return list_; }
    const MonthSheet& sheet() const { return sheet_; }

    // What the commands do once the file is known.
    void open(const std::wstring& file); ///< Asks about unsaved changes first.
    void save(const std::wstring& file);
    void importFile(const std::wstring& file);
    void exportFile(const std::wstring& file);

    using tarn::Window::onNotification;
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;
    void onClose() override;
    void onActivate(unsigned short state, bool isMinimised, Window* other) override;
    void onFocusGained(Window* other) override;
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    LRESULT onNotify(const NMHDR& header) override;
    void onDPIChanged(const tarn::DPI& dpi, const tarn::Rect& suggested) override;
    void onSize(UINT type, const tarn::Size& clientSize) override;
    void onTimer(UINT_PTR id) override;
    void onDestroy() override;

private:
    void addChildren();
    void layOut(const tarn::Size& pixels);
    void makeFonts(const tarn::DPI& dpi);

    void refresh();
    void showDay(const Zone& zone);
    void showTitle();
    void showStatus(const std::wstring& text) const { status_.setPartText(0, text.c_str()); }

    void perform(unsigned short id);
    void performGuarded(const std::function<void()>& action);
    void add();
    void change();
    void edit(Event event);
    void remove();
    void askForMonth();
    void setOptions();

    enum class FileKind { document, calendar };
    void makeNew();
    bool save(); ///< False when the user cancelled, as the next ones.
    bool saveAs();
    bool mayDiscard();
    void setFile(const std::wstring& file);
    std::wstring askToOpen(FileKind kind, const wchar_t* title) const;
    std::wstring askToSave(FileKind kind, const wchar_t* title) const;

    HINSTANCE program_;
    const Messages& messages_;
    Settings settings_;
    DocumentPtr document_;
    std::wstring file_; // Empty for a document without one.
    Day selected_, today_ = 0;

    tarn::WindowClass windowClass_;
    tarn::Font font_, titleFont_;
    tarn::AcceleratorTable accelerators_;
    MonthTree tree_;
    MonthSheet sheet_;
    DayList list_;
    tarn::Window dayTitle_;
    tarn::StatusBar status_;
    HWND lastFocus_ = nullptr;
    std::optional<Reminder> reminder_;
};
} // namespace planner
