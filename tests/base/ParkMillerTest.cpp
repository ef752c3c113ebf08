#include "base/ParkMiller.h"

#include <gtest/gtest.h>

namespace ormund {

TEST(ParkMiller, WrapsInThirtyTwoBitsAndSoGoesNegative)
{
    ParkMiller generator(645637);
    // 645637 * 16807 overflows 32 bits; the wrapped product is negative.
    const auto first = static_cast<int32_t>(645637u * 16807u);
    EXPECT_FLOAT_EQ(generator.next(), static_cast<float>(first % 2147483647) * 4.656613e-10f);
    int negative = 0;
    for (int i = 0; i < 1000; ++i) {
        const float sample = generator.next();
        EXPECT_LE(sample, 1.0f);
        EXPECT_GE(sample, -1.0f);
        negative += sample < 0;
    }
    EXPECT_GT(negative, 300);
    EXPECT_LT(negative, 700);
}

} // namespace ormund
