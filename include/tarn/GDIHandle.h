#pragma once

#include <tarn/Export.h>
#include <tarn/OwnedHandle.h>
#include <tarn/Windows.h>

namespace tarn {
/// Any drawing object of the system: the base of Bitmap, Brush, Pen, Font and Palette. Owns it or borrows
/// it, and follows the rule of OwnedHandle: copy construction moves, assignment of a variable makes a second owner.
///
/// An object must not be selected into a device context when its owner deletes it: select the previous one
/// back first. Failures throw WindowsError, also out of the destructor.
class TARN_API GDIHandle : public OwnedHandle<void*> {
public:
    GDIHandle() noexcept = default;
    /// Borrows the handle, or with `owns` takes it over.
    GDIHandle(void* handle, bool owns) noexcept : OwnedHandle(handle, owns) {}
    /// As those of OwnedHandle.
    ///@{
    GDIHandle(GDIHandle& other) noexcept = default;
    GDIHandle(GDIHandle&& other) noexcept = default;
    GDIHandle& operator=(const GDIHandle&) noexcept = default;
    GDIHandle& operator=(GDIHandle&& other) noexcept;
    ///@}
    ~GDIHandle() noexcept(false);

    /// Deletes an owned object. Becomes null in any case. Throws "Can't delete GDI handle".
    void close();
};

/// A GDIHandle that knows its type, an `HPEN` for instance.
template <class Handle> class TypedGDIHandle : public GDIHandle {
public:
    /// Null.
    TypedGDIHandle() noexcept = default;
    /// Borrows the handle, or with `owns` takes it over.
    TypedGDIHandle(Handle handle, bool owns) noexcept : GDIHandle(handle, owns) {}

    /// Null for none. Lent, not given.
    Handle getHandle() const noexcept { return static_cast<Handle>(GDIHandle::getHandle()); }
    /// Becomes null and releases nothing: an owned object is the caller's from now on.
    Handle detach() noexcept { return static_cast<Handle>(GDIHandle::detach()); }
    /// As getHandle().
    operator Handle() const noexcept { return getHandle(); }
};
} // namespace tarn
