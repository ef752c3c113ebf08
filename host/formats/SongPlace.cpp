#include "host/formats/SongPlace.h"

#include <cmath>

namespace ormund {

namespace {
constexpr double kSamePlace = 0.01; // quarter notes
} // namespace

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

SongPlace SongFollower::follow(const BarPlace& place, int frames, double rate)
{
    SongPlace song = last;
    song.playing = place.playing;
    song.valid = place.valid && std::isfinite(place.beat) && place.beatsPerBar > 0
        && place.beatType > 0 && place.tempo > 0;
    if (song.valid) {
        const double barLength = place.beatsPerBar * 4.0 / place.beatType;
        song.tempo = place.tempo;
        song.numerator = static_cast<int>(place.beatsPerBar);
        song.denominator = static_cast<int>(place.beatType);
        song.barStart = (place.bar - 1) * barLength;
        song.quarters = song.barStart + place.beat / place.beatsPerBar * barLength;
        // Where a host tells its place only at a change, the framework counts on by itself, and
        // turns to the next bar one block before the beats do.
        const bool goesOn = last.playing && place.playing && place.frame == nextFrame;
        if (goesOn && std::abs(song.quarters - barLength - nextQuarters) < kSamePlace) {
            song.barStart -= barLength;
            song.quarters -= barLength;
        }
    } else {
        song.quarters = static_cast<double>(place.frame) / rate * song.tempo / 60.0;
        song.barStart = 0;
    }
    nextFrame = place.frame + frames;
    nextQuarters = song.quarters + frames / rate * song.tempo / 60.0;
    last = song;
    return song;
}

} // namespace ormund
