// Files, pipes and threads against the calls of the platform that they stand for.

#include <catch2/catch.hpp>

#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Thread.h>
#include <tarn/WindowsFile.h>
#include <tarn/WindowsModule.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Growth.h"
#include "Ratios.h"

using namespace tarn;

namespace {
constexpr unsigned pipedMegabytes = 1024;
char megabyte[1 << 20];

/// Writes and reads a file of `total` bytes in pieces of `piece` bytes.
void fileRows(bench::Ratios& ratios, const std::string& pieces, unsigned piece, unsigned total)
{
    const TemporaryFile temporary(L"");
    WindowsFile file(temporary.getPathW().c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
    const unsigned count = total / piece;
    const auto rewind = [&] { SetFilePointer(file.getHandle(), 0, nullptr, FILE_BEGIN); };
    ratios.row(
        "WindowsFile::write, " + pieces, 1.05,
        [&] {
            rewind();
            for (unsigned i = 0; i < count; ++i)
                file.write(megabyte, piece);
        },
        [&] {
            rewind();
            DWORD written = 0;
            for (unsigned i = 0; i < count; ++i)
                WriteFile(file.getHandle(), megabyte, piece, &written, nullptr);
        });
    ratios.row(
        "WindowsFile::read, " + pieces, 1.05,
        [&] {
            rewind();
            for (unsigned i = 0; i < count; ++i)
                file.read(megabyte, piece);
        },
        [&] {
            rewind();
            DWORD read = 0;
            for (unsigned i = 0; i < count; ++i)
                ReadFile(file.getHandle(), megabyte, piece, &read, nullptr);
        });
}

/// This program, as a child that writes to its standard output (see below).
std::string writerCommand()
{
    return '"' + WindowsModule(static_cast<HINSTANCE>(nullptr)).getFilenameA() + "\" \"a child that writes\"";
}

unsigned long long readThroughPipe()
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    Pipe pipe(65536, &inheritable);
    pipe.keepReadEnd();
    Process child;
    child.create(writerCommand().c_str(), nullptr, pipe.getWriteEnd(), nullptr, 0);
    pipe.getWriteEnd().close();
    unsigned long long total = 0;
    while (const unsigned count = pipe.getReadEnd().read(megabyte, 65536))
        total += count;
    child.wait(INFINITE);
    return total;
}

unsigned long long readThroughRawPipe()
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    CreatePipe(&readEnd, &writeEnd, &inheritable, 65536);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writeEnd;
    PROCESS_INFORMATION child{};
    std::string command = writerCommand();
    CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &child);
    CloseHandle(child.hThread);
    CloseHandle(writeEnd);
    unsigned long long total = 0;
    DWORD count = 0;
    while (ReadFile(readEnd, megabyte, 65536, &count, nullptr) && count)
        total += count;
    WaitForSingleObject(child.hProcess, INFINITE);
    CloseHandle(child.hProcess);
    CloseHandle(readEnd);
    return total;
}

constexpr unsigned filesInFolder = 5000;

/// A temporary folder with empty files in it.
TemporaryDirectory filledFolder(unsigned files = filesInFolder)
{
    TemporaryDirectory folder(nullptr, L"tar");
    const std::wstring prefix = static_cast<const wchar_t*>(folder) + std::wstring(L"\\file ");
    for (unsigned i = 0; i < files; ++i)
        CloseHandle(
            CreateFileW((prefix + std::to_wstring(i)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    return folder;
}

void deleteByHand(const std::wstring& folder)
{
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &entry);
    do {
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            DeleteFileW((folder + L'\\' + entry.cFileName).c_str());
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    RemoveDirectoryW(folder.c_str());
}

void deletionRow(bench::Ratios& ratios)
{
    ratios.row(
        "TemporaryDirectory: delete 5,000 files", 1.1,
        [](bench::Stopwatch& watch) {
            std::optional<TemporaryDirectory> folder(filledFolder());
            watch.start();
            folder.reset();
            watch.stop();
        },
        [](bench::Stopwatch& watch) {
            const std::wstring folder = filledFolder().detach().c_str();
            watch.start();
            deleteByHand(folder);
            watch.stop();
        },
        bench::Clock::wall);
}

DWORD WINAPI idle(void*) { return 0; }

struct Idle : Thread {
    ~Idle() noexcept(false) override { join(); }
    unsigned long run() override { return 0; }
};
} // namespace

TEST_CASE("system")
{
    bench::Ratios ratios("System: against the platform's own calls");
    fileRows(ratios, "16 MB in pieces of 4 KB", 4096, 16 << 20);
    fileRows(ratios, "64 MB in pieces of 1 MB", sizeof megabyte, 64 << 20);

    deletionRow(ratios);

    constexpr unsigned threads = 1000;
    ratios.row(
        "Thread: 1000 times start and join", 1.2,
        [] {
            Idle thread;
            for (unsigned i = 0; i < threads; ++i) {
                thread.start(false);
                thread.join();
            }
        },
        [] {
            for (unsigned i = 0; i < threads; ++i) {
                const HANDLE thread = CreateThread(nullptr, 0, idle, nullptr, 0, nullptr);
                WaitForSingleObject(thread, INFINITE);
                CloseHandle(thread);
            }
        },
        bench::Clock::wall);

    const auto enough = [](unsigned long long bytes) { REQUIRE(bytes >= 1ull * pipedMegabytes << 20); };
    ratios.row(
        "Pipe: 1 GB from a child, 64 KB at a time", 1.05, [&] { enough(readThroughPipe()); },
        [&] { enough(readThroughRawPipe()); }, bench::Clock::wall);
}

TEST_CASE("a child that writes", "[.]")
{
    DWORD written = 0;
    for (unsigned i = 0; i < pipedMegabytes; ++i)
        WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), megabyte, sizeof megabyte, &written, nullptr);
}

namespace {
/// Starts so many threads, and joins them when all run.
auto startingThreads(unsigned count)
{
    return [count] {
        std::vector<std::unique_ptr<Idle>> threads(count);
        for (auto& thread : threads) {
            thread = std::make_unique<Idle>();
            thread->start(false);
        }
    };
}
auto startingRawThreads(unsigned count)
{
    return [count] {
        std::vector<HANDLE> threads(count);
        for (HANDLE& thread : threads)
            thread = CreateThread(nullptr, 0, idle, nullptr, 0, nullptr);
        for (const HANDLE thread : threads) {
            WaitForSingleObject(thread, INFINITE);
            CloseHandle(thread);
        }
    };
}
} // namespace

TEST_CASE("system: growth", "[.growth]")
{
    const bench::Growth threads("Threads, started and joined", "threads", bench::Clock::wall);
    // The stacks of a thousand that run at once do not fit into a 32-bit program.
    const std::vector<unsigned> counts = bench::tens(0, sizeof(void*) == 8 ? 3 : 2);
    threads.line("library", counts, startingThreads);
    threads.line("calls by hand", counts, startingRawThreads);

    const bench::Growth folders("Deleting a folder", "files", bench::Clock::wall);
    folders.line("TemporaryDirectory", bench::tens(1, 4), [](unsigned size) {
        return [size](bench::Stopwatch& watch) {
            std::optional<TemporaryDirectory> folder(filledFolder(size));
            watch.start();
            folder.reset();
            watch.stop();
        };
    });
    folders.line("loop by hand", bench::tens(1, 4), [](unsigned size) {
        return [size](bench::Stopwatch& watch) {
            const std::wstring folder = filledFolder(size).detach().c_str();
            watch.start();
            deleteByHand(folder);
            watch.stop();
        };
    });
}
