#pragma once

#include <tarn/Exception.h>

#include <algorithm>
#include <new>
#include <utility>

namespace tarn {
/// An array of a length fixed at construction, owned and deeply copied: a pointer and a count.
///
/// The elements are default-initialised, that is, bytes hold whatever the memory held. Throws
/// BadAllocation when memory is short.
template <class T> class Array {
public:
    Array() noexcept = default;
    /// `count` elements; none for 0. A copy copies the elements, a move leaves its source empty.
    ///@{
    explicit Array(unsigned count) : data_(allocate(count)), count_(count) {}
    Array(const Array& other) : Array(other.count_) { std::copy_n(other.data_, count_, data_); }
    Array(Array&& other) noexcept { swap(other); }
    Array& operator=(Array other) noexcept
    {
        swap(other);
        return *this;
    }
    ~Array() { delete[] data_; }
    ///@}

    ///@{
    T* data() noexcept { return data_; } ///< Null while empty.
    const T* data() const noexcept { return data_; }
    ///@}
    /// The elements from the first to the one before end(), which may be used as a range. No index is checked.
    ///@{
    unsigned size() const noexcept { return count_; }
    bool empty() const noexcept { return count_ == 0; }
    T& operator[](unsigned i) noexcept { return data_[i]; }
    const T& operator[](unsigned i) const noexcept { return data_[i]; }
    T* begin() noexcept { return data_; }
    T* end() noexcept { return data_ + count_; }
    const T* begin() const noexcept { return data_; }
    const T* end() const noexcept { return data_ + count_; }
    ///@}

    /// Frees the elements and becomes empty.
    void clear() noexcept { Array().swap(*this); }
    /// Exchanges the memory: pointers to the elements stay valid.
    void swap(Array& other) noexcept
    {
        std::swap(data_, other.data_);
        std::swap(count_, other.count_);
    }

private:
    static T* allocate(unsigned count)
    {
        if (count == 0)
            return nullptr;
        try {
            return new T[count];
        } catch (const std::bad_alloc&) { // Covers a count whose size in bytes does not fit, too.
            throw BadAllocation();
        }
    }

    T* data_ = nullptr;
    unsigned count_ = 0;
};
} // namespace tarn
