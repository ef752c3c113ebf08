#include "engine/KWNotes.h"

#include "data/music/ArpeggioTable.h"
#include "data/music/ChordTable.h"
#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/tracks/Tracks.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr float kShortestGate = 0.025f; // of a step
constexpr float kStepsPerGateMultiple = 4.0f;
constexpr float kFullVelocity = 127.0f;
constexpr int kRootDegree = 24; // index of the root in a scale row
constexpr int kLastDegree = 48;
constexpr int kArpeggioMargin = 3;           // the longer rows begin three degrees lower
constexpr int kTripletRhythm = 2;            // counted from 1
constexpr int kFamilyRun[] = {0, 1, -1, -1}; // degrees from note to note

constexpr size_t at(int index) { return static_cast<size_t>(index); }
} // namespace

KWNotes::KWNotes(const Tracks& allTracks) : tracks(allTracks) { }

// The step reads a copy, so that a drag over the running row is heard whole or not at all.
void KWNotes::copyVelocityRow(int pattern, const KWClock::Out& clock)
{
    const bool patternMoved = rowPattern.changed(pattern);
    const bool started = rowPlay.rose(clock.play);
    const bool reloaded = rowReload.changed(clock.reload);
    const bool edited = rowGeneration.changed(tracks.velocity.generation());
    if (!(patternMoved || started || reloaded || edited))
        return;
    for (int i = 0; i < static_cast<int>(workingVelocity.size()); ++i)
        workingVelocity[at(i)] = tracks.velocity.step(i);
}

KWNotes::Arpeggio KWNotes::arpeggio(int degree, int scale, float base, const KWClock::Out& clock,
    const KWLanes::Out& lanes, const KWPerformance::Out& performance)
{
    const float value = performance.command == StepCommand::Arpeggio
        ? performance.slot(StepCommand::Arpeggio)
        : tracks.arpeggio.step(lanes.performance);
    const int choice = static_cast<int>(value);
    const int rhythm = std::max(choice - 1, 0) % kRhythms;
    subStepPace = rhythm + 1 == kTripletRhythm ? 3.0 : 4.0;
    stepsPerTick = clock.stepsPerTick;
    advanceSubStep(lanes.performance);
    arpeggioRuns = choice > 0;
    if (!arpeggioRuns)
        return {false, base, 0};

    const int sub = static_cast<int>(subStep);
    const int family = std::min(static_cast<int>(static_cast<float>(choice - 1) * 0.16666667f), 3);
    const int run = kFamilyRun[family];
    const int first = degree + kArpeggioMargin + run;
    const int which = arpeggioSelect(sub, rhythm);
    const float note =
        which == 0 ? base : static_cast<float>(arpeggioNote(scale, first + (which - 1) * run));
    return {true, note, arpeggioGate(rhythm + 1, sub)};
}

void KWNotes::tick(int pattern, const KWClock::Out& clock, const KWKeys::Out& keys,
    const KWLanes::Out& lanes, const KWPerformance::Out& performance, bool plays)
{
    copyVelocityRow(pattern, clock);
    const StepCommand command = performance.command;
    const auto orRandom = [&](StepCommand replacing, float value) {
        return command == replacing ? performance.slot(replacing) : value;
    };

    // Pitch
    const float pitch = orRandom(StepCommand::Pitch, tracks.pitch.step(lanes.main));
    const bool locked = tracks.pitchLock.step(lanes.main) > 0;
    const float degreeShift = locked ? 0.0f : keys.degreeShift;
    const float semitoneShift = locked ? 0.0f : keys.semitoneShift;
    const int degree =
        std::clamp(static_cast<int>(pitch + degreeShift + kRootDegree), 0, kLastDegree);
    const int scale = settings.scale;
    const Arpeggio arp = arpeggio(
        degree, scale, static_cast<float>(scaleNote(scale, degree)), clock, lanes, performance);

    // Velocity
    const float on = orRandom(StepCommand::VelocityOn, tracks.velocityOn.step(lanes.velocity));
    const float working = workingVelocity[at(lanes.velocity)];
    const float velocity = working > 0 ? orRandom(StepCommand::Velocity, working) : 0.0f;
    float stepVelocity = velocity * on;
    if (arp.runs)
        stepVelocity = stepVelocity > 0 ? arp.subGate * stepVelocity : 0.0f;
    // The threshold is a gate, not a scale.
    const float velocityGate =
        settings.velocityGateOn != 0 ? settings.velocityThreshold.load() : 0.0f;
    const float finalVelocity = plays && velocityGate < stepVelocity ? stepVelocity : 0.0f;

    // Gate
    const float written =
        settings.masterGateOn != 0 ? settings.masterGate.load() : tracks.gateTime.step(lanes.gate);
    values.gate = orRandom(StepCommand::Gate, std::clamp(written, kShortestGate, 1.0f));
    values.duration = values.gate * clock.msPerStep * clock.samplesPerMs;
    if (lanes.gateStepLength != 1.0f)
        values.duration *= lanes.gateStepLength;
    if (!arp.runs)
        values.duration *= settings.gateMultiply * kStepsPerGateMultiple;

    // Notes
    float chord = tracks.chord.step(lanes.performance);
    chord = orRandom(StepCommand::MajorChord, chord);
    chord = orRandom(StepCommand::MinorChord, chord);
    const int octaveIndex = static_cast<int>(tracks.octave.step(lanes.performance));
    const bool hasOctave = octaveIndex >= 0 && octaveIndex < kOctaveSteps;
    const float octave = orRandom(StepCommand::Octave,
        hasOctave ? static_cast<float>(kOctaveOffsets[at(octaveIndex)]) : 0.0f);
    const float extra =
        static_cast<float>(settings.outTranspose + settings.outOctave + settings.rootKey)
        + semitoneShift + octave * 12.0f;
    if (muteLane.changed(lanes.performance))
        values.unmuted = settings.mute != 0 ? 0.0f : 1.0f;
    const bool enabled = clock.manualStep || clock.play > 0;
    const float scaled = enabled ? values.unmuted * kFullVelocity * finalVelocity : 0.0f;
    for (int i = 0; i < kChordNotes; ++i) {
        const bool isChord = chord > 0;
        const float offset =
            isChord ? static_cast<float>(chordOffset(static_cast<int>(chord) - 1, i)) : 0.0f;
        const float note = std::clamp(extra + arp.note + offset, 0.0f, 127.0f);
        const float noteVelocity = isChord || i == 0 ? scaled : 0.0f;
        values.note[at(i)] = static_cast<int>(note);
        values.velocity[at(i)] = std::clamp(static_cast<int>(noteVelocity), 0, 127);
    }

    values.channel = settings.channel - 1;

    // Trigger
    const float latchSum = keys.gate + static_cast<float>(lanes.velocity) * clock.play + clock.play;
    if (playLatchSum.changed(latchSum) && latchSum > 0)
        playLatch = clock.play;
    float wanted = 0;
    if (arp.runs)
        wanted = arp.subGate;
    else if (working > 0)
        wanted = (1.0f + clock.play + static_cast<float>(lanes.gate) + 1.0f) * playLatch;
    triggerValue = enabled ? wanted : 0.0f;
}

} // namespace ormund
