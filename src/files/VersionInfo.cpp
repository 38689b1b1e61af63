#include <tarn/VersionInfo.h>

#include "../foundation/Check.h"
#include "ModuleApi.h"

#include <type_traits>

namespace tarn {
static_assert(sizeof(VersionInfo::Version) == 8 && alignof(VersionInfo::Version) == 4);

namespace {
template <class Ch> std::string failureText(const char* function, const Ch* fileName, const std::string& tail)
{
    constexpr const char* suffix = std::is_same_v<Ch, char> ? "A(" : "W(";
    return std::string("Error in ") + function + suffix + BasicString<char>(fileName) + ",0" + tail + ")";
}

template <class Ch> Array<char> readResource(const Ch* fileName)
{
    const DWORD size =
        ensure(getFileVersionInfoSize(fileName), [&] { return failureText("GetFileVersionInfoSize", fileName, ""); });
    Array<char> data(size);
    ensure(getFileVersionInfo(fileName, size, data.data()),
           [&] { return failureText("GetFileVersionInfo", fileName, "," + std::to_string(size)); });
    return data;
}

// The root block begins with its length, the length of its value and a type, followed by its name; a
// resource cut short must not send the query past the end of the data.
bool isWhole(const Array<char>& data)
{
    struct {
        WORD length, valueLength;
    } header;
    if (data.size() < sizeof header)
        return false;
    std::copy_n(data.data(), sizeof header, reinterpret_cast<char*>(&header));
    constexpr unsigned valueOffset = 3 * sizeof(WORD) + sizeof L"VS_VERSION_INFO" + sizeof(WORD);
    return header.length <= data.size() && header.valueLength >= sizeof(VS_FIXEDFILEINFO) &&
           header.length >= valueOffset + sizeof(VS_FIXEDFILEINFO);
}

VS_FIXEDFILEINFO* findFixedInfo(const Array<char>& data)
{
    constexpr const char* failure = "Error in VerQueryValueA";
    if (!isWhole(data))
        throw WindowsError(ERROR_INVALID_DATA, failure);
    void* info = nullptr;
    UINT length = 0;
    ensure(VerQueryValueA(data.data(), "\\", &info, &length), failure);
    if (!info || length < sizeof(VS_FIXEDFILEINFO))
        throw WindowsError(ERROR_INVALID_DATA, failure);
    return static_cast<VS_FIXEDFILEINFO*>(info);
}
} // namespace

VersionInfo::VersionInfo(const char* fileName) : data_(readResource(fileName)), fixedInfo_(findFixedInfo(data_)) {}
VersionInfo::VersionInfo(const wchar_t* fileName) : data_(readResource(fileName)), fixedInfo_(findFixedInfo(data_)) {}
VersionInfo::VersionInfo(const VersionInfo& other) : data_(other.data_), fixedInfo_(findFixedInfo(data_)) {}

VersionInfo& VersionInfo::operator=(const VersionInfo& other)
{
    data_ = other.data_;
    fixedInfo_ = findFixedInfo(data_);
    return *this;
}

const VersionInfo::Version& VersionInfo::FileVersion() const
{
    return *reinterpret_cast<const Version*>(&fixedInfo_->dwFileVersionMS);
}
const VersionInfo::Version& VersionInfo::ProductVersion() const
{
    return *reinterpret_cast<const Version*>(&fixedInfo_->dwProductVersionMS);
}
} // namespace tarn
