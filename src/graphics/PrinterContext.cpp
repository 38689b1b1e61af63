#include <tarn/PrinterContext.h>

#include <tarn/BasicString.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Widened.h"

#include <exception>
#include <utility>

namespace tarn {
namespace {
HDC openPrinter(const wchar_t* printer)
{
    return ensureGDI([=] { return CreateDCW(L"WINSPOOL", printer, nullptr, nullptr); }, "Can't open printer");
}

template <class Call> void ensurePrinting(Call call, const char* what)
{
    ensureClearing(
        call, [](int result) { return result <= 0; }, what);
}
} // namespace

PrinterContext::PrinterContext(const char* printer) : PrinterContext(widened(printer).c_str()) {}
PrinterContext::PrinterContext(const wchar_t* printer) : PrinterContext(openPrinter(printer)) {}

DPI PrinterContext::getDPI() const { return DPI(static_cast<unsigned>(GetDeviceCaps(*this, LOGPIXELSX))); }
Rect PrinterContext::getPageRectangle() const
{
    return Rect(0, 0, GetDeviceCaps(*this, HORZRES), GetDeviceCaps(*this, VERTRES));
}
Rect PrinterContext::getPaperRectangle() const
{
    const Size size(GetDeviceCaps(*this, PHYSICALWIDTH), GetDeviceCaps(*this, PHYSICALHEIGHT));
    return Rect(Point(-GetDeviceCaps(*this, PHYSICALOFFSETX), -GetDeviceCaps(*this, PHYSICALOFFSETY)), size);
}

void PrinterContext::setUnits(const SIZE& units)
{
    const Size page = getPageRectangle().getSize();
    const auto set = [&] {
        return SetMapMode(*this, MM_ISOTROPIC) && SetWindowExtEx(*this, units.cx, units.cy, nullptr) &&
               SetViewportExtEx(*this, page.cx, page.cy, nullptr);
    };
    ensureGDI(set, "Can't set units of page");
}

PrintedDocument::PrintedDocument(HDC printer, const char* name, const char* file)
    : printer_(printer), exceptions_(std::uncaught_exceptions())
{
    begin(widened(name).c_str(), file ? widened(file).c_str() : nullptr);
}
PrintedDocument::PrintedDocument(HDC printer, const wchar_t* name, const wchar_t* file)
    : printer_(printer), exceptions_(std::uncaught_exceptions())
{
    begin(name, file);
}
PrintedDocument::~PrintedDocument() noexcept(false)
{
    if (std::uncaught_exceptions() > exceptions_)
        abort();
    else
        closeAtEnd([this] { end(); });
}

void PrintedDocument::begin(const wchar_t* name, const wchar_t* file)
{
    DOCINFOW info{};
    info.cbSize = sizeof info;
    info.lpszDocName = name;
    info.lpszOutput = file;
    ensurePrinting([&] { return StartDocW(printer_, &info); }, "Can't begin printing");
}
void PrintedDocument::end()
{
    if (std::exchange(isOpen_, false))
        ensurePrinting([this] { return EndDoc(printer_); }, "Can't end printing");
}
void PrintedDocument::abort() noexcept
{
    if (std::exchange(isOpen_, false))
        AbortDoc(printer_);
}

PrintedPage::PrintedPage(HDC printer) : printer_(printer), exceptions_(std::uncaught_exceptions())
{
    ensurePrinting([=] { return StartPage(printer); }, "Can't begin page");
}
PrintedPage::~PrintedPage() noexcept(false)
{
    if (std::uncaught_exceptions() <= exceptions_)
        closeAtEnd([this] { end(); });
}
void PrintedPage::end()
{
    if (std::exchange(isOpen_, false))
        ensurePrinting([this] { return EndPage(printer_); }, "Can't end page");
}
} // namespace tarn
