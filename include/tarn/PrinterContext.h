#pragma once

#include <tarn/DPI.h>
#include <tarn/DeviceContext.h>
#include <tarn/Export.h>
#include <tarn/Rect.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

namespace tarn {
/// A printer to draw on, a page at a time:
///
///     const PrinterContext printer(L"Office");
///     PrintedDocument document(printer, L"Plan");
///     for (int number = 1; number <= 2; ++number) {
///         PrintedPage page(printer);
///         printer.drawText(0, 0, std::to_wstring(number));
///     }
///     document.end();
///
/// Coordinates are pixels, of which a printer has many: getDPI() converts, for lengths and for the heights of fonts.
/// PrintDialog asks the user for a printer. Failures throw WindowsError, also out of destructors.
class TARN_API PrinterContext : public DeviceContext {
public:
    /// By its name, as the user reads it. Throws "Can't open printer".
    ///@{
    explicit PrinterContext(const char* printer);
    explicit PrinterContext(const wchar_t* printer);
    ///@}
    /// Takes over a printer's context.
    explicit PrinterContext(HDC printer) noexcept : DeviceContext(printer, HWND()) {}
    PrinterContext(const PrinterContext&) = delete;
    /// Takes over what the other one has.
    ///@{
    PrinterContext(PrinterContext&& other) noexcept = default;
    PrinterContext& operator=(PrinterContext&& other) noexcept = default;
    ///@}

    /// Of the printer.
    DPI getDPI() const;
    /// What can be printed on. Its upper left corner is at (0, 0).
    Rect getPageRectangle() const;
    /// The whole sheet of paper, which begins above and to the left of that.
    Rect getPaperRectangle() const;
    /// From now on a coordinate is not a pixel: the page holds as many of these units in both directions, as large as
    /// fits. Throws "Can't set units of page".
    void setUnits(const SIZE& units);
};

/// What is printed, until the object ends. When an exception ends the block nothing is printed, or nothing more, as far
/// as the printer has not begun.
class TARN_API PrintedDocument : private boost::noncopyable {
public:
    /// The name is what the list of what is to be printed shows. With `file` it goes to a file instead. Throws "Can't
    /// begin printing".
    ///@{
    PrintedDocument(HDC printer, const char* name, const char* file = nullptr);
    PrintedDocument(HDC printer, const wchar_t* name, const wchar_t* file = nullptr);
    ///@}
    /// As end(), or as abort() when an exception ends the block.
    ~PrintedDocument() noexcept(false);

    /// All pages are there. Does nothing the second time. Throws "Can't end printing".
    void end();
    /// Prints nothing, for instance when the user cancels.
    void abort() noexcept;

private:
    void begin(const wchar_t* name, const wchar_t* file);

    HDC printer_;
    int exceptions_;
    bool isOpen_ = true;
};

/// A page of a PrintedDocument, until the object ends.
class TARN_API PrintedPage : private boost::noncopyable {
public:
    /// Throws "Can't begin page".
    explicit PrintedPage(HDC printer);
    /// As end(); when an exception ends the block, the document is not printed anyway.
    ~PrintedPage() noexcept(false);

    /// Does nothing the second time. Throws "Can't end page", also when the user has taken the document off the list.
    void end();

private:
    HDC printer_;
    int exceptions_;
    bool isOpen_ = true;
};
} // namespace tarn
