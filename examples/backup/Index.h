#pragma once

#include <tarn/BasicString.h>
#include <tarn/FolderWalk.h>

#include <map>

/// What was saved: the size and the time of each file, by its path in the folder. On disk it is a line of UTF-8 for
/// each.
class Index {
public:
    /// An index that is not there, or that nobody can read, knows nothing.
    static Index read(const wchar_t* path);
    /// All or nothing.
    void save(const wchar_t* path) const;

    void note(const tarn::BasicString<wchar_t>& path, const tarn::FolderEntry& file);
    /// Whether the file is as it was.
    bool knows(const tarn::BasicString<wchar_t>& path, const tarn::FolderEntry& file) const;

private:
    std::map<tarn::BasicString<wchar_t>, tarn::BasicString<wchar_t>> files_;
};
