#include "Driving.h"
#include "ScratchFolder.h"
#include "Test.h"

#include <tarn/PrintDialog.h>
#include <tarn/Window.h>

#include <cderr.h>
#include <winspool.h>

#include <cstdio>

namespace {
constexpr const wchar_t *driverName = L"PS Driver", *printerName = L"Tarn++ test";

// As little as a PostScript printer has to say of itself.
constexpr const char* description = R"ppd(*PPD-Adobe: "4.3"
*LanguageLevel: "3"
*ColorDevice: True
*TTRasterizer: Type42
*DefaultResolution: 300dpi
*OpenUI *PageSize: PickOne
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageSize
*DefaultImageableArea: A4
*ImageableArea A4/A4: "18 18 577 824"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*DefaultFont: Courier
*Font Courier: Standard "(002.004S)" Standard ROM
)ppd";

wchar_t* text(const wchar_t* constant) { return const_cast<wchar_t*>(constant); }

/// A PostScript printer with Wine's driver, which prints into a file.
class TestPrinter {
public:
    TestPrinter()
    {
        DWORD size = 0;
        wchar_t folder[MAX_PATH] = L"";
        GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(folder), sizeof folder, &size);
        file_ = std::wstring(folder) + L"\\3";
        CreateDirectoryW(file_.c_str(), nullptr);
        file_ += L"\\tarn-test.ppd";
        std::FILE* const file = _wfopen(file_.c_str(), L"wb");
        REQUIRE(file);
        std::fputs(description, file);
        std::fclose(file);
        DRIVER_INFO_3W driver{};
        driver.cVersion = 3;
        driver.pName = text(driverName);
        driver.pDriverPath = driver.pConfigFile = text(L"wineps.drv");
        driver.pDataFile = text(L"tarn-test.ppd");
        driver.pDefaultDataType = text(L"RAW");
        driver.pHelpFile = driver.pMonitorName = driver.pDependentFiles = text(L"\0");
        const DWORD copying = APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY;
        REQUIRE(AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver), copying));
        PRINTER_INFO_2W printer{};
        printer.pPrinterName = text(printerName);
        printer.pPortName = text(L"FILE:");
        printer.pDriverName = text(driverName);
        printer.pPrintProcessor =
            text(wineVersion() == 8 ? L"WinPrint" : L"wineps"); // Later ones have one of their own.
        printer.pDatatype = text(L"RAW");
        printer.pShareName = printer.pComment = printer.pLocation = text(L"");
        handle_ = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
        REQUIRE(handle_);
        SetDefaultPrinterW(printerName);
    }
    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;
    ~TestPrinter()
    {
        DeletePrinter(handle_);
        ClosePrinter(handle_);
        DeletePrinterDriverExW(nullptr, nullptr, text(driverName), 0, 0);
        DeleteFileW(file_.c_str());
    }

private:
    std::wstring file_;
    HANDLE handle_ = nullptr;
};

bool contains(const std::string& printed, const char* what) { return printed.find(what) != std::string::npos; }
} // namespace

TEST_CASE("PrinterContext: the pages of a document are printed, and none of one that an exception leaves")
{
    const TestPrinter installed;
    const ScratchFolder folder;
    const std::wstring file = folder.path().wstring() + L"\\out.ps";
    PrinterContext printer(printerName);
    CHECK(printer.getDPI().getDots() == 300);
    const Rect page = printer.getPageRectangle(), paper = printer.getPaperRectangle();
    CHECK((page.getWidth() > 2000 && paper.left < 0 && paper.getWidth() > page.getWidth()));
    SECTION("to their end")
    {
        printer.setUnits(Size(100, 100));
        Point corner(100, 100);
        LPtoDP(printer, &corner, 1);
        CHECK((corner.x == page.right && corner.y == page.right)); // The page is higher than wide.
        PrintedDocument document(printer, L"Pl\u00E4ne", file.c_str());
        for (int number = 1; number <= 2; ++number) {
            const PrintedPage printed(printer);
            printer.drawRectangle(Rect(10, 10, 20, 20));
        }
        document.end();
        document.end();
        CHECK((contains(folder.read("out.ps"), "%%Pages: 2") && contains(folder.read("out.ps"), "%%EOF")));
    }
    SECTION("and a handler throws")
    {
        const auto fail = [&] {
            const PrintedDocument document(printer, "Plan", folder.file("out.ps").c_str());
            const PrintedPage printed(printer);
            throw std::runtime_error("in drawing");
        };
        expectError<std::runtime_error>(fail, "in drawing");
        const PrinterContext again(printerName);
        PrintedDocument(again, "Next", folder.file("next.ps").c_str()).abort();
        CHECK((!contains(folder.read("out.ps"), "%%EOF") && !contains(folder.read("next.ps"), "%%EOF")));
    }
}

TEST_CASE("PrinterContext: what no printer does is named")
{
    expectWindowsError([] { PrinterContext("No such printer"); }, "Can't open printer");
    const DeviceContext screen(nullptr, false);
    expectWindowsError([&] { PrintedDocument(screen, L"x"); }, "Can't begin printing");
    const auto printPage = [&] { PrintedPage{screen}; };
    expectWindowsError(printPage, isWine() ? "Can't end page" : "Can't begin page");
}

TEST_CASE("PrintDialog: gives the printer and the pages that the user wants")
{
    const TestPrinter installed;
    PrintDialog dialog;
    dialog.takeDefault();
    CHECK((dialog.getPrinter() && dialog.getPrinter().getDPI().getDots() == 300));
    dialog.setPages(1, 9);
    const auto answer = [](WPARAM button) {
        return [button] {
            const HWND shown = visibleDialog();
            return shown && PostMessageW(shown, WM_COMMAND, button, 0);
        };
    };
    {
        const Driver driver(answer(IDCANCEL));
        CHECK((!dialog.showModal() && !dialog.getPrinter()));
    }
    const Driver driver(answer(IDOK));
    CHECK((dialog.showModal() && dialog.getPrinter() && !dialog.isSelectionWanted()));
    CHECK(dialog.getPages() == std::pair(1u, 9u));
}

// Last, because Wine remembers the error for a dialog that is cancelled later.
TEST_CASE("PrintDialog: says that there is no printer")
{
    PrintDialog dialog;
    CHECK(thrownBy<CommonDialogError>([&] { dialog.takeDefault(); }).getError() == PDERR_NODEFAULTPRN);
}
