#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

namespace tarn {
/// Owns a block of the local heap, such as a buffer that the platform allocated for its caller, and
/// frees it with `LocalFree`. Can be moved and not copied. Failures throw WindowsError, also out of the destructor.
class TARN_API LocalMemory : private boost::noncopyable {
public:
    /// What `LocalFlags` tells of a block.
    struct Flags {
        /// As `LocalFlags` gives it.
        unsigned value;

        /// Of a movable block; 0 for fixed memory.
        unsigned lockCount() const { return value & LMEM_LOCKCOUNT; }
        /// Discarded memory has lost its contents and keeps its handle.
        ///@{
        bool isDiscardable() const { return (value & LMEM_DISCARDABLE) != 0; }
        bool isDiscarded() const { return (value & LMEM_DISCARDED) != 0; }
        ///@}
    };

    LocalMemory() = default;
    /// Takes ownership of `handle`. The handle of fixed memory is the pointer to it; a movable block has
    /// to be locked to be used.
    LocalMemory(void* handle, bool movable) : handle_(handle), lockCount_(movable ? 0 : fixed) {}
    /// Takes the block over with its locks.
    LocalMemory(LocalMemory&& other) noexcept;
    /// Frees the block held so far; of a failure of that the debugger alone hears.
    LocalMemory& operator=(LocalMemory&& other) noexcept;
    ~LocalMemory() noexcept(false);

    /// As the object was told; an object without memory, also after free(), is fixed.
    ///@{
    bool isMovable() const { return lockCount_ != fixed; }
    bool isFixed() const { return lockCount_ == fixed; }
    ///@}

    class Access;
    /// Throws "Can't lock local memory handle". Access unlocks by itself.
    void* lock();
    /// True while other locks are left; false for fixed memory. Throws "Can't unlock local memory handle".
    bool unlock();
    /// Unlocks and frees the block. Throws "Can't unlock local memory handle", "Can't free local memory handle".
    void free();
    /// Gives the block to the caller, locked as often as it is; null when there was none.
    void* detach() noexcept;
    /// Throws "Can't query flags for local memory handle".
    Flags getFlags() const;

private:
    static constexpr int fixed = -1;

    HLOCAL handle_ = nullptr;
    int lockCount_ = fixed;
};

/// The memory of a block in place, locked while this object lives. The block stays where it is meanwhile: do
/// not move or free its owner.
class [[nodiscard]] LocalMemory::Access : private boost::noncopyable {
public:
    /// Throws as lock().
    explicit Access(LocalMemory& memory) : memory_(memory), data_(memory.lock()) {}
    /// Of a failure to unlock the debugger alone hears.
    TARN_API ~Access();

    /// Valid as long as this object.
    void* data() const noexcept { return data_; }

private:
    LocalMemory& memory_;
    void* data_;
};
} // namespace tarn
