// Files, processes, services and threads.

#include "Tour.h"

#include <tarn/AtomicFile.h>
#include <tarn/Event.h>
#include <tarn/Exception.h>
#include <tarn/FileSystem.h>
#include <tarn/FolderWatch.h>
#include <tarn/LogFile.h>
#include <tarn/MappedFile.h>
#include <tarn/RunProcess.h>
#include <tarn/Semaphore.h>
#include <tarn/Service.h>
#include <tarn/SingleInstance.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/Thread.h>
#include <tarn/WaitableTimer.h>
#include <tarn/WindowsFile.h>

#include <atomic>
#include <iostream>
#include <thread>

namespace {
using namespace tarn;

void showFiles()
{
    const TemporaryDirectory folder(nullptr, L"tar");
    const BasicString<wchar_t> path(folder);
    std::cout << "A temporary folder, gone at the end of its scope: " << BasicString<char>(folder) << '\n';

    WindowsFile file((path + L"\\numbers.bin").c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
    for (int i = 1; i <= 1000; ++i)
        file << i * i;
    file.seek(4 * 41, Seekable::begin);
    const int square = file.readInt32();
    std::cout << "numbers.bin: " << file.getSize() << " bytes; the number at byte 164 is " << square << '\n';
    file.close();
    const MappedFile mapped((path + L"\\numbers.bin").c_str());
    std::cout << "  looked at as memory: " << std::to_integer<int>(mapped.getData()[164]) << " + 256 * "
              << std::to_integer<int>(mapped.getData()[165]) << '\n';

    WindowsFile log((path + L"\\read me.txt").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_READONLY,
                    nullptr);
    log.writeFully("please\n", 7);
    log.close();
    FileSystem::createFolder(path + L"\\empty");
    LogFile(path + L"\\tour.log").info("A line with time, thread, level and place");
    FolderWatch watch(path);
    AtomicFile::save(path + L"\\saved whole.txt", "or not at all\n", 14);
    for (const FolderEntry& entry : FolderWalk(path, {.recursive = true}))
        std::cout << "  " << (entry.isFolder() ? "folder " : "file   ")
                  << (entry.attributes & FILE_ATTRIBUTE_READONLY ? "read-only " : "writable  ")
                  << BasicString<char>(entry.name) << ", " << entry.size << " bytes\n";
    for (const FolderChange& change : watch.getChanges(60'000))
        if (change.what == FolderChange::renamed)
            std::cout << "Seen meanwhile: " << BasicString<char>(change.oldName) << " became "
                      << BasicString<char>(change.name) << '\n';
    try {
        log.open((path + L"\\read me.txt").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    } catch (const WindowsError& e) {
        std::cout << "Writing to it again: " << e.what() << '\n';
    }
}

void showProcess()
{
    const wchar_t* const command = L"cmd.exe /c echo Hello from a child process& exit 7";
    const RunResult result = runProcess(command, RunOptions{.timeoutMs = 60'000});
    std::cout << BasicString<char>(command) << "\n  printed \"" << result.output.trim() << "\" and ended with code "
              << result.exitCode << '\n';
}

class Counter : public Thread {
public:
    ~Counter() noexcept(false) override
    {
        stop = true;
        join();
    }
    unsigned long run() override
    {
        while (!stop)
            ++count;
        return 42;
    }

    std::atomic<bool> stop = false;
    std::atomic<unsigned> count = 0;
};

void showThread()
{
    Counter counter;
    counter.start(true);
    std::cout << "A thread started suspended is running: " << std::boolalpha << counter.isRunning()
              << ", and counted to " << counter.count << '\n';
    counter.resume();
    while (counter.count < 1'000'000)
        Sleep(1);
    counter.suspend();
    Sleep(20); // It may take a moment to stop.
    const unsigned before = counter.count;
    Sleep(20);
    std::cout << "Resumed it passed 1,000,000; suspended again it counted " << counter.count - before
              << " further in 20 ms\n";
    counter.resume();
    counter.stop = true;
    std::cout << "Joined, it returned " << counter.join() << '\n';
}

void showWaiting()
{
    const Event stop(true, false);
    const WaitableTimer timer(false);
    const Semaphore free(2, 2);
    timer.set(20);
    const auto [result, index] = WindowsHandle::waitForAny({stop, timer}, 60'000);
    std::cout << "Of a stop and a timer number " << index << " ended the wait; of two free places "
              << free.tryAcquire() + free.tryAcquire() + free.tryAcquire() << " were taken by three\n";

    SingleInstance first(L"Tarn.Tour");
    std::thread second([] { SingleInstance(L"Tarn.Tour").handOver({L"tour", L"again.txt"}, 60'000); });
    const auto arguments = first.receive(60'000);
    second.join();
    if (first.isFirst() && arguments)
        std::cout << "A second start would have opened " << BasicString<char>(arguments->back()) << '\n';
}

void showServices()
{
    std::cout << "Services that run:";
    for (const ServiceEntry& service :
         ServiceManager(nullptr, SC_MANAGER_ENUMERATE_SERVICE).getServices(SERVICE_WIN32, SERVICE_ACTIVE))
        std::cout << ' ' << BasicString<char>(service.name);
    std::cout << '\n';
}

const tour::Section section(50, "System: files, processes, services, threads", [] {
    showFiles();
    showProcess();
    showServices();
    showThread();
    showWaiting();
});
} // namespace
