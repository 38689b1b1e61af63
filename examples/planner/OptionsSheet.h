#pragma once

#include "Settings.h"

#include <tarn/ComboBox.h>
#include <tarn/PropertyPage.h>
#include <tarn/PropertySheet.h>

#include <functional>

namespace planner {
/// A page that changes settings when the sheet's OK or Apply is pressed.
class OptionsPage : public tarn::PropertyPage {
public:
    OptionsPage(unsigned short resource, Settings& settings);

    void onCommand(tarn::Window* sender, unsigned short code, unsigned short id) override;
    bool onApply() override;

    std::function<void()> applied; ///< The settings have changed.

protected:
    virtual void apply() = 0;

    Settings& settings_;
};

class WeeksPage : public OptionsPage {
public:
    explicit WeeksPage(Settings& settings);
    bool onInitDialog(tarn::Window& focus) override;

private:
    void apply() override;

    tarn::ComboBox firstDay_, minimalDays_;
};

class TimePage : public OptionsPage {
public:
    explicit TimePage(Settings& settings);
    bool onInitDialog(tarn::Window& focus) override;
    bool onDeactivate() override;

private:
    void apply() override;
    Day readCutover() const;

    tarn::ComboBox zone_, cutover_;
};

/// The program's options.
class OptionsSheet {
public:
    /// `applied` is called whenever the settings have changed.
    OptionsSheet(HWND owner, Settings& settings, const std::function<void()>& applied);
    void showModal() { sheet_.showModal(); }

private:
    tarn::PropertySheet sheet_;
    WeeksPage weeks_;
    TimePage time_;
};
} // namespace planner
