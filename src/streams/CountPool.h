#pragma once

#include <cstddef>

namespace tarn {
/// Makes the counts of objects that come in large numbers: many in one piece of memory, which is freed with the last
/// of them. The counts may be freed on other threads, by detail::freeCount(), which tells them from single ones.
class CountPool {
public:
    CountPool() = default;
    /// A copy begins a piece of its own.
    CountPool(const CountPool&) : CountPool() {}
    CountPool& operator=(const CountPool&) = delete;
    ~CountPool() { leaveBlock(); }

    /// After this one count can be taken without taking memory.
    void makeRoom();
    /// A count of 0.
    unsigned int* take() noexcept;

    struct Block;

private:
    void leaveBlock() noexcept;

    Block* block_ = nullptr;
    std::size_t used_ = 0;
};
} // namespace tarn
