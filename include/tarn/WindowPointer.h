#pragma once

#include <utility>

namespace tarn {
/// A window object found by its handle, `Window::Pointer`. It may own the object (one that was made only for this
/// look-up) and then deletes it at its end: keep the pointer, not the object's address, while the object is used. A
/// copy takes the object over and leaves the source empty.
template <class T> class WindowPointer {
public:
    WindowPointer() noexcept = default;
    /// With `owns` the object is deleted at the end.
    WindowPointer(T* object, bool owns) noexcept : object_(object), owns_(owns) {}
    /// Takes the object over, and the duty to delete it with it.
    WindowPointer(const WindowPointer& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), owns_(std::exchange(other.owns_, false))
    {
    }
    /// The same; an object owned before is deleted.
    WindowPointer& operator=(const WindowPointer& other) noexcept
    {
        if (this != &other) {
            release();
            object_ = std::exchange(other.object_, nullptr);
            owns_ = std::exchange(other.owns_, false);
        }
        return *this;
    }
    ~WindowPointer() { release(); }

    /// Null when nothing was found: then do not use `->`.
    ///@{
    operator T*() const noexcept { return object_; }
    T* operator->() const noexcept { return object_; }
    T* get() const noexcept { return object_; }
    ///@}
    /// Whether the object dies with this pointer.
    bool isOwner() const noexcept { return owns_; }

private:
    void release() noexcept
    {
        if (owns_)
            delete object_;
    }

    mutable T* object_ = nullptr;
    mutable bool owns_ = false;
};
} // namespace tarn
