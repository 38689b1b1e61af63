#pragma once

#include <utility>

namespace tarn {
/// A handle and whether it must be released: null, borrowed or owned. The common part of the wrappers of
/// graphics objects, icons and cursors, which release what they own.
///
/// Ownership moves on copy construction: the new wrapper takes the handle, and a source that owned it is
/// left null. Assignment of another variable copies handle and flag as they are and releases nothing, so an
/// owning source leaves two owners: assign borrowed handles only, and hand an object on by copy construction or
/// with `std::move`. Move assignment from an owner, `pen = Pen(...)`, is what one expects of it: what was held is
/// released, and the source is left null. A failure to release is told to the debugger only, since moves throw
/// nothing; close() first to hear of it. Move assignment from what is null or borrows is a plain copy, too, and
/// releases nothing: `pen = Pen()` lets go of the handle as detach() does, where close() releases it.
template <class Handle> class OwnedHandle {
public:
    OwnedHandle() noexcept = default;
    /// Borrows the handle, or with `owns` takes it over.
    OwnedHandle(Handle handle, bool owns) noexcept : handle_(handle), owns_(owns) {}
    /// Moves, as said above; a source that borrows keeps its handle.
    OwnedHandle(OwnedHandle& other) noexcept : handle_(other.handle_), owns_(other.owns_)
    {
        if (owns_)
            other.setHandle(nullptr, false);
    }
    /// As the copy constructor.
    OwnedHandle(OwnedHandle&& other) noexcept : OwnedHandle(other) {} // NOLINT(performance-move-constructor-init)
    /// Copies handle and flag: do not assign from an owner.
    OwnedHandle& operator=(const OwnedHandle&) noexcept = default;

    /// Null for none. Lent, not given.
    Handle getHandle() const noexcept { return handle_; }
    /// Whether the handle is released at the end.
    bool isOwner() const noexcept { return owns_; }
    /// Also after an owner was moved from.
    bool isNull() const noexcept { return !handle_; }
    /// Whether there is a handle.
    explicit operator bool() const noexcept { return !isNull(); }
    /// Whether there is none.
    bool operator!() const noexcept { return isNull(); }
    /// Becomes null and releases nothing: an owned handle is the caller's from now on.
    Handle detach() noexcept
    {
        const Handle handle = handle_;
        setHandle(nullptr, false);
        return handle;
    }

protected:
    ~OwnedHandle() = default;

    /// Stores both without releasing what was held.
    void setHandle(Handle handle, bool owns) noexcept
    {
        handle_ = handle;
        owns_ = owns;
    }
    /// Move assignment but for the release: gives what has to be released now, null when there is nothing.
    Handle moveFrom(OwnedHandle& other) noexcept
    {
        const bool releases = other.owns_ && owns_ && handle_ != other.handle_;
        const Handle former = releases ? handle_ : nullptr;
        const OwnedHandle taken(std::move(other)); // First, because it may be this object.
        *this = taken;
        return former;
    }
    /// Becomes null and gives what has to be released now: null when nothing was owned.
    Handle takeOwned() noexcept
    {
        const Handle owned = owns_ ? handle_ : nullptr;
        setHandle(nullptr, false);
        return owned;
    }

private:
    Handle handle_ = nullptr;
    bool owns_ = false;
};
} // namespace tarn
