// An array of zeros for what is large and mostly unused: pages that are never written cost no
// memory.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

#include <sys/mman.h>

namespace ormund {

// `T` is a number, a Crossing of one or a record of them: all bits zero is a value of it, and
// nothing has to be destroyed. Whole pages from the system, since memory that the heap gives again
// would have to be cleared, and so be used, in full.
template <typename T>
class ZeroedArray {
public:
    ZeroedArray() = default;
    explicit ZeroedArray(size_t count)
        : memory(map(count * sizeof(T)), Unmap{count * sizeof(T)}) { }

    T& operator[](size_t i) { return memory.get()[i]; }
    const T& operator[](size_t i) const { return memory.get()[i]; }
    T* data() { return memory.get(); }

private:
    struct Unmap {
        size_t bytes = 0;
        void operator()(T* pages) const { munmap(pages, bytes); }
    };
    static T* map(size_t bytes)
    {
        void* pages =
            mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED)
            throw std::bad_alloc();
        madvise(pages, bytes, MADV_NOHUGEPAGE); // a huge page would be used in full
        return static_cast<T*>(pages);
    }

    std::unique_ptr<T, Unmap> memory;
};

} // namespace ormund
