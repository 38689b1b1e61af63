#pragma once

#include <tarn/Exception.h>
#include <tarn/Export.h>
#include <tarn/Layout.h>

#include <concepts>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace tarn {
class Archive;
template <class T> class weak_ref;

namespace detail {
/// A count of 1; null without memory.
TARN_API unsigned int* newCount() noexcept;
TARN_API void freeCount(unsigned int* count) noexcept;

/// An object that nobody shares any more, its count, and what destroys it.
struct LastShare {
    void* object;
    unsigned int* count;
    void (*destroy)(void* object);
};
/// Destroys it, now or, where many are being destroyed inside each other, when the innermost has ended; then frees the
/// count. What its destructor throws the debugger alone hears of.
TARN_API void letGo(const LastShare& last) noexcept;
} // namespace detail

/// Shared ownership of an object: the last pointer to it destroys it. Archive keeps what is shared in this
/// way shared.
///
/// The count is not atomic: pointers to one object belong to one thread. Objects that point at each other
/// in a circle keep each other alive until the circle is opened by hand, or a weak_ref is a part of it.
///
/// The last pointer destroys the object as a T, whatever its class. A `ref_ptr<Serializable>`, whose T has
/// no virtual destructor, therefore frees the object's own memory without running its destructor, and what
/// its members own is lost: see to it that a pointer of the object's own class, or of a base with a
/// virtual destructor, is the last one. Where that class has an `operator delete` of its own, or alignas(16) and
/// more, it has to be.
///
/// Objects that hold each other in a long chain are destroyed one after the other from the hundredth on, not inside
/// each other, so that no chain is too long for the stack. A destructor that throws does not end the program: what it
/// throws is told to the debugger and dropped.
template <class T> class ref_ptr {
public:
    /// Empty.
    ///@{
    ref_ptr() noexcept = default;
    ref_ptr(std::nullptr_t) noexcept {}
    ///@}
    /// Takes over an object made with `new`, as its only owner. Throws BadAllocation, the object being
    /// destroyed then.
    explicit ref_ptr(T* object) : count_(object ? makeCount(object) : nullptr), object_(object) {}
    /// A copy shares the object; a move leaves its source empty.
    ///@{
    ref_ptr(const ref_ptr& other) noexcept : count_(other.count_), object_(other.object_) { addReference(); }
    ref_ptr(ref_ptr&& other) noexcept { swap(other); }
    ///@}
    /// From pointers to derived classes; shares the ownership.
    template <class U>
    requires(!std::same_as<T, U> && std::convertible_to<U*, T*>) ref_ptr(const ref_ptr<U>& other)
    noexcept : count_(other.count_), object_(other.object_) { addReference(); }
    /// Gives up the share held before.
    ref_ptr& operator=(ref_ptr other) noexcept
    {
        swap(other);
        return *this;
    }
    ~ref_ptr() { release(); }

    /// Gives up this pointer's share and becomes empty.
    void release() noexcept
    {
        T* const object = std::exchange(object_, nullptr);
        unsigned int* const count = std::exchange(count_, nullptr);
        if (object && --*count == 0)
            detail::letGo({const_cast<std::remove_cv_t<T>*>(object), count, &destroyLast});
    }
    /// Exchanges the objects; no count changes.
    void swap(ref_ptr& other) noexcept
    {
        std::swap(count_, other.count_);
        std::swap(object_, other.object_);
    }

    /// The object, valid as long as a ref_ptr to it is left. Null when empty: do not use `*` and `->` then.
    ///@{
    T* get() const noexcept { return object_; }
    T& operator*() const noexcept { return *object_; }
    T* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    ///@}
    /// Whether both share one object.
    template <class U> bool operator==(const ref_ptr<U>& other) const noexcept { return count_ == other.count_; }
    /// Whether it is empty.
    bool operator==(std::nullptr_t) const noexcept { return !object_; }

    /// The number of pointers to the object; 0 for an empty pointer.
    unsigned int getCount() const noexcept { return count_ ? *count_ : 0; }
    /// Stands for the object among all shared objects alive; null for an empty pointer.
    const unsigned int* getIdentity() const noexcept { return count_; }

private:
    template <class U> friend class ref_ptr;
    template <class U> friend class weak_ref;
    template <class To, class From> friend ref_ptr<To> ref_ptr_cast(const ref_ptr<From>& from) noexcept;
    friend class Archive;

    ref_ptr(unsigned int* count, T* object) noexcept : count_(count), object_(object) { addReference(); }

    void addReference() noexcept
    {
        if (object_)
            ++*count_;
        else
            count_ = nullptr;
    }

    static unsigned int* makeCount(T* object)
    {
        if (unsigned int* const count = detail::newCount())
            return count;
        destroy(object);
        throw BadAllocation();
    }

    static void destroyLast(void* object) { destroy(static_cast<std::remove_cv_t<T>*>(object)); }

    // Without a virtual destructor the object's memory need not begin where its T does.
    static void destroy(T* object)
    {
        if constexpr (!std::is_polymorphic_v<T> || std::has_virtual_destructor_v<T>) {
            delete object;
        } else {
            const struct Storage {
                ~Storage() { free(start); }
                void* start;
            } storage{const_cast<void*>(dynamic_cast<const volatile void*>(object))};
            if constexpr (std::is_destructible_v<T>)
                object->T::~T();
        }
    }

    // Through the operator that fits the one that `new` took.
    static void free(void* storage) noexcept
    {
        constexpr std::align_val_t alignment{alignof(T)};
        constexpr bool isOverAligned = alignof(T) > __STDCPP_DEFAULT_NEW_ALIGNMENT__;
        if constexpr (isOverAligned && requires { T::operator delete(storage, alignment); })
            T::operator delete(storage, alignment);
        else if constexpr (requires { T::operator delete(storage); })
            T::operator delete(storage);
        else if constexpr (requires { T::operator delete(storage, sizeof(T)); })
            T::operator delete(storage, sizeof(T));
        else if constexpr (isOverAligned)
            ::operator delete(storage, alignment);
        else
            ::operator delete(storage);
    }

    unsigned int* count_ = nullptr;
    T* object_ = nullptr;
};

/// The same object as a To, sharing the ownership; empty when it is none.
template <class To, class From> ref_ptr<To> ref_ptr_cast(const ref_ptr<From>& from) noexcept
{
    return ref_ptr<To>(from.count_, dynamic_cast<To*>(from.get()));
}

TARN_LAYOUT(ref_ptr<int>, 8, 16);
} // namespace tarn
