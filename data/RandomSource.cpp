#include "data/RandomSource.h"

namespace {

constinit OneWayFlag drawing;
constinit ParkMiller source{RandomDraws::kStartSeed};

} // namespace

RandomDraws::RandomDraws() : draws(drawing.tryRaise()) { }

RandomDraws::~RandomDraws()
{
    if (draws)
        drawing.lower();
}

ParkMiller& RandomDraws::generator() { return source; }

void RandomDraws::restart(int32_t seed)
{
    const RandomDraws draws;
    if (draws)
        source = ParkMiller(seed);
}
