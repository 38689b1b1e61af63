#pragma once

#include <tarn/Bitmap.h>
#include <tarn/Brush.h>
#include <tarn/Export.h>
#include <tarn/Font.h>
#include <tarn/Palette.h>
#include <tarn/Pen.h>
#include <tarn/Point.h>
#include <tarn/Rect.h>
#include <tarn/Size.h>
#include <tarn/Windows.h>

#include <span>
#include <string>

namespace tarn {
/// Something to draw on: a window, the screen, or a bitmap in memory.
///
/// A context that it was given is borrowed; one that it made or took from a window it gives back on
/// destruction and on close(). Moving hands a context on. The copy constructor copies no handle: it makes a new memory
/// context compatible with the other one. So pass contexts by reference, and make a memory context with
/// createCompatible(), which says what it does: `DeviceContext memory(DeviceContext(nullptr, false))` copies nothing
/// and is the screen itself. A `std::vector` copies its contexts when it grows, because their destructor may throw:
/// reserve() first, or use a `std::deque`. Colours are RGB values, lengths of text in characters. Use a context on the
/// thread that got it. Failures throw WindowsError, also out of the destructor.
class TARN_API DeviceContext {
public:
    /// A memory context compatible with the screen, one monochrome pixel in size until a bitmap is
    /// selected. Throws "Can't create compatible DC".
    DeviceContext();
    /// Borrows the handle, which may be null.
    DeviceContext(HDC handle) noexcept : handle_(handle) {}
    /// A window's client area, or all of it with its frame; a null window is the screen.
    /// Throws "Can't retrieve DC from window".
    DeviceContext(HWND window, bool wholeWindow);
    /// A new memory context compatible with `other`, which has to be a variable: see createCompatible().
    /// Throws "Can't create compatible DC".
    DeviceContext(const DeviceContext& other);
    /// Takes over what the other one has, and leaves that null.
    DeviceContext(DeviceContext&& other) noexcept;
    DeviceContext& operator=(const DeviceContext&) = delete;
    /// The same; what was held is given back, as by close(), but a failure is told to the debugger only.
    DeviceContext& operator=(DeviceContext&& other) noexcept;
    ~DeviceContext() noexcept(false);

    /// A new memory context compatible with this one (a DeviceContext fits), or with the screen for null. It is one
    /// monochrome pixel in size until a bitmap is selected. Throws "Can't create compatible DC".
    static DeviceContext createCompatible(HDC like);

    /// Becomes null in any case. Throws "Can't delete device context".
    void close();
    /// Becomes null and gives nothing back: an owned context is the caller's from now on, for `DeleteDC`, or, when it
    /// is a window's, for `ReleaseDC`.
    HDC detach() noexcept;

    /// Null for none. Lent, not given.
    ///@{
    HDC getHandle() const noexcept { return handle_; }
    operator HDC() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_; }
    bool operator!() const noexcept { return !handle_; }
    ///@}

    /// Fills with a system colour such as `COLOR_WINDOW`. Throws "Can't fill rect with system colour".
    void fillRectangle(int sysColour, const RECT& rectangle) const;
    /// Throws "Can't fill rect with system colour" (sic), whatever the brush.
    void fillRectangle(const Brush& brush, const RECT& rectangle) const;
    /// With an RGB colour, without a brush; where one is used often, a Brush kept for it is faster.
    /// Throws "Can't set back colour".
    void fillRectangle(unsigned long colour, const RECT& rectangle) const;
    /// A frame one pixel wide just inside the rectangle: top and left edges `light`, bottom and right edges
    /// `dark`, with their corners. Moves the drawing position. Throws "Can't draw line".
    void drawRectangle3D(const RECT& rectangle, unsigned long light, unsigned long dark) const;
    /// In the colours of buttons: as standing out, or as pressed in.
    void drawRectangle3D(const RECT& rectangle, bool raised) const;

    // Shapes have an outline in the selected pen, and are filled with the selected brush. What is given as a rectangle
    // reaches up to its right and bottom edges, without them.

    /// Throws "Can't draw rectangle".
    void drawRectangle(const RECT& rectangle) const;
    /// `corner` is the size of the ellipse whose quarters are the corners. Throws "Can't draw round rectangle".
    void drawRoundRectangle(const RECT& rectangle, const SIZE& corner) const;
    /// Throws "Can't draw ellipse".
    void drawEllipse(const RECT& bounds) const;
    /// A piece of the ellipse in `bounds`, counterclockwise from the ray through `from` to that through `to`: the slice
    /// with its centre, or the line alone. Throws "Can't draw pie", "Can't draw arc".
    ///@{
    void drawPie(const RECT& bounds, const POINT& from, const POINT& to) const;
    void drawArc(const RECT& bounds, const POINT& from, const POINT& to) const;
    ///@}
    /// Closes by itself. Throws "Can't draw polygon".
    void drawPolygon(std::span<const POINT> points) const;
    /// Lines alone, without a filling. Throws "Can't draw lines".
    void drawLines(std::span<const POINT> points) const;
    /// Curves from the first point on, with three more for each: two that pull it, and its end. Throws "Can't draw
    /// curves".
    void drawCurves(std::span<const POINT> points) const;
    /// Lines one pixel wide just inside, whatever the pen. Throws "Can't draw frame".
    void drawFrame(const Brush& brush, const RECT& rectangle) const;
    /// The dotted frame of what has the focus; a second call takes it away. Throws "Can't draw frame".
    void drawFocusFrame(const RECT& rectangle) const;

