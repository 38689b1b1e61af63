#include "Test.h"

#include <tarn/CommandLine.h>
#include <tarn/FileSystem.h>
#include <tarn/LogFile.h>
#include <tarn/RunProcess.h>

#include <regex>
#include <thread>

#include "ScratchFolder.h"

namespace {
std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0, end; (end = text.find("\r\n", begin)) != text.npos; begin = end + 2)
        lines.push_back(text.substr(begin, end - begin));
    return lines;
}

/// What stands between level and place in the lines of a log.
std::vector<std::string> textsOf(const std::string& log)
{
    std::vector<std::string> texts;
    for (const std::string& line : linesOf(log)) {
        const std::size_t begin = line.find("] ") + 2;
        texts.push_back(line.substr(begin, line.rfind(" (") - begin));
    }
    return texts;
}
} // namespace

TEST_CASE("LogFile: a line has time, thread, level, text and place, and is one line")
{
    const ScratchFolder folder;
    LogFile log(folder.file(L"\x0416.log"));
    log.info("begins");
    const auto all = [&] {
        FileSystem::copy(folder.file(L"\x0416.log"), folder.file(L"copy"), {.replace = true});
        return folder.read("copy");
    };
    const std::regex form(
        R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z \[\d+\] INFO begins \(LogFileTests\.cpp:\d+\)\r\n)");
    CHECK(std::regex_match(all(), form));
    log.debug("left out");
    log.setLevel(LogLevel::debug);
    log.debug(L"\x0416");
    log.warning("one\r\ntwo\n2026-01-01 ERROR forged");
    log.error(WindowsError(ERROR_ACCESS_DENIED, "Can't"));
    log.write(LogLevel::error, static_cast<const char*>(nullptr));
    log.info(L"\x0416");
    log.warning(L"\x0416");
    log.error(L"\x0416");
    std::vector<std::string> texts = textsOf(all());
    REQUIRE(texts.size() == 8);
    CHECK(texts[1] == "DEBUG \xD0\x96");
    CHECK(texts[2] == "WARNING one\\ntwo\\n2026-01-01 ERROR forged");
    CHECK(texts[3].starts_with("ERROR Can't: "));
    CHECK(texts[4] == "ERROR ");
    CHECK((texts[5] == "INFO \xD0\x96" && texts[6] == "WARNING \xD0\x96" && texts[7] == "ERROR \xD0\x96"));
    CHECK(log.getLostLines() == 0);
}

TEST_CASE("LogFile: a file that is full is renamed, and so many are kept")
{
    const ScratchFolder folder;
    folder.write("a.log", std::string(90, 'o') + "\r\n"); // From before.
    {
        LogFile log(folder.file(L"a.log"), {.rotateAt = 100, .keep = 2});
        for (const char* const text : {"first", "second", "third"})
            log.info(text);
    }
    CHECK(textsOf(folder.read("a.log")) == std::vector<std::string>{"INFO third"});
    CHECK(textsOf(folder.read("a.log.1")) == std::vector<std::string>{"INFO second"});
    CHECK(textsOf(folder.read("a.log.2")) == std::vector<std::string>{"INFO first"});
    CHECK_FALSE(FileSystem::exists(folder.file(L"a.log.3")));

    const auto write = [](LogFile& log) { log.info("as long as any"); };
    LogFile measured(folder.file(L"e.log"));
    write(measured);
    const auto length = FileSystem::getEntry(folder.file(L"e.log")).size;
    LogFile full(folder.file(L"f.log"), {.rotateAt = 2 * length});
    for (const unsigned lines : {1u, 2u, 1u}) { // Two lines fit exactly.
        write(full);
        CHECK(FileSystem::getEntry(folder.file(L"f.log")).size == lines * length);
    }

    LogFile small(folder.file(L"d.log"), {.rotateAt = 1, .keep = 1});
    small.info("first");
    CHECK_FALSE(FileSystem::exists(folder.file(L"d.log.1"))); // Nothing empty is put aside.

    LogFile alone(folder.file(L"b.log"), {.rotateAt = 1, .keep = 0});
    alone.info("first");
    alone.info("second");
    CHECK(textsOf(folder.read("b.log")) == std::vector<std::string>{"INFO second"});

    LogFile read(folder.file(L"c.log"), {.rotateAt = 100});
    const WindowsFile reader(folder.file(L"c.log"), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_EXISTING, 0, nullptr); // Who reads it keeps its name.
    for (int i = 0; i < 5; ++i)
        read.info("grows");
    CHECK(textsOf(folder.read("c.log")).size() == 5);
}

TEST_CASE("LogFile: lines of several threads stay whole")
{
    const ScratchFolder folder;
    {
        LogFile log(folder.file(L"a.log"));
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread)
            threads.emplace_back([&] {
                for (int i = 0; i < 200; ++i)
                    log.info("whole");
            });
        for (std::thread& thread : threads)
            thread.join();
    }
    const std::vector<std::string> texts = textsOf(folder.read("a.log"));
    CHECK(texts.size() == 800);
    CHECK(std::count(texts.begin(), texts.end(), "INFO whole") == 800);
}

TEST_CASE("LogFile: a line that cannot be written throws nothing, and the next one tells of it, once")
{
    const ScratchFolder folder;
    CHECK_THROWS_AS(LogFile(folder.file(L"none\\a.log")), WindowsError);
    FileSystem::createFolder(
        folder.file(L"a.log.1")); // So that the file cannot be renamed, of which the debugger hears.
    LogFile log(folder.file(L"a.log"), {.rotateAt = 1, .keep = 1});
    log.info("first");
    for (const int lost : {2, 1}) {
        {
            WindowsFile other;
            const DebuggerOutput output([&] { // At this moment the log is closed.
                if (!other.isOpen())
                    other = WindowsFile::openToChange(folder.file(L"a.log"));
            });
            for (int i = 0; i < lost; ++i)
                log.info("lost");
        }
        log.info("written");
    }
    CHECK(log.getLostLines() == 3);
    std::string told;
    for (const std::string& line : linesOf(folder.read("a.log")))
        told += line.ends_with(" lines could not be written") ? line[line.find(' ') + 1] : '.';
    CHECK(told == ".2.1.");
}

TEST_CASE("ends with a log", "[.]") // The child of the next one.
{
    LogFile log(L"end.log");
    log.logTermination();
    std::thread([] { throw std::runtime_error("nobody catches this"); }).join();
}

TEST_CASE("LogFile: what ends the program is in the log")
{
    const ScratchFolder folder;
    const std::wstring path = folder.path();
    const RunResult result =
        runProcess(CommandLine(ownProgram()).add("ends with a log"), {.start = {.workingFolder = path.c_str()}});
    CHECK(result.errors.contains("nobody catches this")); // The runtime library goes on with it.
    CHECK(textsOf(folder.read("end.log")) ==
          std::vector<std::string>{"ERROR The program ends by an exception that nobody catches:",
                                   "ERROR nobody catches this"});
}

TEST_CASE("LogFile: a handler gets the texts, too, and may fail")
{
    const ScratchFolder folder;
    std::vector<std::wstring> texts;
    const auto keep = [&](LogLevel level, const wchar_t* text) {
        texts.push_back((level == LogLevel::error ? L"!" : L"") + std::wstring(text));
        throw std::runtime_error("the handler fails");
    };
    LogFile log(folder.file(L"log"), {.onText = keep});
    log.debug("left out");
    log.info(L"\x0416");
    log.error("two\nlines");
    CHECK(texts == std::vector<std::wstring>{L"\x0416", L"!two\nlines"});
    CHECK(log.getLostLines() == 0);
}
