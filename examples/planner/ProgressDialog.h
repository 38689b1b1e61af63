#pragma once

#include "BackgroundWork.h"

#include <tarn/Dialog.h>
#include <tarn/ProgressBar.h>

namespace planner {
/// Shows how far some work is, and lets the user cancel it.
class ProgressDialog : public tarn::Dialog {
public:
    ProgressDialog(HWND owner, std::wstring title, std::function<void(const Progress&)> work);

    /// False when the user cancelled. Throws what the work threw.
    bool run();

    bool onInitDialog(tarn::Window& focus) override;
    void onCommand(tarn::Window* sender, unsigned short code, unsigned short id) override;
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

private:
    std::wstring title_;
    BackgroundWork work_;
    tarn::ProgressBar bar_;
};
} // namespace planner
