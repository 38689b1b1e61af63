#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>

#include <boost/noncopyable.hpp>

namespace tarn {
/// A new, empty file in the user's folder for temporary files, deleted by remove() or with the object.
///
/// Open it by its path with whatever reads or writes files, and close it before it is to be deleted. Can be
/// moved and not copied.
/// Failures throw WindowsError, also out of the destructor: call remove() first to deal with them.
class TARN_API TemporaryFile : private boost::noncopyable {
public:
    /// No file until create().
    TemporaryFile() = default;
    /// Creates a file as create() does.
    ///@{
    TemporaryFile(const char* name) { create(name); }
    TemporaryFile(const wchar_t* name) { create(name); }
    ///@}
    /// The source then has no file.
    TemporaryFile(TemporaryFile&& other) noexcept { path_.swap(other.path_); }
    /// Removes the file held so far; of a failure of that the debugger alone hears.
    TemporaryFile& operator=(TemporaryFile&& other) noexcept;
    ~TemporaryFile() noexcept(false);

    /// Removes the file held before and creates one. The system chooses its name, which begins with "tmp":
    /// the argument only chooses between the narrow and the wide functions of the platform. Throws "Can't
    /// retrieve temporary directory", "Can't create temporary file "FOLDER"", and what remove() throws.
    ///@{
    void create(const char* name);
    void create(const wchar_t* name);
    ///@}

    /// The full path; empty while there is no file. The narrow form is in the system's ANSI code page.
    ///@{
    BasicString<char> getPathA() const { return path_.c_str(); }
    BasicString<wchar_t> getPathW() const { return path_; }
    BasicString<wchar_t> getPathT() const { return path_; }
    ///@}

    /// Does nothing when there is no file. Throws "Can't delete temporary file "PATH"" and keeps the path
    /// then, so that it can be called again.
    void remove();
    /// Let go of the file, which stays if it is still there, and give its path; empty when there was none.
    ///@{
    BasicString<wchar_t> release() noexcept
    {
        BasicString<wchar_t> path;
        path.swap(path_);
        return path;
    }
    BasicString<wchar_t> detach() noexcept { return release(); }
    ///@}

private:
    BasicString<wchar_t> path_;
};
TARN_LAYOUT(TemporaryFile, 24, 32);
} // namespace tarn
