#include "Test.h"

#include <tarn/MappedFile.h>

#include "ScratchFolder.h"

namespace {
std::string textOf(const MappedFile& file)
{
    return {reinterpret_cast<const char*>(file.getData().data()), file.getData().size()};
}
} // namespace

TEST_CASE("MappedFile: what is written is in the file, or the object's own")
{
    const ScratchFolder folder;
    folder.write("file", "content");
    const auto name = folder.file(L"file");
    {
        MappedFile written(name, MappedFile::write);
        written.getWritableData()[0] = std::byte('C');
        expectWindowsError([&] { MappedFile second(name); }, ERROR_SHARING_VIOLATION,
                           "Can't open \"" + folder.file("file") + "\"");
        written.flush();
    }
    MappedFile read(name), own(name, MappedFile::copyOnWrite);
    own.getWritableData()[0] = std::byte('k');
    own.flush();
    CHECK((textOf(own) == "kontent" && textOf(read) == "Content" && folder.read("file") == "Content"));
    expectError<Exception>([&] { read.getWritableData(); }, "The file is mapped for reading");
    void (*volatile overwrite)(const std::byte&) = [](auto& byte) { const_cast<std::byte&>(byte) = std::byte(); };
    CHECK_THROWS_AS(overwrite(read.getData()[0]), SEHError);

    read = std::move(own);
    CHECK((textOf(read) == "kontent" && own.getData().empty()));
    read = MappedFile(folder.file(L"file"), MappedFile::read, 3, 2);
    CHECK(textOf(read) == "te");
    read = MappedFile(MappedFile(folder.file(L"file"), MappedFile::read, 7));
    CHECK(read.getData().empty());
    const auto handles = openHandles();
    for (int i = 0; i < 5; ++i)
        read = MappedFile(name);
    read = std::move(own);
    CHECK(openHandles() < handles); // Without that of the empty part.
}

TEST_CASE("MappedFile: a part begins at any byte; what is empty, missing or too short")
{
    const ScratchFolder folder;
    std::string content(200'000, ' ');
    std::ranges::generate(content, [n = 0u]() mutable { return static_cast<char>((n++ * 2654435761u) >> 24); });
    folder.write("large", content);
    folder.write("empty", "");
    const auto large = folder.file(L"large");
    for (const std::size_t offset : {1u, 65'535u, 65'536u, 65'537u, 199'999u}) {
        CHECK(textOf(MappedFile(large, MappedFile::read, offset)) == content.substr(offset));
        CHECK(textOf(MappedFile(large, MappedFile::read, offset, 1)) == content.substr(offset, 1));
    }
    for (const auto access : {MappedFile::read, MappedFile::write, MappedFile::copyOnWrite}) {
        MappedFile empty(folder.file(L"empty"), access);
        empty.flush();
        CHECK(empty.getData().empty());
    }
    const auto huge = folder.file(L"huge");
    WindowsFile file = WindowsFile::createNew(huge);
    REQUIRE((file.seek((1ll << 32) + 8, Seekable::begin) != 0 && SetEndOfFile(file)));
    file.close();
    CHECK(MappedFile(huge, MappedFile::read, (1ull << 32) + 5).getData().size() == 3);
    if constexpr (sizeof(void*) == 4)
        expectWindowsError([&] { MappedFile whole(huge); }, ERROR_NOT_ENOUGH_MEMORY,
                           "Can't map \"" + folder.file("huge") + "\"");
    const std::string failed = "Can't map \"" + folder.file("large") + "\"";
    for (const auto& part : {std::pair(200'001ull, MappedFile::all), {200'000, 1}, {0, 200'001}, {~0ull, 2}})
        expectWindowsError([&] { MappedFile(large, MappedFile::read, part.first, part.second); }, ERROR_HANDLE_EOF,
                           failed);
    expectWindowsError([&] { MappedFile(folder.file(L"none")); }, ERROR_FILE_NOT_FOUND,
                       "Can't open \"" + folder.file("none") + "\"");
}
