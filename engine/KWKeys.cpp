#include "engine/KWKeys.h"

#include "data/parameters/ParameterSink.h"
#include "data/parameters/Tags.h"
#include "data/tracks/KWTableXY.h"
#include "engine/KWNoteSchedule.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kPerformanceZoneLow = 52;

// Two equal velocities differ a little, so that every new key is a change to those that compare.
constexpr float kVelocityOffsets[] = {1.2e-06f, 2.4e-06f, 3.6e-06f, 0.0f};
constexpr float kVelocityScale = 0.0078125f;

// In this order the buttons get their keys.
constexpr int kButtonOrder[kPerformanceKeys] = {0, 1, 5, 4, 3, 2, 7, 6};

constexpr size_t at(int index) { return static_cast<size_t>(index); }

// The alternation makes even two equal random numbers differ.
float restartPart(float& alternate, ParkMiller& random)
{
    alternate = alternate == 3.0f ? 4.0f : 3.0f;
    const float sum = alternate + random.next();
    return sum < 0 ? -sum : sum;
}
} // namespace

const std::array<PerformanceKey, kPerformanceKeys> kPerformanceKeyTable = {{
    // note, button
    {52, Tag::GateTimeButton},
    {53, Tag::VelocityGateButton},
    {54, Tag::Looper},
    {55, Tag::Slowdown},
    {56, Tag::Retrigger},
    {57, Tag::HalfSpeed},
    {58, Tag::StepPlay},
    {59, Tag::Mute},
}};

KeyZone keyZoneOf(int note, int keyboardMode)
{
    const int mode = keyboardMode == 1 ? 1 : 0;
    if (note >= kPatternZoneLow && note <= kPatternZoneHigh)
        return KeyZone::Pattern;
    if (note >= kTransposeZoneLow && note <= kTransposeZoneHigh[mode])
        return KeyZone::Transpose;
    if (mode == 1 && note >= kPerformanceZoneLow && note < kPerformanceZoneLow + kPerformanceKeys)
        return KeyZone::Performance;
    return KeyZone::None;
}

KWKeys::KWKeys(KWSystemInfo& timeBase, KWKeyState& screenKeys, KWTableXY& pitch,
    ParameterSink& parameterSink, InputQueue& inputQueue, KWNoteSchedule& noteSchedule)
    : info(timeBase)
    , keyState(screenKeys)
    , pitchTable(pitch)
    , sink(parameterSink)
    , queue(inputQueue)
    , schedule(noteSchedule)
{
}

bool KWKeys::startThrough(int note, int velocity)
{
    const int played = note + settings.inputOctave;
    if (settings.playThrough == 0 || note < 0 || note >= static_cast<int>(through.size())
        || keyZoneOf(played, settings.keyboardMode) != KeyZone::None)
        return false;
    Through& key = through[at(note)];
    endThrough(note);
    key = {true, static_cast<uint8_t>(std::clamp(played, 0, 127)),
        static_cast<uint8_t>(settings.channel - 1)};
    throughKey = note;
    schedule.holdNote(key.note, velocity, key.channel);
    return true;
}

bool KWKeys::endThrough(int note)
{
    if (note < 0 || note >= static_cast<int>(through.size()) || !through[at(note)].held)
        return false;
    Through& key = through[at(note)];
    key.held = false;
    if (throughKey == note)
        throughKey = -1;
    schedule.endNote(key.note, key.channel);
    return true;
}

void KWKeys::noteOn(int note, int velocity)
{
    if (startThrough(note, velocity))
        return;
    // The first free slot from `nextSlot` on; with none free the oldest key gives way.
    for (int i = 0; i < kSlots; ++i) {
        const int candidate = (nextSlot + i) % kSlots;
        if (!(slots[at(candidate)].gate > 0)) {
            nextSlot = candidate;
            break;
        }
    }
    Slot& slot = slots[at(nextSlot)];
    slot.gate = static_cast<float>(velocity) * kVelocityScale + kVelocityOffsets[velocityOffset];
    slot.note = note;
    lastNote = note;
    velocityOffset = (velocityOffset + 1) % 4;
    nextSlot = (nextSlot + 1) % kSlots;
    update();
}

void KWKeys::noteOff(int note)
{
    if (endThrough(note))
        return;
    for (Slot& slot : slots) {
        if (slot.note == note && slot.gate > 0) {
            slot.gate = 0;
            // The most recently pressed key that is still down becomes the current one.
            lastNote = 0;
            for (int i = 1; i <= kSlots; ++i) {
                const Slot& held = slots[at((nextSlot - i + kSlots) % kSlots)];
                if (held.gate > 0) {
                    lastNote = held.note;
                    break;
                }
            }
            update();
            return;
        }
    }
    queue.cancelNoteOn(note);
}

void KWKeys::allNotesOff()
{
    for (int note = 0; note < static_cast<int>(through.size()); ++note)
        endThrough(note);
    for (Slot& slot : slots)
        slot.gate = 0;
    lastNote = 0;
    nextSlot = 0;
    update();
}

int KWKeys::shiftedNote(const Slot& slot) const { return slot.note + octave; }

