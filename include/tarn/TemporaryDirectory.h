#pragma once

#include <tarn/BasicString.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>

#include <type_traits>

namespace tarn {
/// A new folder that is deleted with everything in it when the object is destroyed, at any depth, without
/// questions and without an error when something could not be deleted: that stays, with the folders above it.
/// A link in it is deleted, never what it leads to.
///
/// Can be moved. Copies share the folder, and the first of them to be destroyed deletes it: pass references
/// instead. Assigning an object that lives on forgets the folder of the target, which then stays.
class TARN_API TemporaryDirectory {
public:
    /// Makes a folder whose name begins with `prefix`, of which the platform may use only the first three
    /// characters. It lies where the environment variable TMP points, and only when that is not set or
    /// names no folder in `directory` (null: the runtime library's default). A folder whose path has more
    /// than 246 characters is refused, as the platform refuses it for temporary files. Throws CRTError "Can't
    /// create temporary name", "Can't create temporary directory "PATH"".
    TemporaryDirectory(const wchar_t* directory, const wchar_t* prefix);
    /// Copy the path: see above.
    ///@{
    TemporaryDirectory(const TemporaryDirectory&) = default;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = default;
    ///@}
    /// Take the folder over; the source has none then. The folder that the target had is deleted.
    ///@{
    TemporaryDirectory(TemporaryDirectory&& other) noexcept { path_.swap(other.path_); }
    TemporaryDirectory& operator=(TemporaryDirectory&& other) noexcept;
    ///@}
    ~TemporaryDirectory();

    /// Lets go of the folder, which stays, and gives its path; empty when there was none.
    BasicString<wchar_t> detach() noexcept;

    /// The full path, without a separator at its end; empty when there is no folder.
    operator const wchar_t*() const { return path_.c_str(); }
    /// Would compare and ask for addresses: take a BasicString of the path.
    ///@{
    bool operator==(const TemporaryDirectory&) const = delete;
    template <class T>
    requires std::is_pointer_v<T>
    bool operator==(T) const = delete;
    explicit operator bool() const = delete;
    ///@}

private:
    void removeTree() noexcept;
    static BasicString<wchar_t> getTemporaryName(const wchar_t* directory, const wchar_t* prefix);

    BasicString<wchar_t> path_;
};
TARN_LAYOUT(TemporaryDirectory, 24, 32);
} // namespace tarn
