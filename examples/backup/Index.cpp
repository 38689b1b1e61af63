#include "Index.h"

#include <tarn/AtomicFile.h>
#include <tarn/BufferingStream.h>
#include <tarn/FileSystem.h>
#include <tarn/TextLines.h>
#include <tarn/WindowsFile.h>

#include <string>

namespace {
using namespace tarn;

BasicString<wchar_t> stateOf(const FolderEntry& file)
{
    return std::to_wstring(file.size) + L" " + std::to_wstring(std::int64_t(file.lastWriteTime)) + L" ";
}
} // namespace

Index Index::read(const wchar_t* path)
{
    Index index;
    if (!FileSystem::isFile(path))
        return index;
    WindowsFile file = WindowsFile::openToRead(path);
    LineReader reader(file, utf8, BadText::replace);
    for (BasicString<wchar_t> line; reader.readLine(line);) {
        const std::size_t name = line.find(L' ', line.find(L' ') + 1); // Behind size and time.
        if (name != line.npos)
            index.files_[line.substr(name + 1)] = line.substr(0, name + 1);
    }
    return index;
}

void Index::save(const wchar_t* path) const
{
    AtomicFile file(path);
    BufferingOutputStream buffer(file);
    LineWriter writer(buffer, {.lineEnd = LineEnd::lf, .badText = BadText::replace});
    for (const auto& [name, state] : files_)
        writer.writeLine(state + name);
    buffer.flush();
    file.commit();
}

void Index::note(const BasicString<wchar_t>& path, const FolderEntry& file) { files_[path] = stateOf(file); }

bool Index::knows(const BasicString<wchar_t>& path, const FolderEntry& file) const
{
    const auto found = files_.find(path);
    return found != files_.end() && found->second == stateOf(file);
}
