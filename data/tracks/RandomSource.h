// The one random source of all edit operations, shared by every instance in the process.
#pragma once

#include "base/Crossing.h"
#include "base/ParkMiller.h"

namespace ormund {

// Draws for as long as it lives, if no other instance is drawing: then `draws` is true. An edit
// that comes while another one runs does nothing, so nobody ever waits.
class RandomDraws {
public:
    RandomDraws();
    ~RandomDraws();
    RandomDraws(const RandomDraws&) = delete;
    RandomDraws& operator=(const RandomDraws&) = delete;

    explicit operator bool() const { return draws; }
    float unit() { return generator().nextUnit(); } // 0 to 1

    // For tests and for renderings that must be repeatable.
    static constexpr int32_t kStartSeed = 645637;
    static void restart(int32_t seed = kStartSeed);

private:
    static ParkMiller& generator();
    bool draws;
};

} // namespace ormund
