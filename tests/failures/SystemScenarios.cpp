#include "Campaign.h"

#include <tarn/AtomicFile.h>
#include <tarn/BasicString.h>
#include <tarn/Event.h>
#include <tarn/EventLog.h>
#include <tarn/FileSystem.h>
#include <tarn/IniString.h>
#include <tarn/LocalMemory.h>
#include <tarn/Lock.h>
#include <tarn/MappedFile.h>
#include <tarn/MemoryStream.h>
#include <tarn/Pipe.h>
#include <tarn/Process.h>
#include <tarn/RunProcess.h>
#include <tarn/Semaphore.h>
#include <tarn/Service.h>
#include <tarn/SingleInstance.h>
#include <tarn/TemporaryDirectory.h>
#include <tarn/TemporaryFile.h>
#include <tarn/Thread.h>
#include <tarn/TimeZone.h>
#include <tarn/VersionInfo.h>
#include <tarn/WaitableTimer.h>
#include <tarn/WindowsFile.h>
#include <tarn/WindowsModule.h>

#include <cstring>

namespace failures {
namespace {
constexpr char content[] = "twenty-one characters";

void saveAndLoad(const WorkPlace& place)
{
    const std::wstring path = place.file(L"file.txt");
    {
        tarn::WindowsFile file(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        file.writeFully(content, sizeof content);
        file.flush();
        file.close();
    }
    tarn::WindowsFile file(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    char read[sizeof content];
    expect(file.getSize() == sizeof content, "the size differs");
    file.readFully(read, 10);
    file.setFilePointer(0, tarn::Seekable::begin);
    file.readFully(read, sizeof content);
    expect(!std::memcmp(read, content, sizeof content), "other bytes came back");
    file.close();
}

void askAboutFiles(const WorkPlace& place)
{
    const std::string path = place.narrowFile("asked.txt");
    tarn::WindowsFile(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr).close();
    expect(!tarn::WindowsFile::isDirectory(path.c_str()), "the file is a folder");
    expect(tarn::WindowsFile::getSize(path.c_str()) == 0, "the file is not empty");
    tarn::WindowsFile::getShortPath(path.c_str());
    expect(tarn::WindowsFile::getFullPath(path.c_str()) == path, "the full path differs");
}

void mapFile(const WorkPlace& place)
{
    const std::wstring name = place.file(L"mapped");
    tarn::WindowsFile::createNew(name.c_str()).write("x", 1);
    tarn::MappedFile file(name.c_str(), tarn::MappedFile::write);
    file.getWritableData()[0] = std::byte('y');
    file.flush();
}

void useTemporaries(const WorkPlace& place)
{
    tarn::TemporaryFile file("campaign");
    expect(!file.getPathW().empty(), "no path");
    file.remove();
    const tarn::TemporaryDirectory folder(place.file(L"").c_str(), L"tmp");
    const tarn::BasicString<wchar_t> inside = tarn::BasicString<wchar_t>(folder) + L"\\inside.txt";
    tarn::WindowsFile(inside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr).close();
}

void saveAndCopyTree(const WorkPlace& place)
{
    const std::wstring from = place.file(L"tree"), inside = from + L"\\file", to = place.file(L"copy");
    tarn::FileSystem::createFolder(from.c_str());
    tarn::AtomicFile::save(inside.c_str(), content, sizeof content);
    expect(tarn::FileSystem::copy(from.c_str(), to.c_str()), "ended");
    expect(tarn::FileSystem::getEntry((to + L"\\file").c_str()).size == sizeof content, "the size differs");
    expect(tarn::FileSystem::remove(to.c_str()), "ended");
    expect(tarn::FileSystem::remove(from.c_str()), "ended");
}

void useModules(const WorkPlace&)
{
    tarn::WindowsModule loaded("version.dll", true);
    expect(loaded.getProcAddress("GetFileVersionInfoW", false) != nullptr, "no entry point");
    expect(!loaded.getFilenameW().empty(), "no file name");
    loaded.close();
    expect(tarn::WindowsModule(L"resources.dll", LOAD_LIBRARY_AS_DATAFILE).isOwner(), "not owned");
    expect(tarn::BasicString<wchar_t>::fromResource(1, tarn::WindowsModule("resources.dll", true).getHandle()) ==
               L"Short",
           "another text");
    const tarn::WindowsModule present(L"kernelbase.dll", false);
    expect(!present.getMessageA(ERROR_FILE_NOT_FOUND, 0).empty(), "no message");
}

void readResource(const WorkPlace&)
{
    const tarn::WindowsModule data(L"resources.dll", true);
    const HRSRC found = data.findResource("BINARY", 7);
    expect(data.getResourceSize(found) == 7, "another size");
    expect(!std::memcmp(data.getResourcePointer(found), "payload", 7), "other bytes");
}

void readVersion(const WorkPlace&)
{
    const tarn::VersionInfo version(L"kernel32.dll");
    expect(version.FileVersion().major != 0, "no version");
}

void lockMemory(const WorkPlace&)
{
    tarn::LocalMemory memory(LocalAlloc(LMEM_MOVEABLE, 16), true);
    std::memset(memory.lock(), 0, 16);
    memory.unlock();
    expect(!memory.getFlags().isDiscarded(), "discarded");
    memory.free();
}

void signalAndLock(const WorkPlace&)
{
    tarn::Event event(true, false);
    event.set();
    expect(event.isSignaled(), "not signaled");
    event.reset();
    tarn::Mutex mutex(false);
    {
        tarn::AutoLock lock(mutex);
        lock.unlock();
    }
    expect(tarn::WindowsHandle::wait(event, mutex, 0, false).second == 1, "the mutex is not free");
    mutex.unlock();
    event.close();
}

void waitForOthers(const WorkPlace&)
{
    const tarn::Semaphore semaphore(L"tarn-campaign semaphore", 1, 2);
    semaphore.acquire();
    semaphore.release();
    expect(tarn::Semaphore::openNamed(L"tarn-campaign semaphore").tryAcquire(), "not free");
    const tarn::WaitableTimer timer(true);
    timer.set(0);
    expect(timer.wait(10000) == tarn::WindowsHandle::signaled, "not signaled");
    timer.cancel();
    const tarn::Event event(L"tarn-campaign event", true, false);
    tarn::Event::openNamed(L"tarn-campaign event").set();
    expect(event.isSignaled(), "another event");
    tarn::SingleInstance first(L"tarn-campaign");
    expect(first.isFirst() && !tarn::SingleInstance(L"tarn-campaign").isFirst(), "not alone");
    expect(!first.receive(0), "received");
}

struct Counting : tarn::Thread {
    ~Counting() override
    {
        try {
            join();
        } catch (const std::exception&) { // The first failure is on its way already.
        }
    }
    unsigned long run() override { return 42; }
};

void runThread(const WorkPlace&)
{
    Counting thread;
    thread.start(false);
    expect(thread.join() == 42, "another exit code");
    thread.start(true);
    try {
        thread.resume();
    } catch (...) {
        ResumeThread(thread.getHandle()); // Or nobody could wait for it.
        throw;
    }
    expect(thread.join() == 42, "another exit code");
}

void runProcess(const WorkPlace&)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    tarn::Pipe pipe(0, &inheritable);
    pipe.keepReadEnd();
    tarn::Process child;
    child.create(FAILURES_CHILD, nullptr, pipe.getWriteEnd(), nullptr, 0);
    pipe.getWriteEnd().close();
    tarn::MemoryOutputStream output;
    output << pipe.getReadEnd();
    child.wait(INFINITE);
    expect(child.getExitCode() == 0, "another exit code");
    expect(output.getSize() != 0, "no output");
}

void captureProcess(const WorkPlace&)
{
    const tarn::RunResult result = tarn::runProcess(tarn::BasicString<wchar_t>(FAILURES_CHILD));
    expect(result.exitCode == 0, "another exit code");
    expect(!result.output.empty(), "no output");
}

void askServices(const WorkPlace&)
{
    tarn::ServiceManager manager(static_cast<const char*>(nullptr), SC_MANAGER_ALL_ACCESS);
    const auto services = manager.getServices();
    expect(!services.empty(), "no services");
    tarn::Service service;
    service.open(manager, services.front().name, SERVICE_QUERY_CONFIG);
    expect(service.getConfiguration().displayName == services.front().displayName, "another name");
    service.create(manager, "tarn-campaign", "Campaign", SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS,
                   SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE, "C:\\no-such-program.exe", nullptr, nullptr, nullptr,
                   nullptr, nullptr);
    service.remove();
    service.close();
    manager.close();
}

void useEventLog(const WorkPlace&)
{
    const tarn::EventLog events(L"tarn-campaign");
    events.report(tarn::EventLog::information, L"text");
    tarn::EventLog::read(L"tarn-campaign", 1);
}

void useIniFile(const WorkPlace& place)
{
    const std::string path = place.narrowFile("settings.ini");
    tarn::setIniString(path.c_str(), "Window", "Width", "640");
    expect(tarn::getIniString(path.c_str(), "Window", "Width", "") == "640", "another value");
}

void askZone(const WorkPlace&)
{
    tarn::TimeZone::current();
    tarn::TimeZone::currentForYear(2024);
}
} // namespace

std::vector<Scenario> systemScenarios()
{
    return {{"save and load a file", saveAndLoad},
            {"ask about files", askAboutFiles},
            {"mapped file", mapFile},
            {"temporary file and folder", useTemporaries},
            {"saved and copied tree", saveAndCopyTree},
            {"modules", useModules},
            {"resources", readResource},
            {"version of a file", readVersion},
            {"local memory", lockMemory},
            {"event and mutex", signalAndLock},
            {"waits for others", waitForOthers},
            {"thread", runThread},
            {"child process", runProcess},
            {"captured process", captureProcess},
            {"service", askServices},
            {"event log", useEventLog},
            {"INI file", useIniFile},
            {"time zone", askZone}};
}
} // namespace failures
