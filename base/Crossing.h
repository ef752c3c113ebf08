// The four types through which the audio thread and the screen's thread share a field. A search
// for them lists every such field.
#pragma once

#include <atomic>
#include <cstdint>

namespace ormund {

// A value that one thread writes and another reads. The reader gets the old value or the new one,
// never a mixture, and nothing is promised about the order of two of them. As cheap as a plain
// field.
template <typename T>
class Crossing {
public:
    Crossing() noexcept = default;
    Crossing(T value) noexcept // NOLINT: reads and writes like a plain T
        : cell(value)
    {
    }
    Crossing(const Crossing& other) noexcept : cell(other.load()) { }
    Crossing& operator=(const Crossing& other) noexcept
    {
        store(other.load());
        return *this;
    }
    Crossing& operator=(T value) noexcept
    {
        store(value);
        return *this;
    }
    operator T() const noexcept { return load(); } // NOLINT
    T load() const noexcept { return cell.load(std::memory_order_relaxed); }
    void store(T value) noexcept { cell.store(value, std::memory_order_relaxed); }
    T add(T amount) noexcept { return cell.fetch_add(amount, std::memory_order_relaxed); }
    T exchange(T value) noexcept { return cell.exchange(value, std::memory_order_relaxed); }

private:
    std::atomic<T> cell{};
    static_assert(std::atomic<T>::is_always_lock_free);
};

// How often something has been written that another thread reads. Who finds the count as it was
// has read all that there is; the writer writes first and counts then.
class ChangeCount {
public:
    void count() noexcept { cell.fetch_add(1, std::memory_order_release); }
    uint32_t load() const noexcept { return cell.load(std::memory_order_acquire); }

private:
    std::atomic<uint32_t> cell{0};
};

// Raised by one side, respected by the other: the writer raises it and then looks at the other
// side's flag, so both ends must see one order of all such flags.
class OneWayFlag {
public:
    void raise() noexcept { cell.store(true); }
    // What was done before is seen by the thread that finds it lowered. To see it raised for too
    // long does no harm, so this does not wait for the other processors as raise() must.
    void lower() noexcept { cell.store(false, std::memory_order_release); }
    bool isRaised() const noexcept { return cell.load(); }
    // Takes the flag if it is free. The one who got true lowers it again.
    bool tryRaise() noexcept { return !cell.exchange(true); }

private:
    std::atomic<bool> cell{false};
};

// Raises a flag for as long as it lives, whichever way its block is left.
class FlagScope {
public:
    explicit FlagScope(OneWayFlag& heldFlag) noexcept : flag(heldFlag) { flag.raise(); }
    ~FlagScope() { flag.lower(); }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    OneWayFlag& flag;
};

// A slot for one small number, -1 when empty. One side posts, the other takes and leaves it empty.
class Mailbox {
public:
    static constexpr int32_t kEmpty = -1;
    void post(int32_t value) noexcept { cell.store(value, std::memory_order_release); }
    int32_t take() noexcept
    {
        return isEmpty() ? kEmpty : cell.exchange(kEmpty, std::memory_order_acq_rel);
    }
    int32_t peek() const noexcept { return cell.load(std::memory_order_acquire); }
    bool isEmpty() const noexcept { return peek() == kEmpty; }
    void clear() noexcept { post(kEmpty); }

private:
    std::atomic<int32_t> cell{kEmpty};
};

} // namespace ormund
