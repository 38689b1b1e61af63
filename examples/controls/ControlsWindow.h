#pragma once

#include "Bodies.h"
#include "ColourControls.h"

#include <tarn/Bitmap.h>
#include <tarn/ComboBox.h>
#include <tarn/DateTimePicker.h>
#include <tarn/EditControl.h>
#include <tarn/Font.h>
#include <tarn/ImageList.h>
#include <tarn/ListView.h>
#include <tarn/MonthCalendar.h>
#include <tarn/ProgressBar.h>
#include <tarn/RadioButtonGroup.h>
#include <tarn/Rect.h>
#include <tarn/ScrollBar.h>
#include <tarn/StatusBar.h>
#include <tarn/TabControl.h>
#include <tarn/ToolBar.h>
#include <tarn/ToolTip.h>
#include <tarn/TrackBar.h>
#include <tarn/TreeView.h>
#include <tarn/UpDown.h>
#include <tarn/WindowClass.h>

#include <functional>
#include <vector>

/// The tree of bodies: tells when another one is selected.
class BodyTree : public tarn::TreeView {
public:
    using tarn::TreeView::onReflectedNotification;
    bool onReflectedNotification(const NMTREEVIEWW& notification) override;

    const Body* getBody() const { return static_cast<const Body*>(getItemData(getSelectedItem())); }

    std::function<void()> onSelection;
};

/// The program's window: the solar system in a tree, what goes round the selected body in a list, and the
/// controls that change what the list shows and how.
class ControlsWindow : public tarn::Window {
public:
    explicit ControlsWindow(HINSTANCE program);
    ~ControlsWindow() override;

    using tarn::Window::onNotification;
    LRESULT onNotify(const NMHDR& header) override;
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    void onHScroll(Window* bar, unsigned short code, unsigned short position) override;
    void onNotification(const NMLISTVIEW& notification) override;
    void onDPIChanged(const tarn::DPI& dpi, const tarn::Rect& suggested) override;
    void onDestroy() override;

private:
    HWND addChild(const wchar_t* className, const wchar_t* text, unsigned long style, int id, const tarn::Rect& rect);
    void addLeftSide();
    void addView();
    void addFilter();
    void addNote();
    void addObservation();
    void fillTree();

    void showBodies();
    void sortBy(int column);
    void showView();
    void showColour();
    void showWidth();
    void describe(const Body& body);
    void writeDown();
    void reset();

    HINSTANCE program_;
    tarn::WindowClass windowClass_;
    tarn::ImageList treePictures_, smallPictures_, largePictures_;
    tarn::Bitmap resetPicture_;
    BodyTree tree_;
    tarn::TabControl kinds_;
    tarn::ListView list_;
    tarn::ComboBox order_;
    ColourList colours_;
    tarn::RadioButtonGroup views_;
    tarn::TrackBar smallest_;
    tarn::ProgressBar share_;
    tarn::ScrollBar width_;
    tarn::EditControl note_;
    tarn::StatusBar status_;
    tarn::Button readOnly_, reset_;
    ColourButton swatch_;
    tarn::ToolBar tools_;
    tarn::MonthCalendar day_;
    tarn::DateTimePicker time_;
    tarn::EditControl power_;
    tarn::UpDown powerArrows_;
    tarn::ToolTip tips_;
    tarn::DPI dpi_ = tarn::DPI::ofSystem(); // What the controls have the size for.
    tarn::Font font_;                       // What they have since it has changed.
};
