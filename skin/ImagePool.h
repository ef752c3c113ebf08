// Memory for the pixels of many images, in a few blocks of huge pages: an opening window then first
// touches a handful of pages rather than thousands, which is what it otherwise spends most of its
// time on. A block goes with the last of its images. Screen thread alone, as are the images.
#pragma once

#include <cstddef>
#include <memory>

typedef struct _cairo_surface cairo_surface_t;

namespace ormund {

class ImagePool {
public:
    // A new ARGB32 image surface whose pixels are not set yet and whose rows follow each other
    // without gaps. The caller owns it, and it may outlive the pool. Null when there is no memory,
    // or for a size that is not of an image.
    cairo_surface_t* make(int width, int height);

private:
    struct Block;

    std::weak_ptr<Block> current;
};

} // namespace ormund
