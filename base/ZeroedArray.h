// An array of zeros for what is large and mostly unused: pages that are never written cost no
// memory.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

// `T` is a number or a Crossing of one: all bits zero is its zero, and nothing has to be destroyed.
template <typename T>
class ZeroedArray {
public:
    ZeroedArray() = default;
    explicit ZeroedArray(size_t count)
        : memory(static_cast<T*>(std::calloc(count, sizeof(T)))), length(count)
    {
        if (!memory)
            throw std::bad_alloc();
    }

    T& operator[](size_t i) { return memory.get()[i]; }
    const T& operator[](size_t i) const { return memory.get()[i]; }
    T* data() { return memory.get(); }
    size_t size() const { return length; }

private:
    struct Free {
        void operator()(T* zeros) const { std::free(zeros); }
    };
    std::unique_ptr<T, Free> memory;
    size_t length = 0;
};
