// Keeps a copy of a folder up to date, by hand or as a service:
//
//     backup install C:\Data D:\Copy      registers the service, which saves every hour
//     backup remove
//     backup once C:\Data D:\Copy         saves once, and says what was done
//     backup C:\Data D:\Copy              saves every hour until Ctrl+C
//
// Only files whose size or time has changed are copied. What was saved stands in "index.txt" beside the copies, and
// what was done in "backup.log". After each saving a command is run, if "backup.ini" there has one, for so many seconds
// at most:
//
//     [After]
//     Command=...
//     Seconds=60

#include "Index.h"

#include <tarn/ChangeList.h>
#include <tarn/CommandLine.h>
#include <tarn/EventLog.h>
#include <tarn/Exception.h>
#include <tarn/FileSystem.h>
#include <tarn/LogFile.h>
#include <tarn/RunProcess.h>
#include <tarn/Service.h>
#include <tarn/ServiceProgram.h>
#include <tarn/Settings.h>

#include <iostream>

namespace {
using namespace tarn;
using Path = BasicString<wchar_t>;
using Words = std::vector<Path>;

constexpr const wchar_t* serviceName = L"TarnExampleBackup";
constexpr unsigned hourMs = 60 * 60 * 1000;

/// The folder, its copy, and what is known of both.
class Backup {
public:
    Backup(const Path& from, const Path& to)
        : from_(from), to_(to), log_((to + L"\\backup.log").c_str(),
                                     {.rotateAt = 1'000'000, .onText = [this](LogLevel level, const wchar_t* text) {
                                          if (level == LogLevel::error)
                                              events_.report(EventLog::error, text);
                                      }})
    {
        log_.logTermination();
        settings_.declareText(L"Command", L"");
        settings_.declareNumber(L"Seconds", 60, 1, 24 * 60 * 60);
        settings_.load();
    }

    /// Copies what is new until `stop` is signaled; the number of files copied.
    unsigned save(const Event& stop)
    {
        log_.info(L"Saving " + from_);
        const Index former = Index::read((to_ + L"\\index.txt").c_str());
        Index index;
        unsigned copied = 0;
        for (const FolderEntry& entry : FolderWalk(from_, {.recursive = true, .skipUnreadable = true})) {
            if (stop.isSignaled())
                return copied; // The former index still holds: nothing counts as saved that is not.
            const Path inside(entry.path.substr(from_.size() + 1));
            if (!entry.isFolder() && !former.knows(inside, entry)) {
                copy(entry, inside);
                ++copied;
            }
            if (!entry.isFolder())
                index.note(inside, entry);
        }
        index.save((to_ + L"\\index.txt").c_str());
        log_.info((std::to_string(copied) + " files copied").c_str());
        runCommand(stop);
        return copied;
    }

    LogFile& log() { return log_; }

private:
    void copy(const FolderEntry& entry, const Path& inside)
    {
        const Path target = to_ + L"\\files\\" + inside;
        FileSystem::createFolder(target.getDirectory());
        FileSystem::copy(entry.path, target, {.replace = true});
    }

    void runCommand(const Event& stop)
    {
        const Path command = settings_.getText(L"Command");
        if (command.empty())
            return;
        const RunResult result =
            runProcess(command, {.timeoutMs = 1000 * static_cast<unsigned>(settings_.getNumber(L"Seconds")),
                                 .stop = &stop,
                                 .mergeErrors = true});
        if (result.timedOut || result.stopped)
            log_.warning(L"Had to be ended: " + command);
        log_.info(("The command ended with " + std::to_string(result.exitCode) + ": " + result.output).c_str());
    }

    const Path from_, to_;
    Settings settings_{std::make_unique<IniSettingsStore>((to_ + L"\\backup.ini").c_str(), L"After")};
    const EventLog events_{serviceName};
    LogFile log_;
};

/// The program that saves again and again.
class Program : public ServiceProgram {
public:
    Program(const Path& from, const Path& to) : ServiceProgram(serviceName), backup_(from, to) {}

    unsigned long run(const Words&) override
    {
        do {
            try {
                backup_.save(getStopEvent());
            } catch (const std::exception& error) { // The next time it may go well.
                backup_.log().error(error);
            }
        } while (getStopEvent().wait(hourMs) == WindowsHandle::timeout);
        return 0;
    }

private:
    Backup backup_;
};

void createService(const CommandLine& line)
{
    Service service;
    service.create(ServiceManager(nullptr, SC_MANAGER_CREATE_SERVICE), serviceName, L"Example backup",
                   SERVICE_ALL_ACCESS, SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL, line,
                   nullptr, nullptr, nullptr, nullptr, nullptr);
    service.setDescription(L"Keeps a copy of a folder up to date.");
}

void removeService()
{
    Service service;
    service.open(ServiceManager(nullptr, SC_MANAGER_CONNECT), serviceName, DELETE);
    service.remove();
}

void install(const Words& words)
{
    const auto full = [&](std::size_t word) { return WindowsFile::getFullPath(words[word].c_str()); };
    const CommandLine line = CommandLine(full(0)).add("--service").add(full(2)).add(full(3));
    ChangeList changes; // Not the one without the other.
    changes.add(
        L"Install the service", [&] { createService(line); }, &removeService);
    changes.add(
        L"Make the event log know it", [] { EventLog::registerSource(serviceName); }, [] {});
    changes.apply();
}

void remove()
{
    removeService();
    EventLog::unregisterSource(serviceName);
}

int start(const Words& words)
{
    const Path command = words.size() > 1 ? words[1] : Path();
    if (command == L"remove") {
        remove();
    } else if (words.size() == 4 && command == L"install") {
        install(words);
    } else if (words.size() == 4 && command == L"once") {
        FileSystem::createFolder(words[3]);
        std::cout << Backup(words[2], words[3]).save(Event(true, false)) << " files copied\n";
    } else if (words.size() >= 3) {
        const Path &from = words[words.size() - 2], &to = words.back();
        FileSystem::createFolder(to);
        return Program(from, to).main();
    } else {
        std::cerr << "usage: backup [install|once] FROM TO, or backup remove\n";
        return 2;
    }
    return 0;
}
} // namespace

int main()
{
    try {
        return start(CommandLine::own());
    } catch (const std::exception& error) {
        std::cerr << "backup: " << w2a(whatW(error), CP_UTF8) << '\n';
        return 1;
    }
}
