#include "platform/Png.h"

#include <gtest/gtest.h>

namespace ormund {

namespace {

PixelImage picture()
{
    PixelImage image;
    image.width = 3;
    image.height = 2;
    // Opaque, half and quarter transparent, clear; all multiplied by alpha.
    image.pixels = {0xFF102030, 0x80402000, 0x40000040, 0x00000000, 0xFFFFFFFF, 0xFF000000};
    return image;
}

} // namespace

TEST(Png, AnImageComesBackAsItWas)
{
    PixelImage decoded;
    ASSERT_TRUE(decodePng(encodePng(picture()), decoded));
    EXPECT_EQ(decoded.width, 3);
    EXPECT_EQ(decoded.height, 2);
    EXPECT_EQ(decoded.pixels, picture().pixels);
}

TEST(Png, AFileThatIsCutOrChangedIsRefusedOrDecodedWhole)
{
    const std::vector<uint8_t> file = encodePng(picture());
    PixelImage decoded;
    for (size_t length = 0; length < file.size(); ++length) {
        // What follows the pixels may miss; the pixels may not.
        if (decodePng({file.data(), length}, decoded)) {
            EXPECT_EQ(decoded.pixels, picture().pixels) << length;
        } else {
            EXPECT_TRUE(decoded.isEmpty()) << length;
        }
    }
    for (size_t i = 0; i < file.size(); ++i) {
        std::vector<uint8_t> damaged = file;
        damaged[i] ^= 0x55;
        if (!decodePng(damaged, decoded)) {
            EXPECT_TRUE(decoded.isEmpty()) << i;
        }
    }
    EXPECT_FALSE(decodePng({}, decoded));
    EXPECT_TRUE(encodePng({}).empty());
}

} // namespace ormund
