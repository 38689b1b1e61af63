#include "Test.h"

#include "Contents.h"

#include "ScratchFolder.h"

#include <tarn/LowLevelIOStream.h>
#include <tarn/StdIOStream.h>

#include <cerrno>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

using Text = BasicString<char>;

namespace {
/// Asserts that `call` throws a CRTError with this code, and the text that goes with it.
template <class Call> void expectCRTError(Call call, int code, const std::string& description)
{
    const auto error = thrownBy<CRTError>(call);
    CHECK(error.getError() == code);
    CHECK(std::string(error.what()) == description + ": " + std::strerror(code));
}

/// What both kinds of files do: `file` is new and open for reading and writing.
template <class Stream> void checkPositions(Stream& file, const ScratchFolder& folder)
{
    static_assert(!std::is_convertible_v<Stream, bool>); // Or values would not go into the stream.
    file << '0' << static_cast<short>(0x3231);
    CHECK(file.write("3456789", 7) == 7);
    file.flush();
    CHECK(folder.read("file") == "0123456789");
    CHECK(file.seek(-7, Seekable::current) == 3);
    unsigned short number = 0;
    file >> number;
    CHECK(number == 0x3433);
    CHECK(file.getSize() == 10);
    CHECK(file.getFilePointer() == 5);
    CHECK(file.seek(-1, Seekable::end) == 9);
    CHECK(take(file, 5) == "9");
    CHECK(take(file, 5).empty());
    CHECK_THROWS_AS(file.readInt32(), EndOfFile);
}
} // namespace

TEST_CASE("File streams: a file written is read back at any position")
{
    const ScratchFolder folder;
    SECTION("through the runtime library's buffers")
    {
        StdIOStream file(folder.file(L"file").c_str(), L"w+b");
        checkPositions(file, folder);
        CHECK(file.seek(0x300000002, Seekable::begin) == 2);
    }
    SECTION("through a descriptor")
    {
        LowLevelFileStream file;
        file.open(folder.file("file").c_str(), _O_RDWR | _O_CREAT | _O_BINARY, _S_IREAD | _S_IWRITE);
        checkPositions(file, folder);
        CHECK(file.skip(-2) == 8);
        CHECK(file.seek(0x300000000, Seekable::begin) == 0x300000000);
        file.close();
        CHECK_FALSE(file.isOpen());
        CHECK_NOTHROW(file.close());
    }
}

TEST_CASE("StdIOStream: failures tell the operation and the cause")
{
    const ScratchFolder folder;
    const std::string missing = folder.file("a.txt");
    const std::string message = "Can't open stdio file \"" + missing + "\" with ops \"rb\"";
    StdIOStream file(folder.write("b", "abc").c_str(), "rb");
    expectCRTError([&] { file.open(missing.c_str(), "rb"); }, ENOENT, message);
    CHECK_FALSE(file.isOpen());
    expectCRTError([&] { StdIOStream(folder.file(L"a.txt").c_str(), L"rb"); }, ENOENT, message);

    file.open(folder.file("b").c_str(), "r+b");
    expectCRTError([&] { file.setFilePointer(-5000000001, Seekable::begin); }, EINVAL, "fseek(-5000000001,0) failed");
    expectCRTError([&] { file.setFilePointer(-5, Seekable::end); }, EINVAL, "fseek(-5,2) failed");
    file.write("abc", 3);
    _close(_fileno(file.getHandle()));
    expectCRTError([&] { file.flush(); }, EBADF, "Can't flush stdio file");
    expectCRTError([&] { file.getFilePointer(); }, EBADF,
                   "Can't tell the current file pointer position in StdIOStream::tell");

    StdIOStream none, waiting(folder.file("waiting").c_str(), "wb");
    char buffer[4] = {};
    CHECK(none.read(buffer, 4) == 0);
    CHECK(none.write(buffer, 4) == 0);
    waiting.write(buffer, 4);
    none.flush();
    CHECK(folder.read("waiting").empty()); // Not of the process's other files.
    expectCRTError([&] { none.setFilePointer(1, Seekable::current); }, EBADF, "fseek(1,1) failed");
    CHECK_THROWS_AS(none.getFilePointer(), CRTError);
    CHECK_NOTHROW(none.close());
}

TEST_CASE("StdIOStream: closes the file that it owns, and only that")
{
    const ScratchFolder folder;
    const auto isOpen = [](const std::string& name) { return _unlink(name.c_str()) != 0; };
    for (const bool isWide : {false, true}) {
        const std::string first = folder.write("first", "abc"), second = folder.write("second", "xyz"),
                          third = folder.write("third", "");
        const auto open = [isWide](StdIOStream& stream, const std::string& name) {
            isWide ? stream.open(BasicString<wchar_t>(name), L"rb") : stream.open(name.c_str(), "rb");
        };
        StdIOStream stream(fopen(first.c_str(), "rb")), other;
        CHECK(isOpen(first));
        open(stream, second);
        CHECK_FALSE(isOpen(first));
        FILE* const file = stream.detach();
        CHECK(take(stream, 3) == "xyz");
        stream.close();
        CHECK(!stream);
        CHECK(isOpen(second));
        open(other, third);
        other.attach(file);
        CHECK_FALSE(isOpen(third));
        other.close();
        CHECK_FALSE(isOpen(second));
    }
}

