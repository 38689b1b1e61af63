#include "TestPrinter.h"

#include "Wine.h"

#include <catch2/catch.hpp>

#include <winspool.h>

#include <cstdio>

namespace support {
namespace {
constexpr const wchar_t* driverName = L"PS Driver";

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
} // namespace

TestPrinter::TestPrinter()
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
    printer.pPrinterName = text(name);
    printer.pPortName = text(L"FILE:");
    printer.pDriverName = text(driverName);
    printer.pPrintProcessor = text(wineVersion() == 8 ? L"WinPrint" : L"wineps"); // Later ones have one of their own.
    printer.pDatatype = text(L"RAW");
    printer.pShareName = printer.pComment = printer.pLocation = text(L"");
    handle_ = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    REQUIRE(handle_);
    SetDefaultPrinterW(name);
}

TestPrinter::~TestPrinter()
{
    DeletePrinter(handle_);
    ClosePrinter(handle_);
    DeletePrinterDriverExW(nullptr, nullptr, text(driverName), 0, 0);
    DeleteFileW(file_.c_str());
}
} // namespace support
