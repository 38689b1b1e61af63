#include "Driving.h"
#include "ScratchFolder.h"
#include "Test.h"
#include "TestPrinter.h"

#include <tarn/PrintDialog.h>
#include <tarn/Window.h>

#include <cderr.h>
#include <dlgs.h>

namespace {
bool contains(const std::string& printed, const char* what) { return printed.find(what) != std::string::npos; }
} // namespace

TEST_CASE("PrinterContext: the pages of a document are printed, and none of one that an exception leaves")
{
    const TestPrinter installed;
    const ScratchFolder folder;
    PrinterContext printer(TestPrinter::name);
    CHECK(printer.getDPI().getDots() == 300);
    const Rect page = printer.getPageRectangle(), paper = printer.getPaperRectangle();
    CHECK((page.getWidth() > 2000 && paper.left < 0 && paper.getWidth() > page.getWidth()));
    SECTION("to their end")
    {
        printer.setUnits(Size(100, 100));
        Point corner(100, 100);
        LPtoDP(printer, &corner, 1);
        CHECK((corner.x == page.right && corner.y == page.right));     // The page is higher than wide.
        const BasicString<wchar_t> file = folder.file(L"o\u20ACt.ps"); // In the system's code page.
        PrintedDocument document(printer, "Plan", w2a(file.c_str(), CP_ACP).c_str());
        for (int number = 1; number <= 2; ++number) {
            const PrintedPage printed(printer);
            printer.drawRectangle(Rect(10, 10, 20, 20));
        }
        document.end();
        document.end();
        std::filesystem::rename(file.c_str(), folder.path() / "out.ps");
        CHECK((contains(folder.read("out.ps"), "%%Pages: 2") && contains(folder.read("out.ps"), "%%EOF")));
    }
    SECTION("and a handler throws")
    {
        const auto fail = [&] {
            const PrintedDocument document(printer, L"Plan", (folder.path() / L"out.ps").c_str());
            const PrintedPage printed(printer);
            throw std::runtime_error("in drawing");
        };
        expectError<std::runtime_error>(fail, "in drawing");
        const PrinterContext again(TestPrinter::name);
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
    dialog.setPages(0, 0x12345);
    CHECK(dialog.getPages() == std::pair(0u, 0xFFFEu));
    dialog.setPages(1, 9);
    {
        const Driver driver(pressing(IDCANCEL));
        CHECK((!dialog.showModal() && !dialog.getPrinter()));
    }
    {
        const Driver driver(pressing(IDOK));
        CHECK((dialog.showModal() && dialog.getPrinter() && !dialog.isSelectionWanted()));
        CHECK(dialog.getPages() == std::pair(1u, 9u));
    }
    const Driver driver([&] {
        const HWND shown = visibleDialog();
        return shown && SendDlgItemMessageW(shown, rad3, BM_CLICK, 0, 0) == 0 && SetDlgItemInt(shown, edt1, 3, FALSE) &&
               SetDlgItemInt(shown, edt2, 5, FALSE) && pressing(IDOK)();
    });
    CHECK((dialog.showModal() && dialog.getPages() == std::pair(3u, 5u)));
}

// Last, because Wine remembers the error for a dialog that is cancelled later.
TEST_CASE("PrintDialog: says that there is no printer")
{
    PrintDialog dialog;
    CHECK(thrownBy<CommonDialogError>([&] { dialog.takeDefault(); }).getError() == PDERR_NODEFAULTPRN);
}
