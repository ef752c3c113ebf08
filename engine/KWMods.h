// Eight modulation tracks: a value a step as controller, pressure or program change, and into the
// synth. Only what has moved is sent.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "engine/IdleTicks.h"
#include "engine/KWLanes.h"
#include "engine/KWNotes.h"
#include "engine/KWPerformance.h"

#include <array>

namespace ormund {

class OutgoingList;
class ParameterSink;
class Tracks;

class KWMods : public MovesByInputsOnly {
public:
    static constexpr int kTracks = 8;
    // The synth's parameter that each track drives, by its tag.
    static const std::array<int, kTracks> kSynthTargets;

    struct Settings {                  // written by setParameter, on any thread
        Crossing<int32_t> enabled = 1; // all of them
        std::array<Crossing<int32_t>, kTracks> on{};
        std::array<Crossing<int32_t>, kTracks> target{}; // 0 to 129
        std::array<Crossing<int32_t>, kTracks> toSynth{};
        std::array<Crossing<int32_t>, kTracks> channel{}; // 0 to 15
        // Tracks that play a note instead: their values are velocities, KWDrums reads them.
        std::array<Crossing<int32_t>, kTracks> drum{};
        std::array<Crossing<int32_t>, kTracks> drumNote{};
        std::array<Crossing<int32_t>, kTracks> drumGate{}; // 1 to 100 % of a step
    };
    Settings settings;

    KWMods(const Tracks& tracks, ParameterSink& sink);

    void tick(const KWLanes::Out&, const KWPerformance::Out&, const KWNotes::Out&,
        OutgoingList& outgoing);
    // engine/IdleTicks.h
    int idleTicks(int most) const { return unsent ? 0 : most; }
    // What the tracks put out last, 0 to 1.
    const std::array<float, kTracks>& out() const { return values; }

private:
    struct Cells {
        LastSeen<float> step;
        LastSeen<float> random;
        float cell = 0;
        float held = 0;
        float sentMidi = 0;
        float sentToSynth = 0;
        int channel = 0; // to which `sentMidi` went
    };

    const Tracks& tracks;
    ParameterSink& sink;
    std::array<Cells, kTracks> cells;
    std::array<float, kTracks> values{};
    bool unsent = false; // the list was full for something, which the next tick must send
};

} // namespace ormund
