#pragma once

#include <tarn/Windows.h>

#include <string>

namespace support {
/// A PostScript printer with Wine's driver, which prints into a file; the default one for as long as it lives.
class TestPrinter {
public:
    static constexpr const wchar_t* name = L"Tarn++ test";

    TestPrinter();
    TestPrinter(const TestPrinter&) = delete;
    TestPrinter& operator=(const TestPrinter&) = delete;
    ~TestPrinter();

private:
    std::wstring file_;
    HANDLE handle_ = nullptr;
};
} // namespace support
