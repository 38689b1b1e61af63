#pragma once

#include "Document.h"

#include <tarn/TrayIcon.h>

namespace planner {
/// The planner's icon beside the clock: it tells of appointments that are about to begin, and brings the window back.
class Reminder : public tarn::TrayIcon {
public:
    Reminder(HWND planner, HINSTANCE program);

    /// To be called now and then: tells of each appointment once, some minutes before it begins.
    void look(const Document& document, const Zone& zone);

    void onSelect(const tarn::Point& position) override;
    void onMenu(const tarn::Point& position) override;
    void onNoticeSelect() override;

private:
    HWND planner_;
    Local told_; ///< All that begin until then.
};
} // namespace planner
