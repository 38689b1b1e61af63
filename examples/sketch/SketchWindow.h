#pragma once

#include "Sketch.h"

#include <tarn/Bitmap.h>
#include <tarn/ColourScheme.h>
#include <tarn/DPI.h>
#include <tarn/DeviceContext.h>
#include <tarn/Font.h>
#include <tarn/Window.h>
#include <tarn/WindowClass.h>

#include <list>
#include <map>
#include <string>

/// The program's window: shows a part of the sketch, lets the mouse draw in it, and lists dropped files.
class SketchWindow : public tarn::Window {
public:
    /// Menu commands. Colours and widths follow each other in the order of their tables.
    enum Command { clear = 100, undo, leave, copy, save, list, print, firstColour = 200, firstWidth = 300 };

    explicit SketchWindow(HINSTANCE program);
    ~SketchWindow() override;

    /// The commands of the colours and widths in the menu, by their names in lower case.
    static std::map<std::string, unsigned short> choices();

    bool onEraseBackground(const tarn::DeviceContext& context) override;
    void onCommand(Window* sender, unsigned short code, unsigned short id) override;
    void onHScroll(Window* bar, unsigned short code, unsigned short position) override;
    void onVScroll(Window* bar, unsigned short code, unsigned short position) override;
    void onDestroy() override;
    void onMouseMove(unsigned short keys, const tarn::Point& position) override;
    void onMouseWheel(unsigned short keys, short delta, const tarn::Point& position) override;
    void onLeftButtonDown(unsigned short keys, const tarn::Point& position) override;
    void onLeftButtonUp(unsigned short keys, const tarn::Point& position) override;
    void onKeyDown(UINT key, unsigned short repeat, unsigned char scanCode, bool extended, bool wasDown) override;
    void onTimer(UINT_PTR id) override;
    void onPaint() override;
    void onSize(UINT type, const tarn::Size& clientSize) override;
    void onDPIChanged(const tarn::DPI& dpi, const tarn::Rect& suggested) override;
    void onColourSchemeChanged(const tarn::ColourScheme& scheme) override;
    void onDroppedFiles(const tarn::Point& position, bool inClientArea,
                        const std::list<tarn::BasicString<wchar_t>>& files) override;

private:
    enum Timer : UINT_PTR { autoScroll = 1, hideNotice };

    void choose(unsigned short id);
    void notice(const std::wstring& text);
    tarn::Point toSketch(const tarn::Point& position) const;
    void drawTo(const tarn::Point& position);
    void updateScrollBars(const tarn::Size& clientSize);
    void onScroll(scroll_bar_type bar, unsigned short code);
    void scrollTo(const tarn::Point& origin);
    tarn::Point scrollPosition() const;
    tarn::Bitmap picture() const;
    void copyPicture();
    void savePicture();
    void listFolder();
    void printSketch();
    void drawAll(tarn::DeviceContext& context, const tarn::Rect& client) const;
    void drawPanel(tarn::DeviceContext& context, const tarn::Rect& client) const;

    tarn::WindowClass windowClass_;
    tarn::DPI dpi_; // What font and scroll bars have the size for.
    tarn::Font font_;
    tarn::ColourScheme scheme_;
    Sketch sketch_;
    std::size_t colour_ = 0, width_ = 1;
    bool isDrawing_ = false;
    tarn::Point mouse_; // The last position, for scrolling on while the mouse rests outside.
    std::wstring notice_;
    std::list<tarn::BasicString<wchar_t>> files_;
};
