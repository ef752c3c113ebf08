#include "skin/ImagePool.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <sys/mman.h>
#include <utility>
#include <vector>

namespace ormund {

namespace {

size_t bytesOf(cairo_surface_t* image)
{
    return size_t(cairo_image_surface_get_stride(image))
        * size_t(cairo_image_surface_get_height(image));
}

bool isMapped(const void* address)
{
    const auto page = reinterpret_cast<uintptr_t>(address) & ~uintptr_t{4095};
    unsigned char resident = 0;
    return mincore(reinterpret_cast<void*>(page), 1, &resident) == 0 || errno != ENOMEM;
}

} // namespace

// Small ones of one block, one larger than a block, and what no longer fits beside the others.
TEST(ImagePool, NoImageReachesIntoAnother)
{
    ImagePool pool;
    std::vector<cairo_surface_t*> images;
    for (const auto& [width, height] :
        {std::pair{1, 1}, {33, 7}, {1502, 1043}, {82, 82}, {3003, 2085}, {1000, 500}, {1, 3}}) {
        images.push_back(pool.make(width, height));
        ASSERT_NE(images.back(), nullptr);
        EXPECT_EQ(cairo_image_surface_get_width(images.back()), width);
        EXPECT_EQ(cairo_image_surface_get_stride(images.back()), width * 4);
        std::memset(cairo_image_surface_get_data(images.back()), int(images.size()),
            bytesOf(images.back()));
    }
    for (size_t i = 0; i < images.size(); ++i) {
        const unsigned char* data = cairo_image_surface_get_data(images[i]);
        EXPECT_EQ(size_t(std::count(data, data + bytesOf(images[i]), i + 1)), bytesOf(images[i]));
        cairo_surface_destroy(images[i]);
    }
}

TEST(ImagePool, MemoryStaysForTheLastImageAndGoesWithIt)
{
    cairo_surface_t* first = nullptr;
    cairo_surface_t* second = nullptr;
    {
        ImagePool pool;
        first = pool.make(10, 10);
        second = pool.make(10, 10);
    }
    unsigned char* data = cairo_image_surface_get_data(second);
    cairo_surface_destroy(first);
    data[0] = 1;
    EXPECT_TRUE(isMapped(data));
    cairo_surface_destroy(second);
    EXPECT_FALSE(isMapped(data));
}

TEST(ImagePool, WhatIsNoImageOrTooLargeGivesNone)
{
    ImagePool pool;
    for (const auto& [width, height] :
        {std::pair{0, 1}, {1, 0}, {-1, 1}, {1, -1}, {INT_MAX, 1}, {32767, INT_MAX}})
        EXPECT_EQ(pool.make(width, height), nullptr) << width << " by " << height;
    cairo_surface_t* image = pool.make(1, 1);
    EXPECT_NE(image, nullptr);
    cairo_surface_destroy(image);
}

} // namespace ormund
