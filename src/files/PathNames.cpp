#include <tarn/WindowsFile.h>

#include "../foundation/Check.h"
#include "../foundation/Memory.h"
#include "../foundation/Quoted.h"
#include "FileApi.h"
#include "LongPath.h"

// The path queries of WindowsFile.

namespace tarn {
namespace {
using Path = BasicString<wchar_t>;

struct ShortPath {
    template <class Ch> DWORD operator()(const Ch* name, Ch* path, DWORD size) const
    {
        return getShortPathName(name, path, size);
    }
};
struct FullPath {
    template <class Ch> DWORD operator()(const Ch* name, Ch* path, DWORD size) const
    {
        return getFullPathName(name, path, size);
    }
};

// `given` is the name that the messages show.
template <class Query, class Ch> BasicString<Ch> queryPath(Query query, const Ch* name, const Ch* given)
{
    DWORD length = ensure(query(name, static_cast<Ch*>(nullptr), 0),
                          [&] { return "Can't determine the short path name length of " + quoted(given); });
    BasicString<Ch> path;
    if (length <= 1)
        return path;
    // The path may have grown since its length was asked for; the length of the longer one is the result then.
    do {
        resizeOrThrow(path, length + 1);
        length = ensure(query(name, path.data(), static_cast<DWORD>(path.size())),
                        [&] { return "Can't determine the short path name of " + quoted(given); });
    } while (length >= path.size());
    path.resize(length);
    return path;
}

// Without the prefix again if the path can be used so.
Path withoutNeedlessPrefix(const Path& path)
{
    const Path bare = withoutPrefix(path);
    return bare.size() < MAX_PATH ? bare : path;
}

template <class Query> Path queryLongPath(Query query, const wchar_t* name)
{
    const ConstString<wchar_t> text(name);
    if (text.length() <= MAX_PATH || Path(text).startsWith(longPathPrefix))
        return queryPath(query, name, name);
    return withoutNeedlessPrefix(queryPath(query, longPath(name).c_str(), name));
}
} // namespace

// The prefix takes a name literally, so it goes before the absolute path, which GetFullPathName finds for
// names of any length.
Path longPath(const wchar_t* name)
{
    Path path = queryPath(FullPath(), name, name);
    if (path.startsWith(L"\\\\.\\") || path.startsWith(longPathPrefix))
        return path;
    return path.startsWith(L"\\\\") ? Path(longSharePrefix) + path.mid(2) : Path(longPathPrefix) + path;
}

Path withoutSeparator(Path path)
{
    if (path.endsWith(L"\\") || path.endsWith(L"/"))
        path.pop_back();
    return path;
}

Path withoutPrefix(const Path& path)
{
    return path.startsWith(longSharePrefix)  ? Path(L"\\\\") + path.mid(8)
           : path.startsWith(longPathPrefix) ? path.mid(4)
                                             : path;
}

BasicString<char> WindowsFile::getShortPath(const char* name) { return queryPath(ShortPath(), name, name); }
BasicString<wchar_t> WindowsFile::getShortPath(const wchar_t* name) { return queryLongPath(ShortPath(), name); }

BasicString<char> WindowsFile::getFullPath(const char* name) { return queryPath(FullPath(), name, name); }
BasicString<wchar_t> WindowsFile::getFullPath(const wchar_t* name) { return queryLongPath(FullPath(), name); }
} // namespace tarn
