#include "host/formats/SongPlace.h"

#include <cmath>

namespace ormund {

SongPlace SongPlace::after(int frames, double rate) const
{
    SongPlace later = *this;
    if (!playing)
        return later;
    later.quarters += frames * tempo / 60.0 / rate;
    if (loopOn && quarters < loopEnd && later.quarters >= loopEnd && loopEnd > loopStart)
        later.quarters = loopStart + std::fmod(later.quarters - loopEnd, loopEnd - loopStart);
    return later;
}

} // namespace ormund
