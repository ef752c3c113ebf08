#include "engine/KWMods.h"

#include "data/parameters/ParameterSink.h"
#include "data/parameters/Tags.h"
#include "data/tracks/Tracks.h"
#include "engine/EventQueues.h"

namespace ormund {

const std::array<int, KWMods::kTracks> KWMods::kSynthTargets = {
    Tag::SynthLevel,
    Tag::SynthPan,
    Tag::SynthWave,
    Tag::SynthDetune,
    Tag::FilterCutoff,
    Tag::SynthReso,
    Tag::SynthPeak,
    Tag::DelayMix,
};

namespace {
// Deliberate: the last two go to the synth in this order.
constexpr int kSynthOrder[KWMods::kTracks] = {0, 1, 2, 3, 4, 5, 7, 6};

constexpr int kAftertouchTarget = 128;
constexpr int kProgramTarget = 129;
constexpr int kPitchBendTarget = 130;

bool send(OutgoingList& outgoing, int channel, int target, int value)
{
    if (target < kAftertouchTarget)
        return outgoing.append(0xB0 | channel, target, value);
    switch (target) {
    case kAftertouchTarget:
        return outgoing.append(0xD0 | channel, value, 127);
    case kProgramTarget:
        return outgoing.append(0xC0 | channel, value, value);
    case kPitchBendTarget:
        return outgoing.append(0xE0 | channel, 0, value);
    default:
        return true; // nothing to send
    }
}
} // namespace

KWMods::KWMods(const Tracks& allTracks, ParameterSink& parameterSink)
    : tracks(allTracks), sink(parameterSink)
{
}

void KWMods::tick(const KWLanes::Out& lanes, const KWPerformance::Out& performance,
    const KWNotes::Out& notes, OutgoingList& outgoing)
{
    const bool enabled = settings.enabled != 0;
    unsent = false;
    for (int track = 0; track < kTracks; ++track) {
        const auto k = static_cast<size_t>(track);
        Cells& cell = cells[k];
        const float value = tracks.mods[k].step(lanes.mods[k]);
        if (cell.step.changed(value))
            cell.cell = value;
        if (cell.random.changed(performance.mod(track)))
            cell.cell = performance.mod(track);
        if (enabled && settings.on[k] != 0)
            cell.held = cell.cell; // off freezes: the last value stands
        values[k] = cell.held * notes.unmuted;
        if (settings.drum[k] != 0)
            continue;
        const float midi = values[k] * 127.0f;
        const int channel = settings.channel[k];
        if (midi == cell.sentMidi && channel == cell.channel)
            continue;
        if (send(outgoing, channel, settings.target[k], static_cast<int>(midi))) {
            cell.sentMidi = midi;
            cell.channel = channel;
        } else {
            unsent = true;
        }
    }
    for (const int track : kSynthOrder) {
        const auto k = static_cast<size_t>(track);
        Cells& cell = cells[k];
        const bool drives =
            settings.drum[k] == 0 && enabled && settings.on[k] != 0 && settings.toSynth[k] != 0;
        if (drives && values[k] != cell.sentToSynth) {
            cell.sentToSynth = values[k];
            sink.setParameter(kSynthTargets[k], values[k]);
        }
    }
}

} // namespace ormund
