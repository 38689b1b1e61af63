#pragma once

#include <tarn/Array.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/Windows.h>

namespace tarn {
/// The version resource of a program or DLL file, read whole at construction.
class TARN_API VersionInfo {
public:
    /// A version as its four parts; `value` is the same eight bytes as they lie in the resource.
    union Version {
        /// Only to be compared whole, and equal or not: the order of the parts in it is not that of versions.
        unsigned long long value;
        __extension__ struct {
            unsigned short minor;
            unsigned short major;
            unsigned short revision;
            unsigned short build;
        };
    } __attribute__((packed, aligned(4), may_alias));

    /// Throws WindowsError "Error in GetFileVersionInfoSizeA(NAME,0)", "Error in
    /// GetFileVersionInfoA(NAME,0,SIZE)" or, for a resource that is damaged, "Error in VerQueryValueA";
    /// throws BadAllocation.
    VersionInfo(const char* fileName);
    /// The same with the names of the wide calls.
    VersionInfo(const wchar_t* fileName);
    /// A copy has the resource's data in memory of its own. Throw BadAllocation.
    ///@{
    VersionInfo(const VersionInfo& other);
    VersionInfo& operator=(const VersionInfo& other);
    ///@}

    /// Valid as long as the object.
    ///@{
    const Version& FileVersion() const;
    const Version& ProductVersion() const;
    ///@}

private:
    Array<char> data_;
    VS_FIXEDFILEINFO* fixedInfo_;
};
TARN_LAYOUT(VersionInfo::Version, 8, 8);
static_assert(alignof(VersionInfo::Version) == 4);
} // namespace tarn
