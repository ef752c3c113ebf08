#include "skin/ImagePool.h"

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <sys/mman.h>

namespace ormund {

namespace {

constexpr size_t kHugePage = size_t{2} << 20;
constexpr size_t kBlockBytes = 2 * kHugePage;
// Of a cache line, so that no image begins within another's.
constexpr size_t kAlignment = 64;

constexpr size_t roundedUp(size_t bytes, size_t step) { return (bytes + step - 1) / step * step; }

} // namespace

struct ImagePool::Block {
    // Whole huge pages; `memory` is null when there are none to be had.
    explicit Block(size_t wanted) : bytes(wanted)
    {
        // The system places it anywhere, so one huge page more has room for an aligned beginning.
        void* mapped = mmap(
            nullptr, bytes + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED)
            return;
        auto* const begin = static_cast<std::byte*>(mapped);
        const size_t before = roundedUp(reinterpret_cast<uintptr_t>(begin), kHugePage)
            - reinterpret_cast<uintptr_t>(begin);
        memory = begin + before;
        if (before > 0)
            munmap(begin, before);
        if (before < kHugePage)
            munmap(memory + bytes, kHugePage - before);
        madvise(memory, bytes, MADV_HUGEPAGE); // where refused, small pages serve as well
    }
    ~Block()
    {
        if (memory)
            munmap(memory, bytes);
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    std::byte* memory = nullptr;
    size_t bytes;
    size_t used = 0;
};

cairo_surface_t* ImagePool::make(int width, int height)
{
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width);
    if (width <= 0 || height <= 0 || stride <= 0 || size_t(stride) != size_t(width) * 4)
        return nullptr;
    const size_t bytes = roundedUp(size_t(stride) * size_t(height), kAlignment);
    std::shared_ptr<Block> block = current.lock();
    if (!block || block->bytes - block->used < bytes) {
        block = std::make_shared<Block>(roundedUp(std::max(bytes, kBlockBytes), kHugePage));
        if (!block->memory)
            return nullptr;
        current = block;
    }
    cairo_surface_t* image = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(block->memory + block->used), CAIRO_FORMAT_ARGB32, width,
        height, stride);
    block->used += bytes;
    // The surface holds the block for as long as anybody holds the surface.
    static constexpr cairo_user_data_key_t kHolder{};
    auto* holder = new std::shared_ptr<Block>(block);
    const auto release = [](void* held) { delete static_cast<std::shared_ptr<Block>*>(held); };
    if (cairo_surface_set_user_data(image, &kHolder, holder, release) == CAIRO_STATUS_SUCCESS)
        return image;
    release(holder);
    cairo_surface_destroy(image);
    return nullptr;
}

} // namespace ormund