    /// The part that can be drawn on, in logical coordinates; AutoClip makes it smaller for a block. Throws "Can't get
    /// clipping rectangle".
    Rect getClipRectangle() const;
    /// What is behind texts and the gaps of lines: `OPAQUE` (the background colour, as it is at first) or
    /// `TRANSPARENT`. Setting it gives the old one. Throws "Can't set background mode" (the getter too).
    ///@{
    int setBackgroundMode(int mode);
    int getBackgroundMode() const;
    ///@}

    /// Setting a colour gives the old one. Throws "Can't set back colour" (sic, the getter too).
    ///@{
    unsigned long setBackgroundColour(unsigned long colour);
    unsigned long getBackgroundColour() const;
    ///@}
    /// Throws "Can't set text colour" (sic, the getter too).
    ///@{
    unsigned long setTextColour(unsigned long colour);
    unsigned long getTextColour() const;
    ///@}

    /// Gives the previous drawing position. Throws "Can't move drawing position".
    ///@{
    Point moveTo(int x, int y);
    Point moveTo(POINT to) { return moveTo(to.x, to.y); }
    ///@}
    /// Draws up to, but not including, the end point. Throws "Can't draw line".
    ///@{
    void lineTo(int x, int y) const;
    void lineTo(POINT to) const { lineTo(to.x, to.y); }
    ///@}

    /// `CLR_INVALID` outside of what can be drawn on.
    ///@{
    unsigned long getPixel(int x, int y) const;
    unsigned long getPixel(POINT at) const { return getPixel(at.x, at.y); }
    ///@}
    /// Gives the colour that the pixel got, the nearest that there is, and `CLR_INVALID` outside of what can be drawn
    /// on. For many pixels take Bitmap::withPixels().
    ///@{
    unsigned long setPixel(int x, int y, unsigned long colour) const;
    unsigned long setPixel(POINT at, unsigned long colour) const { return setPixel(at.x, at.y, colour); }
    ///@}

    /// `LOGPIXELSY`, `BITSPIXEL` and so on.
    int getCapabilities(int index) const;
    /// Whether the device shows only the colours of a palette at a time.
    bool usesPalette() const;
    /// The height to give to a Font for characters of this size; negative, as Font wants it.
    int getFontHeightFromPoints(int points) const;

    /// Draw with this object from now on. The result is the one used before, always borrowed: select it
    /// back before the new one is deleted, or let AutoSelect do it. A temporary object, `select(Pen(...))`, is gone
    /// before anything is drawn: AutoSelect keeps it. Throws "Can't select pen", "Can't select brush",
    /// "Can't select bitmap" (sic, for a font too), "Can't select palette".
    ///@{
    Pen select(HPEN pen);
    Brush select(HBRUSH brush);
    Bitmap select(HBITMAP bitmap);
    Bitmap select(const Bitmap& bitmap) { return select(bitmap.getHandle()); }
    Font select(HFONT font);
    Palette select(HPALETTE palette, bool background);
    ///@}
    /// Gives the number of the system's colours that changed. Throws "Can't realize palette".
    unsigned realizePalette();

    /// Copies from another context with a raster operation such as `SRCCOPY`. Throws "Can't blit bits".
    void blit(HDC source, int x, int y, int width, int height, int sourceX, int sourceY, unsigned long rop) const;
    /// Copies a part of another context into a rectangle of any size, smoothly. Throws "Can't stretch bits".
    void stretch(HDC source, const RECT& to, const RECT& from) const;
    /// Mixes a part of another context into a rectangle of any size: `opacity` is 0 to 255. With `perPixel` the source
    /// is a bitmap of 32 bits with an opacity for each pixel, by which its colours are multiplied already, as
    /// loadPicture() gives it. Throws "Can't blend bits".
    void blend(HDC source, const RECT& to, const RECT& from, unsigned char opacity, bool perPixel = false) const;
    /// Copies the pixels of a bitmap that are not of the transparent colour; what would come from outside of the
    /// bitmap is left out. A bitmap without colours of its own (monochrome) is shown in this context's text and
    /// background colours, and `transparentColour` is compared with these. The bitmap must not be selected into
    /// another context. On a device that uses a palette, `palette` (null: the selected one) is realized for
    /// drawing. Throws "Can't blit bits", "Can't create compatible DC", "Can't realize palette", "Can't set back
    /// colour".
    void blitTransparent(HBITMAP bitmap, int x, int y, int width, int height, int sourceX, int sourceY,
                         unsigned long transparentColour, HPALETTE palette = nullptr) const;
    /// Throws "Can't draw icon".
    void drawIcon(int x, int y, HICON icon) const;
    /// In any size; Icon::load() with a size gets the picture that fits it. Throws the same.
    void drawIcon(const RECT& rectangle, HICON icon) const;

