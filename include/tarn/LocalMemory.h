#pragma once

#include <tarn/Export.h>
#include <tarn/Windows.h>

#include <boost/noncopyable.hpp>

namespace tarn {
/// Owns a block of the local heap, such as a buffer that the platform allocated for its caller, and
/// frees it with `LocalFree`. Failures throw WindowsError, also out of the destructor.
class TARN_API LocalMemory : private boost::noncopyable {
public:
    /// What `LocalFlags` tells of a block.
    struct Flags {
        unsigned value; ///< As `LocalFlags` gives it.

        unsigned lockCount() const { return value & LMEM_LOCKCOUNT; } ///< Of a movable block; 0 for fixed memory.
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
    ~LocalMemory() noexcept(false);

    /// As the object was told; an object without memory, also after free(), is fixed.
    ///@{
    bool isMovable() const { return lockCount_ != fixed; }
    bool isFixed() const { return lockCount_ == fixed; }
    ///@}

    void* lock(); ///< Throws "Can't lock local memory handle".
    /// True while other locks are left; false for fixed memory. Throws "Can't unlock local memory handle".
    bool unlock();
    /// Unlocks and frees the block. Throws "Can't unlock local memory handle", "Can't free local memory handle".
    void free();
    Flags getFlags() const; ///< Throws "Can't query flags for local memory handle".

private:
    static constexpr int fixed = -1;

    HLOCAL handle_ = nullptr;
    int lockCount_ = fixed;
};
} // namespace tarn
