#include <catch2/catch.hpp>

#include <tarn/Pipe.h>
#include <tarn/Thread.h>

#include "Expect.h"
#include "Handles.h"
#include "Streams.h"

using namespace tarn;

TEST_CASE("Pipe: values written to one end are read from the other until the writer is gone", "[system][pipe]")
{
    Pipe pipe(0, nullptr);
    pipe.getWriteEnd() << 42 << 2.5 << "text" << true;
    pipe.getWriteEnd().close();

    int number = 0;
    double fraction = 0;
    BasicString<char> text;
    bool flag = false;
    pipe.getReadEnd() >> number >> fraction >> text >> flag;
    CHECK(number == 42);
    CHECK(fraction == 2.5);
    CHECK(text == "text");
    CHECK(flag);
    char byte;
    CHECK(pipe.getReadEnd().read(&byte, 1) == 0);
    CHECK_THROWS_AS(pipe.getReadEnd().readInt32(), EndOfFile);
}

TEST_CASE("Pipe: more than the buffer holds goes through while another thread reads", "[system][pipe]")
{
    class Reader : public Thread {
    public:
        explicit Reader(WindowsFile& end) : end_(end) {}
        unsigned long run() override { return static_cast<unsigned long>(readAll(end_).size()); }

    private:
        WindowsFile& end_;
    };
    Pipe pipe(512, nullptr);
    Reader reader(pipe.getReadEnd());
    reader.start(false);
    const std::string data(300'000, 'x');
    CHECK(pipe.getWriteEnd().write(data.data(), 300'000) == 300'000);
    pipe.getWriteEnd().close();
    CHECK(reader.join() == 300'000);
}

TEST_CASE("Pipe: create closes the pair held before, and nothing stays open at the end", "[system][pipe]")
{
    const unsigned long handles = support::openHandles();
    {
        Pipe pipe;
        CHECK_FALSE(pipe.getReadEnd().isOpen());
        pipe.create(0, nullptr);
        pipe.create(0, nullptr);
        CHECK(support::openHandles() == handles + 2);
        pipe.close();
        CHECK(support::openHandles() == handles);
        pipe.create(0, nullptr);
    }
    CHECK(support::openHandles() == handles);
}

TEST_CASE("Pipe: failing calls name themselves", "[system][pipe]")
{
    Pipe pipe(0, nullptr);
    pipe.getReadEnd().close();
    const auto error = support::thrownBy<WindowsError>([&] { pipe.getWriteEnd().write("abc", 3); });
    CHECK((error.getError() == ERROR_NO_DATA || error.getError() == ERROR_BROKEN_PIPE));
    CHECK(std::string(error.getDescription()) == "Error while writing 3 bytes");
    const auto noHandle = support::thrownBy<WindowsError>([&] { pipe.keepReadEnd(); });
    CHECK(std::string(noHandle.getDescription()) == "Can't keep the pipe end from child processes");
}

TEST_CASE("Pipe: when none can be created both ends are closed", "[system][pipe]")
{
    if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version")) {
        WARN("Wine's CreatePipe does not fail: it tries again for ever");
        return;
    }
    Pipe pipe(0, nullptr);
    SECURITY_DESCRIPTOR unknownRevision{};
    unknownRevision.Revision = 99;
    SECURITY_ATTRIBUTES bad{sizeof bad, &unknownRevision, FALSE};
    support::expectWindowsError([&] { pipe.create(0, &bad); }, ERROR_INVALID_SECURITY_DESCR, "Can't create pipe");
    CHECK_FALSE(pipe.getWriteEnd().isOpen());
}