    /// Throws "Can't retrieve text metrics".
    ///@{
    void getTextMetrics(TEXTMETRICA& metrics) const;
    void getTextMetrics(TEXTMETRICW& metrics) const;
    ///@}
    /// Throws "Can't retrieve text extent".
    ///@{
    Size getTextExtent(const char* text, unsigned length) const;
    Size getTextExtent(const wchar_t* text, unsigned length) const;
    Size getTextExtent(const char* text) const;
    Size getTextExtent(const wchar_t* text) const;
    Size getTextExtent(const std::string& text) const;
    Size getTextExtent(const std::wstring& text) const;
    ///@}
    /// Throws "Can't retrieve text alignment".
    unsigned getTextAlign() const;
    /// Where in the text the position of drawText() lies, `TA_RIGHT` for instance. Gives the old alignment.
    /// Throws "Can't set text alignment".
    unsigned setTextAlign(unsigned align);
    /// One line of text, in the selected font. Throws "Can't draw text".
    ///@{
    void drawText(int x, int y, const char* text, unsigned length) const;
    void drawText(int x, int y, const wchar_t* text, unsigned length) const;
    void drawText(int x, int y, const char* text) const;
    void drawText(int x, int y, const wchar_t* text) const;
    void drawText(int x, int y, const std::string& text) const;
    void drawText(int x, int y, const std::wstring& text) const;
    ///@}

    /// Text in a rectangle, to which it is clipped: `format` is made of `DT_...`, for alignment, for one line or
    /// several, for what is too long, and for `&` as the mark of a key. As it stands it is wrapped, at the left and
    /// from the top. Gives the height of the text. Throws "Can't draw text".
    ///@{
    int drawText(const RECT& rectangle, const char* text, unsigned format = DT_WORDBREAK | DT_NOPREFIX) const;
    int drawText(const RECT& rectangle, const wchar_t* text, unsigned format = DT_WORDBREAK | DT_NOPREFIX) const;
    ///@}
    /// The size that drawText() needs in a rectangle of this width. Throws "Can't retrieve text extent".
    ///@{
    Size getWrappedExtent(int width, const char* text, unsigned format = DT_WORDBREAK | DT_NOPREFIX) const;
    Size getWrappedExtent(int width, const wchar_t* text, unsigned format = DT_WORDBREAK | DT_NOPREFIX) const;
    ///@}

    // Between beginPath and endPath drawing collects an outline instead; then fill it, stroke it or both.
    /// Throws "Can't begin path".
    void beginPath();
    /// Throws "Can't abort path".
    void abortPath();
    /// Throws "Can't end path".
    void endPath();
    /// Throws "Can't fill path".
    void fillPath();
    /// Throws "Can't stroke and fill path".
    void strokeAndFillPath();
    /// Throws "Can't stroke path".
    void strokePath();
    /// Throws "Can't widen path".
    void widenPath();
    /// Throws "Can't flatten path".
    void flattenPath();
    /// Throws "Can't close figure".
    void closeFigure();

    /// How pens and brushes mix with what is there, `R2_XORPEN` for instance. Gives the old mode.
    /// Throws "Can't set ROP2".
    int setROP2(int mode);
    /// Throws "Can't get ROP2".
    int getROP2() const;

    /// Where the logical point (0, 0) lies, in pixels. Gives the previous origin.
    /// Throws "Can't set viewport origin".
    ///@{
    Point setViewportOrigin(int x, int y);
    Point setViewportOrigin(POINT origin) { return setViewportOrigin(origin.x, origin.y); }
    ///@}

protected:
    /// Owned: the context of the window, or, with a null one, for `DeleteDC`.
    DeviceContext(HDC handle, HWND window) noexcept : handle_(handle), window_(window), owns_(true) {}
    /// Takes a handle that something else gives back. What was held must be closed before.
    void borrow(HDC handle) noexcept { handle_ = handle; }

private:
    HDC handle_ = nullptr;
    HWND window_ = nullptr;
    bool owns_ = false;
};
} // namespace tarn
