#pragma once

#include <tarn/Exception.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
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
    ~Array() { free(data_); }
    ///@}

    /// Null while empty.
    ///@{
    T* data() noexcept { return data_; }
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
    /// Keeps the elements as far as they fit; those that are new hold whatever the memory holds. Grows in its place
    /// where the heap can. Throws BadAllocation, the array being as it was then.
    void resize(unsigned count) requires std::is_trivially_copyable_v<T>
    {
        if (count == 0) {
            clear();
        } else if constexpr (isPlain) {
            void* const memory = count <= largest ? std::realloc(data_, count * sizeof(T)) : nullptr;
            if (!memory)
                throw BadAllocation();
            data_ = static_cast<T*>(memory);
            count_ = count;
        } else {
            Array resized(count);
            std::copy_n(data_, std::min(count, count_), resized.data_);
            swap(resized);
        }
    }
    /// Exchanges the memory: pointers to the elements stay valid.
    void swap(Array& other) noexcept
    {
        std::swap(data_, other.data_);
        std::swap(count_, other.count_);
    }

private:
    // Whether elements are no more than their bytes, for which the heap can be asked to grow what there is.
    static constexpr bool isPlain = std::is_trivially_copyable_v<T> && std::is_trivially_default_constructible_v<T> &&
                                    alignof(T) <= alignof(std::max_align_t);
    static constexpr unsigned largest = static_cast<unsigned>(
        std::min<std::size_t>(static_cast<unsigned>(-1), static_cast<std::size_t>(-1) / 2 / sizeof(T)));

    static T* allocate(unsigned count)
    {
        if (count == 0)
            return nullptr;
        if constexpr (isPlain) {
            if (void* const memory = count <= largest ? std::malloc(count * sizeof(T)) : nullptr)
                return static_cast<T*>(memory);
            throw BadAllocation();
        } else {
            try {
                return new T[count];
            } catch (const std::bad_alloc&) { // Covers a count whose size in bytes does not fit, too.
                throw BadAllocation();
            }
        }
    }
    static void free(T* data) noexcept
    {
        if constexpr (isPlain)
            std::free(data);
        else
            delete[] data;
    }

    T* data_ = nullptr;
    unsigned count_ = 0;
};
} // namespace tarn
