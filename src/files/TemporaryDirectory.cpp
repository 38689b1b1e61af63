#include <tarn/TemporaryDirectory.h>

#include <tarn/Exception.h>
#include <tarn/Windows.h>
#include <tarn/WindowsFile.h>

#include "../foundation/CRTCheck.h"
#include "../foundation/Quoted.h"
#include "../foundation/Throw.h"
#include "DeleteTree.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>

namespace tarn {
namespace {
struct FreeText {
    void operator()(wchar_t* text) const { std::free(text); }
};

// Of the folder for temporary files, as for the platform's GetTempFileName. Wine's runtime library writes
// longer ones past the end of a buffer.
constexpr std::size_t longestFolder = MAX_PATH - 14;
// Somebody else may take a name before the folder is made, though not often.
constexpr int attempts = 100;
} // namespace

BasicString<wchar_t> TemporaryDirectory::getTemporaryName(const wchar_t* directory, const wchar_t* prefix)
{
    constexpr const char* failure = "Can't create temporary name";
    const wchar_t* const preferred = _wgetenv(L"TMP");
    const wchar_t* const folder = preferred ? preferred : directory;
    if (folder && ConstString<wchar_t>(folder).length() > longestFolder)
        throwError(CRTError(ENAMETOOLONG, failure));
    const std::unique_ptr<wchar_t, FreeText> name(StringHelper<wchar_t>::tempnam(directory, prefix));
    if (!name)
        throwCRTError(failure);
    return name.get();
}

TemporaryDirectory::TemporaryDirectory(const wchar_t* directory, const wchar_t* prefix)
{
    for (int attempt = 1;; ++attempt) {
        path_ = WindowsFile::getFullPath(getTemporaryName(directory, prefix).c_str());
        if (StringHelper<wchar_t>::mkdir(path_.c_str()) == 0)
            return;
        if (errno != EEXIST || attempt == attempts)
            throwCRTError([&] { return "Can't create temporary directory " + quoted(path_.c_str()); });
    }
}

TemporaryDirectory& TemporaryDirectory::operator=(TemporaryDirectory&& other) noexcept
{
    if (this != &other) {
        removeTree();
        path_ = other.detach();
    }
    return *this;
}

TemporaryDirectory::~TemporaryDirectory() { removeTree(); }

BasicString<wchar_t> TemporaryDirectory::detach() noexcept
{
    BasicString<wchar_t> path;
    path.swap(path_);
    return path;
}

void TemporaryDirectory::removeTree() noexcept
{
    if (path_.empty())
        return;
    try {
        DeletionFailure ignored;
        deleteTree(path_.c_str(), ignored);
    } catch (...) { // Without memory the folder stays.
    }
}
} // namespace tarn
