#pragma once

#include <tarn/Archive.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>
#include <tarn/ref_ptr.h>

#include <concepts>
#include <cstddef>
#include <utility>

namespace tarn {
namespace detail {
/// Whether a shared object is alive still, for all that refer to it weakly.
struct WeakAnchor {
    /// Null once the last ref_ptr has let go.
    unsigned int* count;
    /// Of weak_refs.
    unsigned int references;
};
/// That of an object, made when it has none, with one reference more. Throws BadAllocation.
TARN_API WeakAnchor* anchorOf(unsigned int* count);
/// One reference less.
TARN_API void leaveAnchor(WeakAnchor* anchor) noexcept;
} // namespace detail

/// Refers to a shared object without keeping it alive: for parents and other ways back, so that objects which know each
/// other end by themselves.
///
/// As with ref_ptr the count is not atomic: what refers to one object belongs to one thread. On an archive it is what
/// writeOptional() writes, so that a ref_ptr member becomes a weak one without a change to the data. While such data
/// are read the archive keeps the object; a ref_ptr has to have it before the archive ends.
template <class T> class weak_ref {
public:
    /// Empty.
    weak_ref() noexcept = default;
    /// To what the pointer shares. Throws BadAllocation.
    template <class U>
    requires std::convertible_to<U*, T*> weak_ref(const ref_ptr<U>& ptr)
        : anchor_(ptr ? detail::anchorOf(ptr.count_) : nullptr), object_(ptr.get())
    {
    }
    /// A copy refers to the same object; a move leaves its source empty.
    ///@{
    weak_ref(const weak_ref& other) noexcept : anchor_(other.anchor_), object_(other.object_)
    {
        if (anchor_)
            ++anchor_->references;
    }
    weak_ref(weak_ref&& other) noexcept { swap(other); }
    weak_ref& operator=(weak_ref other) noexcept
    {
        swap(other);
        return *this;
    }
    ///@}
    ~weak_ref() { release(); }

    /// Becomes empty.
    void release() noexcept
    {
        object_ = nullptr;
        if (detail::WeakAnchor* const anchor = std::exchange(anchor_, nullptr))
            detail::leaveAnchor(anchor);
    }
    /// Exchanges the objects.
    void swap(weak_ref& other) noexcept
    {
        std::swap(anchor_, other.anchor_);
        std::swap(object_, other.object_);
    }

    /// A pointer that keeps the object alive; empty when it is gone, or there was none.
    ref_ptr<T> lock() const noexcept
    {
        return anchor_ && anchor_->count ? ref_ptr<T>(anchor_->count, object_) : ref_ptr<T>();
    }
    /// Whether there is no object, or no longer.
    bool expired() const noexcept { return !anchor_ || !anchor_->count; }

private:
    detail::WeakAnchor* anchor_ = nullptr;
    T* object_ = nullptr;
};

/// As writeOptional() and readOptional() of what lock() gives.
///@{
template <class T> OutputStream& operator<<(OutputStream& out, const weak_ref<T>& reference)
{
    const ref_ptr<T> object = reference.lock();
    out << static_cast<bool>(object);
    if (object)
        Archive::behind(out).writeWeak(object);
    return out;
}
template <class T> InputStream& operator>>(InputStream& in, weak_ref<T>& reference)
{
    ref_ptr<T> object;
    readOptional(in, object);
    reference = object;
    return in;
}
///@}

TARN_LAYOUT(weak_ref<int>, 8, 16);
} // namespace tarn
