#pragma once

namespace tarn {
/// A handle and whether it must be released: null, borrowed or owned. The common part of the wrappers of
/// graphics objects, icons and cursors, which release what they own.
///
/// Ownership moves on copy construction: the new wrapper takes the handle, and a source that owned it is
/// left null. Assignment copies handle and flag as they are and releases nothing, so an owning source
/// leaves two owners: assign borrowed handles only, and use copy construction to hand an object on.
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
    OwnedHandle(OwnedHandle&& other) noexcept : OwnedHandle(other) {}
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

protected:
    ~OwnedHandle() = default;

    /// Stores both without releasing what was held.
    void setHandle(Handle handle, bool owns) noexcept
    {
        handle_ = handle;
        owns_ = owns;
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
