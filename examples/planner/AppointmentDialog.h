#pragma once

#include "Event.h"

#include <tarn/Anchors.h>
#include <tarn/ComboBox.h>
#include <tarn/Dialog.h>
#include <tarn/EditControl.h>

#include <vector>

namespace planner {
/// Asks for what an appointment says, and lets nothing pass that cannot be.
class AppointmentDialog : public tarn::Dialog {
public:
    AppointmentDialog(HWND owner, Event event, std::vector<std::wstring> categories, const Reckoning& reckoning);

    /// What was filled in, when showModal() gave IDOK.
    const Event& event() const { return event_; }

    bool onInitDialog(tarn::Window& focus) override;
    void onCommand(tarn::Window* sender, unsigned short code, unsigned short id) override;

private:
    void fillRepeats();
    void enableTimes() const;
    void followSize();
    void accept();
    Event read();
    void readTimes(Event& event);
    void readRepeat(Event& event);
    template <class Read> auto readField(int id, Read convert);

    Event event_;
    std::vector<std::wstring> categories_;
    const Reckoning& reckoning_;
    int field_ = 0; // What is being read, to go there when it is wrong.
    tarn::ComboBox category_, repeat_;
    tarn::Anchors anchors_;
};
} // namespace planner
