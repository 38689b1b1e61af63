#include "Index.h"

#include <tarn/AtomicFile.h>
#include <tarn/FileSystem.h>
#include <tarn/WindowsFile.h>

#include <string>
#include <string_view>

namespace {
using namespace tarn;

BasicString<char> utf8(const BasicString<wchar_t>& text) { return w2a(text, CP_UTF8); }

BasicString<char> stateOf(const FolderEntry& file)
{
    return std::to_string(file.size) + " " + std::to_string(std::int64_t(file.lastWriteTime)) + " ";
}
} // namespace

Index Index::read(const wchar_t* path)
{
    Index index;
    if (!FileSystem::isFile(path))
        return index;
    WindowsFile file = WindowsFile::openToRead(path);
    std::string all(static_cast<std::size_t>(file.getSize()), '\0');
    file.readFully(all.data(), static_cast<unsigned>(all.size()));
    for (std::string_view rest = all; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::size_t name = line.find(' ', line.find(' ') + 1); // Behind size and time.
        if (name != line.npos)
            index.files_[BasicString<char>(line.substr(name + 1))] = line.substr(0, name + 1);
    }
    return index;
}

void Index::save(const wchar_t* path) const
{
    std::string all;
    for (const auto& [name, state] : files_)
        all.append(state).append(name).append("\n");
    AtomicFile::save(path, all.data(), static_cast<unsigned>(all.size()));
}

void Index::note(const BasicString<wchar_t>& path, const FolderEntry& file) { files_[utf8(path)] = stateOf(file); }

bool Index::knows(const BasicString<wchar_t>& path, const FolderEntry& file) const
{
    const auto found = files_.find(utf8(path));
    return found != files_.end() && found->second == stateOf(file);
}