// A second key in the zone does not take over from the first; the last one left does.
int KWKeys::zoneValue(int low, int high, int& remembered) const
{
    int inside = 0;
    int candidate = remembered;
    for (int i = 0; i < kSlots; ++i) {
        const int note = shiftedNote(slots[at(i)]);
        if (!(slots[at(i)].gate > 0) || note < low || note > high)
            continue;
        ++inside;
        if (i != remembered)
            candidate = i;
    }
    if (inside == 0) {
        remembered = 0;
        return -1;
    }
    // The remembered slot may have been given to a key of another zone.
    const int kept = shiftedNote(slots[at(remembered)]);
    if (inside == 1 || kept < low || kept > high)
        remembered = candidate;
    return shiftedNote(slots[at(remembered)]) - low;
}

void KWKeys::update()
{
    octave = settings.inputOctave;
    heldCount = 0;
    for (const Slot& slot : slots)
        heldCount += slot.gate > 0;
    for (int mode = 0; mode < 2; ++mode) {
        ZoneSet& set = sets[mode];
        set.transpose = zoneValue(kTransposeZoneLow, kTransposeZoneHigh[mode], set.transposeSlot);
        set.pattern = zoneValue(kPatternZoneLow, kPatternZoneHigh, set.patternSlot);
    }
    sendPerformanceButtons(settings.keyboardMode);
    publishKeyState();
}

// A held key holds its button, and a button stays on until its last key is released.
void KWKeys::sendPerformanceButtons(int mode)
{
    float sums[kPerformanceKeys] = {};
    for (const Slot& slot : slots) {
        if (!(slot.gate > 0) || keyZoneOf(shiftedNote(slot), mode) != KeyZone::Performance)
            continue;
        sums[shiftedNote(slot) - kPerformanceZoneLow] += 1.0f;
    }
    for (const int action : kButtonOrder)
        if (buttonSent[at(action)].changed(sums[action]))
            sink.setParameter(kPerformanceKeyTable[at(action)].tag, sums[action]);
}

void KWKeys::publishKeyState()
{
    keyState.clearNotes();
    for (const Slot& slot : slots)
        if (slot.gate > 0)
            keyState.setNote(slot.note, true);
}

void KWKeys::drainScreenKeyboard()
{
    if (const int note = keyState.noteOn.take(); note >= 0 && note < 128)
        noteOn(note, std::clamp<int>(keyState.noteOnVelocity, 1, 127));
    if (const int note = keyState.noteOff.take(); note >= 0 && note < 128)
        noteOff(note);
}

void KWKeys::tick(const KWSystemInfo&)
{
    drainScreenKeyboard();
    if (queue.takeLostRelease())
        allNotesOff();
    const int mode = settings.keyboardMode == 1 ? 1 : 0;
    if (modeSeen.changed(mode))
        update();
    if (classesSeen.changed(mode * 1000 + settings.inputOctave))
        for (int note = 0; note < 128; ++note)
            // A zone has two pictures of its keys, idle and lit.
            keyState.setClass(
                note, 2 * static_cast<int>(keyZoneOf(note + settings.inputOctave, mode)));

    // Held keys act at once or on the next line of the grid.
    const ZoneSet& set = sets[mode];
    const int sync = settings.keySyncIndex;
    if (grid.changed(gridLine(info.placeRead())) || sync == 0) {
        keyTranspose = set.transpose;
        keyPatternRaw = set.pattern;
    }

    const bool recording = settings.recording != 0;
    const bool upperHeld = keyTranspose >= 0;
    const bool zoneTriggers = settings.triggerSource != 0 && !recording;
    values.gate = (zoneTriggers ? upperHeld : heldCount > 0) ? 1.0f : 0.0f;
    values.keyPattern = std::max(keyPatternRaw, 0);
    values.keyStep = static_cast<float>(keyTranspose + 1);
    values.stepKeyHeld = upperHeld;

    const int centre = mode == 1 ? 24 : 12;
    const int amount = upperHeld && !recording ? std::clamp(keyTranspose - centre, -12, 12) : 0;
    const bool chromatic = settings.transposeChromatic != 0;
    values.semitoneShift = chromatic ? static_cast<float>(amount) : 0.0f;
    values.degreeShift = chromatic ? 0.0f : static_cast<float>(amount);

    if (gateEdge.rose(values.gate))
        gatePart = restartPart(gateAlternate, gateRandom);
    if (retriggerEdge.rose(settings.retrigger))
        retriggerPart = restartPart(retriggerAlternate, retriggerRandom);
    if (restartSeen.changed(values.keyStep) && values.keyStep > 0)
        values.restart = gatePart + retriggerPart;
}

std::optional<int> KWKeys::recordedDegree() const
{
    constexpr int kOctave = 12;
    const int centre = settings.keyboardMode == 1 ? 24 : 12;
    if (keyTranspose >= 0)
        return std::clamp(keyTranspose - centre, -kOctave, kOctave);
    if (throughKey < 0)
        return {};
    int degree = throughKey + settings.inputOctave - kTransposeZoneLow - centre;
    while (degree < -kOctave)
        degree += kOctave;
    while (degree > kOctave)
        degree -= kOctave;
    return degree;
}

void KWKeys::record(int mainPosition)
{
    const int recording = settings.recording;
    if (recordingEdge.rose(recording))
        recordStepCount = 0;
    const std::optional<int> degree = recordedDegree();
    // A key that plays through is another key for each press.
    const int active = recording == 0 || !degree ? 0 : throughKey + 2;
    if (!recordGate.changed(active) || active == 0)
        return;
    const int position = settings.stepRecord != 0 ? recordStepCount : mainPosition;
    pitchTable.setValue(position, static_cast<float>(*degree));
    recordStepCount = (recordStepCount + 1) % 32;
}

} // namespace ormund
