#include "Tour.h"

#include <tarn/BasicString.h>
#include <tarn/ErrorReport.h>
#include <tarn/ErrorTrace.h>
#include <tarn/Exception.h>
#include <tarn/Lock.h>
#include <tarn/VersionInfo.h>
#include <tarn/WindowsFile.h>
#include <tarn/WindowsModule.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <thread>

using tarn::BasicString;
using tarn::StringHelper;

namespace {
void showBytes(const char* label, const BasicString<char>& text)
{
    std::printf("  %-22s", label);
    for (const char c : text)
        std::printf(" %02x", static_cast<unsigned char>(c));
    std::printf("\n");
}

void convertText()
{
    const BasicString<wchar_t> greeting = L"Gr\x00FC\x00DF dich, \x043C\x0438\x0440 \xD83D\xDE00";
    const auto utf8 = StringHelper<char>::convert(greeting, ~0u, CP_UTF8);
    std::printf("\"%s\", %u UTF-16 units, in three code pages (what a code page lacks becomes '?', 3f):\n",
                utf8.c_str(), static_cast<unsigned>(greeting.size()));
    showBytes("UTF-8", utf8);
    showBytes("1251, Cyrillic", StringHelper<char>::convert(greeting, ~0u, 1251));
    showBytes("the system's own", BasicString<char>(greeting));
    std::printf("  and back from UTF-8: %s\n", tarn::a2w(utf8, CP_UTF8) == greeting ? "the same" : "different!");
}

void workWithText()
{
    const BasicString<char> line = "  name=Ada Lovelace; born=1815  ";
    std::cout << "From \"" << line << "\":\n"
              << "  second field    " << line.trim().substring(";", 1).trim() << '\n'
              << "  born before 1900 " << (line.substring("born=", 1).toInt() < 1900 ? "yes" : "no") << '\n'
              << "  filled in       "
              << BasicString<char>("%1 was born in %2 (100%%).").format("Ada", BasicString<char>(1815, 10)) << '\n';
    std::cout << "Paths:\n";
    for (const char* relative : {"notes.txt", "..\\pictures\\cat.png", "..\\..\\..\\autoexec.bat", "D:\\other"})
        std::cout << "  C:\\home\\ada + " << relative << " = "
                  << BasicString<char>::mergePath("C:\\home\\ada", relative) << '\n';
}

template <class Failing> void showFailure(const char* label, Failing failing)
{
    try {
        failing();
        std::printf("  %-20s no failure?\n", label);
    } catch (const std::exception& e) {
        std::printf("  %-20s %s\n", label, e.what());
    }
}

void writeNowhere()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
}

void fail()
{
    std::cout << "Failures, each caught as a std::exception:\n";
    showFailure("a missing file", [] {
        const HANDLE file = CreateFileA("C:\\no\\such\\file.txt", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        if (file == INVALID_HANDLE_VALUE)
            throw tarn::WindowsError("Can't open the file");
        CloseHandle(file);
    });
    showFailure("a missing DLL", [] { tarn::WindowsModule("no-such-library.dll", true); });
    showFailure("a network code", [] { throw tarn::WindowsError(2221, "Can't look up the user"); });
    showFailure("a COM result", [] { tarn::HRESULTHolder::throwOnError(CO_E_NOTINITIALIZED, "Can't create"); });
    showFailure("the runtime library", [] {
        if (_open("C:\\no\\such\\file.txt", _O_RDONLY) == -1)
            throw tarn::CRTError(errno, "Can't open the file");
    });
    void (*volatile writing)() = writeNowhere; // A program made by Clang catches no fault of code that it sees here.
    try {
        writing();
    } catch (const tarn::SEHError& e) {
        std::printf("  %-20s %s, and the program goes on\n", "a null pointer", e.getReport().c_str());
    }
}

void openPlan() { tarn::WindowsFile::getAttributes(L"C:\\plans\\\x4E2D\x6587.txt"); }

void report()
{
    tarn::ErrorTrace::enable(); // From now on errors know who called.
    try {
        try {
            openPlan();
        } catch (const std::exception&) {
            std::throw_with_nested(tarn::Exception("The plan was not opened"));
        }
    } catch (const std::exception& e) {
        const tarn::ErrorReport report = tarn::reportOf(e);
        std::cout << "The same for a user: " << tarn::w2a(report.sentence, CP_UTF8)
                  << "\nand for a log, with the frames of the call:\n"
                  << tarn::w2a(report.paragraph, CP_UTF8) << '\n';
    }
    tarn::ErrorTrace::enable(false);
}

void lock()
{
    tarn::CriticalSection section;
    int sum = 0;
    const auto add = [&] {
        for (int i = 0; i < 100000; ++i) {
            const tarn::AutoLock held(section);
            ++sum;
        }
    };
    std::thread first(add), second(add);
    first.join();
    second.join();
    std::cout << "Two threads counted to " << sum << " together under one lock.\n";
}

void showVersion()
{
    const tarn::WindowsModule module("shell32.dll", true);
    const BasicString<char> name = module.getFilenameA();
    const tarn::VersionInfo info(name);
    const tarn::VersionInfo::Version& version = info.FileVersion();
    std::cout << name << " has version " << version.major << '.' << version.minor << '.' << version.build << '.'
              << version.revision << ".\n";
}

const tour::Section section(10, "Foundation: strings, errors, locks, modules", [] {
    convertText();
    workWithText();
    fail();
    report();
    lock();
    showVersion();
});
} // namespace
