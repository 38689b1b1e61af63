#include <tarn/MappedFile.h>

#include "../foundation/Check.h"
#include "../foundation/Closing.h"
#include "../foundation/Quoted.h"
#include "../system/FreshHandle.h"

namespace tarn {
MappedFile::MappedFile(const wchar_t* name, Access access, unsigned long long offset, std::size_t size)
    : access_(access), file_(access == write ? WindowsFile::openToChange(name) : WindowsFile::openToRead(name))
{
    const auto failed = [&] { return "Can't map " + quoted(name); };
    const unsigned long long end = file_.getSize();
    if (offset > end || (size != all && size > end - offset))
        throwError(WindowsError(ERROR_HANDLE_EOF, failed()));
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    const unsigned long long length = size == all ? end - offset : size;
    const unsigned long long first = offset - offset % system.dwAllocationGranularity, mapped = offset - first + length;
    if (length == 0) // The platform maps nothing that is empty.
        return;
    if (static_cast<SIZE_T>(mapped) != mapped)
        throwError(WindowsError(ERROR_NOT_ENOUGH_MEMORY, failed()));

    constexpr DWORD protections[] = {PAGE_READONLY, PAGE_READWRITE, PAGE_WRITECOPY};
    constexpr DWORD accesses[] = {FILE_MAP_READ, FILE_MAP_WRITE, FILE_MAP_COPY};
    const FreshHandle mapping(ensure(CreateFileMappingW(file_, nullptr, protections[access], 0, 0, nullptr), failed));
    view_.reset(ensure(MapViewOfFile(mapping.get(), accesses[access], static_cast<DWORD>(first >> 32),
                                     static_cast<DWORD>(first), static_cast<SIZE_T>(mapped)),
                       failed));
    before_ = static_cast<std::size_t>(offset - first);
    size_ = static_cast<std::size_t>(length);
}

void MappedFile::Unmap::operator()(void* view) const noexcept
{
    closeQuietly([=] { ensure(UnmapViewOfFile(view), "Can't unmap file"); });
}

std::span<std::byte> MappedFile::getWritableData() const
{
    if (access_ == read)
        throwError(Exception("The file is mapped for reading"));
    return getMemory();
}

void MappedFile::flush()
{
    if (!view_)
        return;
    ensure(FlushViewOfFile(view_.get(), 0), "Can't flush mapped file");
    if (access_ == write)
        file_.flush();
}
} // namespace tarn
