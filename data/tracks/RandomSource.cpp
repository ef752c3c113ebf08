#include "data/tracks/RandomSource.h"

namespace ormund {

namespace {

constinit OneWayFlag drawing;
constinit ParkMiller sharedGenerator{RandomDraws::kStartSeed};

} // namespace

RandomDraws::RandomDraws() : draws(drawing.tryRaise()) { }

RandomDraws::~RandomDraws()
{
    if (draws)
        drawing.lower();
}

ParkMiller& RandomDraws::generator() { return sharedGenerator; }

void RandomDraws::restart(int32_t seed)
{
    const RandomDraws draws;
    if (draws)
        sharedGenerator = ParkMiller(seed);
}

} // namespace ormund
