// The Park and Miller generator in 32-bit signed arithmetic.
#pragma once

#include <cstdint>

namespace ormund {

class ParkMiller {
public:
    explicit constexpr ParkMiller(int32_t startSeed) : seed(startSeed) { }
    // The product wraps in 32 bits, so the state, and with it the sample, may be negative: -1 to 1.
    float next()
    {
        const auto product = static_cast<int32_t>(static_cast<uint32_t>(seed) * 16807u);
        seed = product % 2147483647;
        return static_cast<float>(seed) * 4.656613e-10f;
    }
    // 0 to 1.
    float nextUnit() { return next() * 0.5f + 0.5f; }
    float nextMagnitude()
    {
        const float sample = next();
        return sample < 0 ? -sample : sample;
    }

private:
    int32_t seed;
};

} // namespace ormund
