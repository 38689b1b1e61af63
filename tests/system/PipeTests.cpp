#include "Test.h"

#include <tarn/Pipe.h>
#include <tarn/StandardStreams.h>

#include <thread>

TEST_CASE("Pipe: more than the buffer holds goes through, until the writer is gone")
{
    Pipe pipe(512, nullptr);
    const std::string data(300'000, 'x');
    std::string received;
    std::thread reader([&] { received = readAll(pipe.getReadEnd()); });
    pipe.getWriteEnd().writeFully(data.data(), 300'000);
    pipe.getWriteEnd().close();
    reader.join();
    CHECK(received == data);
    CHECK_THROWS_AS(pipe.getReadEnd().readInt32(), EndOfFile);
}

TEST_CASE("Pipe: create closes the pair held before, and nothing stays open at the end")
{
    const unsigned long handles = openHandles();
    {
        Pipe pipe;
        pipe.create(0, nullptr);
        pipe.create(0, nullptr);
        CHECK(openHandles() == handles + 2);
        pipe.close();
        CHECK(openHandles() == handles);
        pipe.create(0, nullptr);
    }
    CHECK(openHandles() == handles);
}

TEST_CASE("Pipe: a wait for data ends with them, with the last writer or with its time")
{
    Pipe pipe(0, nullptr);
    CHECK_FALSE(pipe.waitForData(20));
    std::thread writer([&] {
        Sleep(30);
        pipe.getWriteEnd().write("x", 1);
    });
    CHECK(pipe.waitForData(INFINITE));
    writer.join();
    char byte;
    CHECK(pipe.getReadEnd().read(&byte, 1) == 1);
    pipe.getWriteEnd().close();
    CHECK(pipe.waitForData(INFINITE));
    pipe.close();
    expectWindowsError([&] { pipe.waitForData(0); }, "Can't look into the pipe");
}

TEST_CASE("Pipe: failing calls name themselves")
{
    Pipe pipe(0, nullptr);
    pipe.getReadEnd().close();
    const auto error = thrownBy<WindowsError>([&] { pipe.getWriteEnd().write("abc", 3); });
    CHECK((error.getError() == ERROR_NO_DATA || error.getError() == ERROR_BROKEN_PIPE));
    CHECK(std::string(error.getDescription()) == "Error while writing 3 bytes");
    expectWindowsError([&] { pipe.keepReadEnd(); }, "Can't keep the pipe end from child processes");
}
