#pragma once

#include <tarn/Export.h>
#include <tarn/WindowsFile.h>

#include <cstddef>
#include <memory>
#include <span>

namespace tarn {
/// A file, or a part of it, as memory: it is read when it is looked at.
///
///     const MappedFile file(L"table.bin");
///     unsigned sum = 0;
///     for (const std::byte byte : file.getData())
///         sum += std::to_integer<unsigned>(byte);
///
/// For data that are looked up here and there; what is read once from front to end a WindowsFile reads as fast. Owns
/// the file and the view of it, and can be moved. When the file cannot be read any more (a network fails, say), looking
/// at the memory is a fault, which arrives as SEHError. A 32-bit program has some hundred megabytes of room in one
/// piece: map a part of a larger file.
class TARN_API MappedFile {
public:
    /// What may be done with the memory, and by others with the file.
    enum Access {
        /// To write is a fault. Others may read.
        read,
        /// What is written is in the file. Nobody else may open it.
        write,
        /// What is written is this object's own, and gone with it. Others may read.
        copyOnWrite
    };
    /// To the end of the file.
    static constexpr std::size_t all = static_cast<std::size_t>(-1);

    /// `size` bytes from `offset`, which may be any, but not behind the end. The file has to be there, and keeps its
    /// size; of an empty one the data are empty. Throws WindowsError "Can't open "NAME"" and "Can't map "NAME"".
    explicit MappedFile(const wchar_t* name, Access access = read, unsigned long long offset = 0,
                        std::size_t size = all);

    /// Valid as long as the object. Empty when it was moved from.
    std::span<const std::byte> getData() const noexcept { return getMemory(); }
    /// The same to be written. Throws Exception "The file is mapped for reading".
    std::span<std::byte> getWritableData() const;

    /// On to the disk; else the system does that when it likes. Throws WindowsError "Can't flush mapped file" and
    /// "Can't flush file buffers".
    void flush();

private:
    struct Unmap {
        TARN_API void operator()(void* view) const noexcept;
    };
    std::span<std::byte> getMemory() const noexcept
    {
        return view_ ? std::span(static_cast<std::byte*>(view_.get()) + before_, size_) : std::span<std::byte>();
    }

    Access access_;
    WindowsFile file_;
    std::unique_ptr<void, Unmap> view_;
    std::size_t before_ = 0; // The platform's views begin at multiples of 64 KB.
    std::size_t size_ = 0;
};
} // namespace tarn
