// A queue from one thread to another that neither of them waits for.
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <type_traits>

namespace ormund {

// One thread pushes and one takes; a full ring refuses, an empty one gives nothing. It allocates
// nothing, so the audio thread may stand at either end.
template <typename T, size_t Size>
class Ring {
    static_assert(std::has_single_bit(Size));
    static_assert(std::is_trivially_copyable_v<T>);

public:
    // The pushing thread. False when the ring is full.
    bool push(const T& value) noexcept
    {
        const size_t at = pushed.load(std::memory_order_relaxed);
        if (at - taken.load(std::memory_order_acquire) == Size)
            return false;
        cells[at % Size] = value;
        pushed.store(at + 1, std::memory_order_release);
        return true;
    }
    // The taking thread: the oldest value, which stays where it is; null when there is none.
    const T* front() const noexcept
    {
        const size_t at = taken.load(std::memory_order_relaxed);
        return at == pushed.load(std::memory_order_acquire) ? nullptr : &cells[at % Size];
    }
    // The taking thread, after front() gave a value.
    void drop() noexcept { taken.fetch_add(1, std::memory_order_release); }
    // The taking thread. False when there is nothing.
    bool take(T& value) noexcept
    {
        const T* oldest = front();
        if (!oldest)
            return false;
        value = *oldest;
        drop();
        return true;
    }

private:
    static constexpr size_t kCacheLine = 64; // each end writes a line of its own
    std::array<T, Size> cells{};
    alignas(kCacheLine) std::atomic<size_t> pushed{0};
    alignas(kCacheLine) std::atomic<size_t> taken{0};
};

} // namespace ormund
