#include <tarn/VersionInfo.h>

#include "../foundation/Check.h"
#include "../foundation/Description.h"
#include "ModuleApi.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <type_traits>

namespace tarn {
namespace {
template <class Ch> Description failureText(const char* function, const Ch* fileName, const std::string& tail)
{
    constexpr const char* suffix = std::is_same_v<Ch, char> ? "A(" : "W(";
    return Description("Error in ") + function + suffix + fileName + ",0" + tail + ")";
}

template <class Ch> Array<char> readResource(const Ch* fileName)
{
    const DWORD size =
        ensure(getFileVersionInfoSize(fileName), [&] { return failureText("GetFileVersionInfoSize", fileName, ""); });
    Array<char> data(size);
    std::ranges::fill(data, '\0'); // The size may be more than the resource has.
    ensure(getFileVersionInfo(fileName, size, data.data()),
           [&] { return failureText("GetFileVersionInfo", fileName, "," + std::to_string(size)); });
    return data;
}

// The root block begins with its length, the length of its value and a type, followed by its name; a
// resource that is cut short or damaged must not send the query past the end of the data.
bool hasRootBlock(const Array<char>& data)
{
    struct Header {
        WORD length, valueLength, type;
        wchar_t name[std::size(L"VS_VERSION_INFO")];
    } header;
    constexpr unsigned valueOffset = (sizeof(Header) + 3) / 4 * 4;
    if (data.size() < valueOffset + sizeof(VS_FIXEDFILEINFO))
        return false;
    std::memcpy(&header, data.data(), sizeof header);
    return header.length >= valueOffset + sizeof(VS_FIXEDFILEINFO) && header.length <= data.size() &&
           header.valueLength >= sizeof(VS_FIXEDFILEINFO) && header.type <= 1 &&
           std::memcmp(header.name, L"VS_VERSION_INFO", sizeof header.name) == 0;
}

bool isFixedInfo(const Array<char>& data, const void* info)
{
    const auto* const at = static_cast<const char*>(info);
    if (at < data.begin() || at > data.end() - sizeof(VS_FIXEDFILEINFO))
        return false;
    const auto* const fixedInfo = static_cast<const VS_FIXEDFILEINFO*>(info);
    return fixedInfo->dwSignature == VS_FFI_SIGNATURE && fixedInfo->dwStrucVersion != 0;
}

VS_FIXEDFILEINFO* findFixedInfo(const Array<char>& data)
{
    constexpr const char* failure = "Error in VerQueryValueA";
    if (!hasRootBlock(data))
        throwWindowsError(ERROR_INVALID_DATA, failure);
    void* info = nullptr;
    UINT length = 0;
    ensure(VerQueryValueA(data.data(), "\\", &info, &length), failure);
    if (length < sizeof(VS_FIXEDFILEINFO) || !isFixedInfo(data, info))
        throwWindowsError(ERROR_INVALID_DATA, failure);
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
