#include "tests/support/TransportScript.h"

#include "data/parameters/ChoiceLists.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr double kRates[] = {44100, 48000, 88200, 96000};
constexpr int kSizes[] = {0, 0, 32, 64, 100, 441, 512, 1024, 2048, 4096};
constexpr int kLargestBlock = 4096;
constexpr double kLateReturn = 0.14; // quarter notes: so far beyond a loop's end a host may stand
constexpr int kMostBack = 31;        // samples
constexpr int64_t kAfterStepBack = 3 * kLargestBlock;
} // namespace

TransportScript::TransportScript(unsigned seed, TransportLimits itsLimits)
    : random(seed)
    , limits(itsLimits)
    , speed(below(kSpeeds))
    , kind(static_cast<Reports>(below(static_cast<int>(Reports::kKinds))))
    , blockSize(kSizes[below(std::size(kSizes))])
    , song(limits.onlyRate > 0 ? limits.onlyRate : kRates[below(std::size(kRates))],
          static_cast<double>(kSpeedStepsPerBeat[static_cast<size_t>(speed)]))
{
    write();
}

int64_t TransportScript::tolerance() const
{
    switch (kind) {
    case Reports::WholeSamples:
    case Reports::CutSamples:
    case Reports::Jitter:
        return 32;
    case Reports::StepsBack:
        return 64;
    default:
        return 0;
    }
}

double TransportScript::drawnTempo()
{
    switch (below(4)) {
    case 0:
        return 30 + below(15); // slower than the sequencer's own clock can be
    case 1:
        return std::round(drawn(450, 3000)) / 10;
    default:
        return 46 + below(254);
    }
}

// On a line of twelfths, or anywhere where the place is exact.
double TransportScript::drawnPlace(double tempo)
{
    const double line = below(12 * 32) / 12.0;
    if (kind == Reports::CutSamples || kind == Reports::WholeSamples) {
        const double perBeat = song.sampleRate() * 60.0 / tempo;
        return std::round(line * perBeat) / perBeat;
    }
    return kind == Reports::Exactly && below(2) == 0 ? drawn(0, 32) : line;
}

// By more than what counts as the same place.
void TransportScript::addLocate(PlayedStretch& stretch)
{
    const PlayedStretch& last = song.stretches().back();
    const double now = static_cast<double>(song.placeIn(last, last.frames));
    const double block = kLargestBlock * song.beatsPerFrame(stretch);
    const double least = std::min(std::max(1.0 / 32, block / 4), 0.5) + 0.01;
    const auto tooNear = [&](double place) {
        double off = std::abs(place - now);
        if (stretch.loopOn) {
            const double length = stretch.loopEnd - stretch.loopStart;
            off = std::min({off, std::abs(off - length)});
        }
        return off < least + (stretch.loopOn ? 0.2 : 0);
    };
    do
        stretch.place = below(2) == 0 && kind == Reports::Exactly ? now + drawn(-0.6, 0.6)
                                                                  : drawnPlace(stretch.tempo);
    while (stretch.place < 0 || tooNear(stretch.place)
        || (stretch.loopOn && stretch.place >= stretch.loopEnd - 0.2));
}

void TransportScript::write()
{
    PlayedStretch stretch;
    stretch.tempo = drawnTempo();
    stretch.frames = below(3000);
    song.add(stretch);
    const int count = 4 + below(4);
    for (int i = 0; i < count; ++i) {
        const bool played = stretch.playing;
        stretch.frames = static_cast<int64_t>(drawn(0.2, 2.0) * song.sampleRate());
        stretch.continues = false;
        stretch.playing = true;
        const double now = static_cast<double>(
            song.placeIn(song.stretches().back(), song.stretches().back().frames));
        if (!played) {
            stretch.loopOn = false;
            stretch.tempo = drawnTempo();
            stretch.place = below(3) == 0 ? -drawn(0.05, 1.5) : drawnPlace(stretch.tempo);
        } else if (now < 0) {
            stretch.continues = true;
        } else {
            switch (below(5)) {
            case 0:
                stretch.playing = false;
                break;
            case 1:
                addLocate(stretch);
                break;
            case 2:
                stretch.continues = true;
                stretch.tempo = drawnTempo();
                break;
            default: {
                stretch.continues = true;
                if (!limits.reportsLoops)
                    break;
                stretch.loopOn = true;
                const double least = std::max(2.1 / song.stepsPerBeat(), 0.75);
                const bool onLine = below(2) == 0;
                stretch.loopStart = onLine ? std::floor(now) : std::max(now - drawn(0, 1), 0.0);
                stretch.loopEnd = now + drawn(0.2, least) + least;
                if (onLine)
                    stretch.loopEnd = std::ceil(stretch.loopEnd * 4) / 4;
                break;
            }
            }
        }
        song.add(stretch);
    }
}

double TransportScript::reported(const PlayedStretch& stretch, int64_t at, int64_t frames)
{
    const auto place = static_cast<double>(song.placeIn(stretch, at));
    const double perFrame = song.beatsPerFrame(stretch);
    switch (kind) {
    case Reports::LateReturn: {
        if (!stretch.loopOn || at == 0)
            return place;
        const auto before = static_cast<double>(song.placeIn(stretch, at - frames));
        const double past = place - stretch.loopStart;
        const bool returned = before + static_cast<double>(frames) * perFrame >= stretch.loopEnd;
        return returned && place < before && past < kLateReturn ? stretch.loopEnd + past : place;
    }
    case Reports::WholeSamples:
        return std::round(place / perFrame) * perFrame;
    case Reports::CutSamples:
        return std::floor(place / perFrame + 1e-6) * perFrame;
    case Reports::Jitter:
        return place + drawn(-1e-6, 1e-6) * stretch.tempo / 60;
    case Reports::StepsBack:
        return at > 0 && place > 1 && at + kAfterStepBack < stretch.frames && below(8) == 0
            ? place - drawn(0, kMostBack) * perFrame
            : place;
    default:
        return place;
    }
}

std::vector<ReportedBlock> TransportScript::blocks(int size)
{
    std::vector<ReportedBlock> all;
    for (const PlayedStretch& stretch : song.stretches()) {
        int64_t lastFrames = 0;
        for (int64_t at = 0; at < stretch.frames;) {
            const int fixed = size > 0 ? size : blockSize;
            const int64_t wanted = fixed > 0 ? fixed : 1 + below(below(4) == 0 ? 4096 : 300);
            const int64_t frames = std::min(wanted, stretch.frames - at);
            all.push_back({.frames = static_cast<int>(frames),
                .playing = stretch.playing,
                .place = stretch.playing ? reported(stretch, at, lastFrames) : 0,
                .tempo = stretch.tempo,
                .loopOn = stretch.loopOn,
                .loopStart = stretch.loopStart,
                .loopEnd = stretch.loopEnd});
            lastFrames = frames;
            at += frames;
        }
    }
    return all;
}

} // namespace ormund
