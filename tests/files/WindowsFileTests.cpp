#include "Test.h"

#include <tarn/FileSystem.h>
#include <tarn/WindowsFile.h>

#include <winioctl.h>

#include "ScratchFolder.h"

namespace {
constexpr unsigned long long fourGB = 1ull << 32;

void openFor(WindowsFile& file, const auto& name, unsigned long access, unsigned long creation)
{
    file.open(name, access, FILE_SHARE_READ, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// The path of a file in a folder, in either width.
template <class Ch> BasicString<Ch> fileIn(const ScratchFolder& folder, const std::string& name)
{
    return folder.file(std::basic_string_view<Ch>(std::basic_string<Ch>(name.begin(), name.end())));
}
} // namespace

TEMPLATE_TEST_CASE("WindowsFile: what is written can be read back from any position", "", char, wchar_t)
{
    const ScratchFolder folder;
    const auto name = fileIn<TestType>(folder, "some file.bin");
    WindowsFile file(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    CHECK(file.write("0123456789", 10) == 10);
    file.flush();
    char buffer[16] = {};
    CHECK(file.read(buffer, 4) == 0);
    CHECK_THROWS_AS(file.readFully(buffer, 4), EndOfFile);
    CHECK(file.seek(-3, Seekable::end) == 7);
    CHECK(file.read(buffer, sizeof buffer) == 3);
    CHECK(std::string(buffer) == "789");
    file.setFilePointer(-5, Seekable::current);
    CHECK(file.getSize() == 10);
    CHECK(file.getFilePointer() == 5);

    file.close();
    CHECK_FALSE(file.isOpen());
    CHECK(WindowsFile::getSize(name) == 10);
    CHECK_FALSE(WindowsFile::isDirectory(name));
    CHECK(WindowsFile::isDirectory(fileIn<TestType>(folder, "")));
}

TEMPLATE_TEST_CASE("WindowsFile: the named ways to open make, empty, keep and share as they say", "", char, wchar_t)
{
    const ScratchFolder folder;
    const auto name = fileIn<TestType>(folder, "file");
    const auto readBeside = [&] {
        WindowsFile(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    };
    expectWindowsError([&] { WindowsFile::openToRead(name); }, ERROR_FILE_NOT_FOUND,
                       "Can't open \"" + folder.file("file") + "\"");
    {
        WindowsFile made = WindowsFile::createNew(name);
        CHECK_THROWS_AS(readBeside(), WindowsError);
        made.write("12345", 5);
    }
    expectWindowsError([&] { WindowsFile::createNew(name); }, ERROR_FILE_EXISTS,
                       "Can't open \"" + folder.file("file") + "\"");
    WindowsFile::openToChange(name).write("ab", 2);
    CHECK(folder.read("file") == "ab345");
    {
        WindowsFile emptied = WindowsFile::overwrite(name);
        CHECK_THROWS_AS(readBeside(), WindowsError);
        emptied.write("x", 1);
    }
    {
        WindowsFile one = WindowsFile::openToAppend(name), other = WindowsFile::openToAppend(name);
        one.write("1", 1);
        other.write("2", 1);
        one.write("3", 1);
    }
    const WindowsFile reader = WindowsFile::openToRead(name), second = WindowsFile::openToRead(name);
    CHECK(folder.read("file") == "x123");
    CHECK_THROWS_AS(WindowsFile::openToChange(name), WindowsError);
}

TEST_CASE("WindowsFile: sizes and positions beyond 4 GB, and a low word of all ones")
{
    const ScratchFolder folder;
    const auto name = folder.file("sparse");
    WindowsFile file;
    openFor(file, name, GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
    for (const unsigned long long size : {fourGB - 1, 2 * fourGB - 1, fourGB + 10}) {
        CHECK(file.seek(static_cast<long long>(size), Seekable::begin) == size);
        REQUIRE(SetEndOfFile(file));
        SetLastError(ERROR_INVALID_DATA); // Left over from somewhere else.
        CHECK(file.getFilePointer() == size);
        SetLastError(ERROR_INVALID_DATA);
        CHECK(file.getSize() == size);
        CHECK((WindowsFile::getSize(name) == size && FileSystem::getEntry(folder.file(L"sparse")).size == size));
    }
    CHECK(file.seek(-static_cast<long long>(fourGB) - 4, Seekable::end) == 6);
}

TEST_CASE("WindowsFile: failing calls on a file name themselves")
{
    const ScratchFolder folder;
    const auto name = folder.write("data", "abc");
    WindowsFile file;
    openFor(file, name, GENERIC_READ, OPEN_EXISTING);
    expectWindowsError([&] { file.write("12", 2); }, ERROR_ACCESS_DENIED, "Error while writing 2 bytes");
    const struct {
        long long offset;
        Seekable::whence origin;
        const char* text;
    } seeks[] = {{-5, Seekable::begin, "-5 relative to tarn::Seekable::begin"},
                 {-1, Seekable::current, "-1 relative to tarn::Seekable::current"},
                 {-8589934592, Seekable::end, "-8589934592 relative to tarn::Seekable::end"}};
    for (const auto& row : seeks)
        expectWindowsError([&] { file.seek(row.offset, row.origin); }, ERROR_NEGATIVE_SEEK,
                           std::string("WindowsFile::seek: Can't seek to ") + row.text);
    CHECK(file.getFilePointer() == 0);

    // A failed open keeps the file open so far.
    const auto missing = folder.file("missing");
    expectWindowsError([&] { openFor(file, missing, GENERIC_READ, OPEN_EXISTING); }, ERROR_FILE_NOT_FOUND,
                       "Can't open \"" + missing + "\"");
    CHECK(file.getSize() == 3);
    const unsigned long handles = openHandles();
    openFor(file, name, GENERIC_READ, OPEN_EXISTING);
    CHECK(openHandles() == handles);

    file.close();
    openFor(file, name, GENERIC_WRITE, OPEN_EXISTING);
    char byte;
    expectWindowsError([&] { file.read(&byte, 1); }, ERROR_ACCESS_DENIED,
                       BasicString<char>::fromFormat("Error while reading 1 bytes to %p", &byte));

    file.close();
    expectWindowsError([&] { file.flush(); }, ERROR_INVALID_HANDLE, "Can't flush file buffers");
    expectWindowsError([&] { file.getSize(); }, ERROR_INVALID_HANDLE,
                       "Can't retrieve the file size for a windows file");
    expectWindowsError([&] { file.ioControl(FSCTL_GET_COMPRESSION, nullptr, 0, nullptr, 0); }, ERROR_INVALID_HANDLE,
                       "Error in DeviceIoControl");
}

TEST_CASE("WindowsFile: ioControl exchanges bytes with the device")
{
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    REQUIRE(CreatePipe(&readEnd, &writeEnd, nullptr, 0));
    WindowsFile reader, writer;
    reader.attach(readEnd);
    writer.attach(writeEnd);
    writer.write("abc", 3);
    // FSCTL_PIPE_PEEK: four numbers, of which the second is the bytes that wait, and then the data.
    struct {
        ULONG state, available, messages, messageLength;
        char data[8];
    } peeked{};
    CHECK(reader.ioControl(0x11400C, nullptr, 0, &peeked, sizeof peeked) == 19);
    CHECK(std::string(peeked.data) == "abc");
}

TEST_CASE("WindowsFile: questions about a path that does not exist throw")
{
    const std::string noAttributes = "Can't get file attributes for \"C:\\none\"";
    WIN32_FILE_ATTRIBUTE_DATA data;
    expectWindowsError([] { WindowsFile::getAttributes("C:\\none"); }, ERROR_FILE_NOT_FOUND, noAttributes);
    expectWindowsError([] { WindowsFile::isDirectory(L"C:\\none"); }, ERROR_FILE_NOT_FOUND, noAttributes);
    expectWindowsError([&] { WindowsFile::getAttributes("C:\\none", data); }, ERROR_FILE_NOT_FOUND,
                       "Error in GetFileAttributesExA");
    expectWindowsError([] { WindowsFile::getSize(L"C:\\none"); }, ERROR_FILE_NOT_FOUND,
                       "Error in GetFileAttributesExW");
    expectWindowsError([] { WindowsFile::getShortPath("C:\\none"); },
                       "Can't determine the short path name length of \"C:\\none\"");
    expectWindowsError([] { WindowsFile::getFullPath(L""); }, "Can't determine the short path name length of \"\"");
}

TEMPLATE_TEST_CASE("WindowsFile: full and short paths lead to the same file", "", char, wchar_t)
{
    const ScratchFolder folder;
    folder.write("a long name with blanks.text", "abc");
    const auto name = fileIn<TestType>(folder, "a long name with blanks.text");
    const auto detour = fileIn<TestType>(folder, "x\\..\\.\\a long name with blanks.text");
    CHECK(WindowsFile::getFullPath(detour) == name);
    CHECK(WindowsFile::getSize(WindowsFile::getShortPath(name)) == 3);
}

TEST_CASE("WindowsFile: names over 260 characters go with and without the prefix")
{
    const ScratchFolder folder;
    const BasicString<wchar_t> prefix = L"\\\\?\\";
    BasicString<wchar_t> path = folder.path().wstring();
    while (path.size() <= 270)
        path += L"\\" + std::wstring(40, L'n');
    FileSystem::createFolder(path);
    const auto name = path + L"\\file", missing = path + L"\\missing";
    WindowsFile file;
    openFor(file, prefix + name, GENERIC_WRITE, CREATE_NEW);
    file.write("abc", 3);
    file.close();

    for (const auto& given : {name, prefix + name}) {
        // The result has the prefix because no function would take it without.
        CHECK(WindowsFile::getFullPath(given) == prefix + name);
        CHECK(WindowsFile::getSize(WindowsFile::getShortPath(given)) == 3);
    }
    CHECK(WindowsFile::getFullPath(path + L"\\..\\..\\..\\..\\..\\..\\..").size() < MAX_PATH);
    const auto share = BasicString<wchar_t>(L"server\\share\\") + std::wstring(260, L's');
    CHECK(WindowsFile::getFullPath(L"\\\\" + share) == L"\\\\?\\UNC\\" + share);
    CHECK_THROWS_AS(WindowsFile::getShortPath(missing), WindowsError);
    FileSystem::remove(folder.path().c_str());
}
