#pragma once

#include "Bodies.h"
#include "ColourControls.h"

#include <tarn/Anchors.h>
#include <tarn/Bitmap.h>
#include <tarn/ComboBox.h>
#include <tarn/DateTimePicker.h>
#include <tarn/EditControl.h>
#include <tarn/Font.h>
#include <tarn/ImageList.h>
#include <tarn/Label.h>
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
#include <list>
#include <vector>

/// The tree of bodies: inserts what goes round a body when that is opened, and tells when another one is selected.
class BodyTree : public tarn::TreeView {
public:
    using tarn::TreeView::onReflectedNotification;
    bool onReflectedNotification(const NMTREEVIEWW& notification) override;

    void fill() { insert(TVI_ROOT, nullptr); }
    const Body* getBody() const { return static_cast<const Body*>(getItemData(getSelectedItem())); }

    std::function<void()> onSelection;

private:
    void insert(HTREEITEM parent, const Body* centre) const;
};

/// The program's window: the solar system in a tree, what goes round the selected body in a list, the controls that
/// change what the list shows and how, and what was seen of it.
class ControlsWindow : public tarn::Window {
public:
    explicit ControlsWindow(HINSTANCE program);
    ~ControlsWindow() override;

    using tarn::Window::onNotification;
    LRESULT onMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;
    LRESULT onNotify(const NMHDR& header) override;
    LRESULT onNotifyToAnswer(NMHDR& header) override;
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    void onHScroll(Window* bar, unsigned short code, unsigned short position) override;
    void onNotification(const NMLISTVIEW& notification) override;
    void onSize(UINT type, const tarn::Size& clientSize) override;
    void onDPIChanged(const tarn::DPI& dpi, const tarn::Rect& suggested) override;
    void onDestroy() override;

private:
    // ControlsLayout.cpp: where everything is, in units of 1/96 inch.
    void addFrame();
    void addLeftSide();
    void addView();
    void addFilter();
    void addNote();
    void addObservation();
    void addTips();
    void anchor();
    tarn::Rect place(int x, int y, int width, int height) const;
    void addLabel(const wchar_t* text, int x, int y, int width, unsigned edges);
    void addButton(tarn::Button& button, unsigned short id, const wchar_t* text, const tarn::Rect& rect,
                   unsigned long style);
    void measure();
    void loadPictures();

    // ControlsWindow.cpp: what they do.
    void showBodies();
    void sortBy(int column, bool isAscending);
    void sort();
    tarn::BasicString<wchar_t> textOf(unsigned item, unsigned column) const;
    void showView();
    void showColour();
    void showWidth();
    void describe(const Body& body);
    void writeDown();
    void countSeen();
    void reset();

    HINSTANCE program_;
    tarn::WindowClass windowClass_;
    tarn::DPI dpi_;   // What the controls have the size for.
    tarn::Font font_; // What they have.
    int top_ = 0;     // Where those below the tool bar begin, in units.
    tarn::ImageList treePictures_;
    tarn::Bitmap resetPicture_;
    std::vector<const Body*> shown_; // The items of the list.
    int sortColumn_ = 2;
    bool isAscending_ = true;

    std::list<tarn::Label> labels_; // A window stays where it is.
    tarn::ToolBar tools_;
    tarn::EditControl find_;
    BodyTree tree_;
    tarn::TabControl kinds_;
    tarn::ListView list_;
    tarn::ComboBox order_;
    ColourList colours_;
    tarn::Button viewFrame_, viewButtons_[4];
    tarn::RadioButtonGroup views_;
    tarn::Label smallestText_;
    tarn::TrackBar smallest_;
    tarn::ProgressBar share_;
    tarn::ScrollBar width_;
    tarn::EditControl note_;
    tarn::Button readOnly_, reset_;
    ColourButton swatch_;
    tarn::MonthCalendar day_;
    tarn::DateTimePicker time_;
    tarn::EditControl power_;
    tarn::UpDown powerArrows_;
    tarn::Button follow_;
    tarn::ProgressBar following_;
    tarn::ListView seen_;
    tarn::StatusBar status_;
    tarn::ToolTip tips_;
    tarn::Anchors anchors_;
};