TEMPLATE_TEST_CASE("File streams: a move hands the file on, and closes the one that was there", "", StdIOStream,
                   LowLevelFileStream)
{
    static_assert(std::is_nothrow_move_assignable_v<TestType>);
    const ScratchFolder folder;
    const std::string first = folder.write("first", "abc"), second = folder.write("second", "xyz");
    const auto opened = [](const std::string& name) {
        TestType stream;
        if constexpr (std::is_same_v<TestType, StdIOStream>)
            stream.open(name.c_str(), "rb");
        else
            stream.open(name.c_str(), _O_RDONLY);
        return stream;
    };
    std::vector<TestType> streams;
    for (const std::string& name : {first, second})
        streams.push_back(opened(name));
    TestType& stream = streams.front();
    stream = std::move(stream);
    CHECK(take(stream, 3) == "abc");
    stream = std::move(streams.back());
    CHECK(_unlink(first.c_str()) == 0);
    CHECK_FALSE(streams.back().isOpen());
    CHECK(take(stream, 3) == "xyz");
    streams.clear();
    CHECK(_unlink(second.c_str()) == 0);
}

TEST_CASE("LowLevelIOStream: a file that it makes can be written again, unless its permission says otherwise")
{
    const ScratchFolder folder;
    const auto accessOf = [&](const char* name, auto... mode) {
        const std::string file = folder.file(name);
        LowLevelFileStream(file.c_str(), _O_RDWR | _O_CREAT | _O_BINARY, mode...).close();
        const int access = _access(file.c_str(), 2);
        _chmod(file.c_str(), _S_IREAD | _S_IWRITE);
        return access;
    };
    CHECK(accessOf("usual") == 0);
    CHECK(accessOf("permitted", _S_IREAD | _S_IWRITE) == 0);
    CHECK(accessOf("protected", _S_IREAD) == -1);
}

TEST_CASE("LowLevelIOStream: failures tell the operation and the cause")
{
    const ScratchFolder folder;
    const std::string missing = folder.file("a.txt");
    LowLevelFileStream file(folder.write("b", "abc").c_str(), _O_RDONLY);
    expectCRTError([&] { file.seek(-5000000001, Seekable::begin); }, EINVAL,
                   "Fehler in LowLevelIOStream::seek(-5000000001,0)\n");
    expectCRTError([&] { file.write("abc", 3); }, EBADF,
                   Text::fromFormat("Error in LowLevelIOStream::write(%p,3)", "abc"));
    expectCRTError([&] { file.open(missing.c_str(), _O_RDWR | _O_BINARY); }, ENOENT,
                   "Fehler in LowLevelIOStream::open(" + missing + ",8002)\n");
    CHECK_FALSE(file.isOpen());
    file.open(folder.file("b").c_str(), _O_RDONLY);
    expectCRTError([&] { file.open(missing.c_str(), _O_RDWR, _S_IREAD); }, ENOENT,
                   "Fehler in LowLevelIOStream::open(" + missing + ",2)\n");
    CHECK_FALSE(file.isOpen());
    char buffer[4];
    expectCRTError([&] { file.read(buffer, 4); }, EBADF,
                   Text::fromFormat("Fehler in LowLevelIOStream::read(%p,4)", buffer));
    expectCRTError([&] { file.flush(); }, EBADF, "Can't flush");
}

TEST_CASE("LowLevelIOStream: a close that fails throws, from the destructor, too")
{
    const ScratchFolder folder;
    const std::string name = folder.write("f", "abc");
    // The lowest free descriptor is the one that the stream gets.
    const int descriptor = _open(name.c_str(), _O_RDONLY);
    _close(descriptor);
    const auto destroy = [&](bool alreadyFailing = false) {
        LowLevelFileStream file(name.c_str(), _O_RDONLY);
        CHECK(file.getHandle() == descriptor);
        _close(descriptor);
        expectCRTError([&] { file.close(); }, EBADF, "LowLevelIOStream::close()");
        if (alreadyFailing)
            throw std::runtime_error("first");
    };
    expectCRTError(destroy, EBADF, "LowLevelIOStream::close()");
    expectError<std::runtime_error>([&] { destroy(true); }, "first");

    LowLevelFileStream file(name.c_str(), _O_RDONLY);
    CHECK(file.detach() == descriptor);
    CHECK_FALSE(file.isOpen());
    const std::string former = folder.write("former", "");
    file.open(former.c_str(), _O_RDONLY);
    file.attach(descriptor);
    CHECK(_unlink(former.c_str()) == 0);
    _close(descriptor);
    CHECK_NOTHROW(file = LowLevelFileStream());
    CHECK_FALSE(file.isOpen());
}
