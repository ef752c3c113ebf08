// The held keys and what they mean: transpose, pattern choice, play, single steps, performance
// buttons and recording. First stage of the tick.
#pragma once

#include "base/Crossing.h"
#include "base/LastSeen.h"
#include "base/ParkMiller.h"
#include "data/music/KWKeyState.h"
#include "data/music/KWSystemInfo.h"
#include "engine/EventQueues.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace ormund {

class KWNoteSchedule;
class KWTableXY;
class ParameterSink;

// The keys between the two zones hold the performance buttons in the second keyboard mode: from the
// lowest on, a key each.
struct PerformanceKey {
    int note;
    int tag;
};
inline constexpr int kPerformanceKeys = 8;
extern const std::array<PerformanceKey, kPerformanceKeys> kPerformanceKeyTable;

// The zones of the keyboard, notes inclusive. What a key means depends on the keyboard mode.
inline constexpr int kPatternZoneLow = 36;
inline constexpr int kPatternZoneHigh = 51;
inline constexpr int kTransposeZoneLow = 60;
inline constexpr int kTransposeZoneHigh[2] = {84, 108};

// Frame classes of the on-screen keyboard.
enum class KeyZone : uint8_t { None, Pattern, Performance, Transpose };
KeyZone keyZoneOf(int note, int keyboardMode);

class KWKeys {
public:
    struct Settings {                         // written by setParameter, on any thread
        Crossing<int32_t> keyboardMode = 0;   // 0 or 1
        Crossing<int32_t> triggerSource = 0;  // 0 any key, 1 the transpose zone
        Crossing<int32_t> inputOctave = 0;    // semitones
        Crossing<int32_t> keySyncIndex = 0;   // 0 off
        Crossing<float> keySyncFactor = 1.0f; // grid lines a quarter note
        Crossing<int32_t> transposeChromatic = 0;
        Crossing<int32_t> stepRecord = 0;
        Crossing<int32_t> recording = 0;
        Crossing<int32_t> retrigger = 0;
        Crossing<int32_t> playThrough = 0; // keys outside the zones sound at once
        Crossing<int32_t> channel = 1;     // 1 to 16, of those
    };
    struct Out {           // written by tick(), read by later stages
        float gate = 0;    // 0 or 1
        float keyStep = 0; // 0 with no key of the upper zone, else 1 and up
        bool stepKeyHeld = false;
        float degreeShift = 0;   // scale degrees
        float semitoneShift = 0; // semitones
        int keyPattern = 0;      // 0 to 15
        float restart = 0;       // changes at each new start by a key
        friend bool operator==(const Out&, const Out&) = default;
    };
    Settings settings;

    // `keyState` is the on-screen keyboard's, `pitch` the table that is recorded into.
    KWKeys(KWSystemInfo& timeBase, KWKeyState& keyState, KWTableXY& pitch, ParameterSink& sink,
        InputQueue& queue, KWNoteSchedule& schedule);

    void noteOn(int note, int velocity);
    void noteOff(int note);
    void allNotesOff();
    void tick(const KWSystemInfo&);
    // After the lanes have moved, so that a live recording writes the step that plays.
    void record(int mainPosition);
    const Out& out() const { return values; }

    // engine/IdleTicks.h
    int idleTicks(int most) const { return most; }
    bool isIdleAt(double place) const
    {
        const bool isOnLine = settings.keySyncIndex == 0 || gridLine(place) == grid.value();
        return isOnLine && keyState.noteOn.isEmpty() && keyState.noteOff.isEmpty();
    }
    void skipTicks(int /*ticks*/, double place) { grid.set(gridLine(place)); }

private:
    // The line of the grid that a place, read ahead, has passed last.
    int gridLine(double place) const
    {
        return static_cast<int>(std::min(static_cast<double>(settings.keySyncFactor) * place, 2e9));
    }

    static constexpr int kSlots = 4;
    struct Slot {
        int note = 0;
        float gate = 0; // velocity 0 to 1, 0 free
    };
    // What one keyboard mode makes of the slots.
    struct ZoneSet {
        int transposeSlot = 0; // remembered
        int patternSlot = 0;
        int transpose = -1; // semitones above the zone's lowest key, -1 no key
        int pattern = -1;
    };

    void drainScreenKeyboard();
    void update();
    int zoneValue(int low, int high, int& remembered) const;
    void sendPerformanceButtons(int mode);
    void publishKeyState();
    int shiftedNote(const Slot& slot) const;
    bool startThrough(int note, int velocity);
    bool endThrough(int note);
    // What the held key of a recording writes, a degree; nothing for none.
    std::optional<int> recordedDegree() const;

    KWSystemInfo& info;
    KWKeyState& keyState;
    KWTableXY& pitchTable;
    ParameterSink& sink;
    InputQueue& queue;
    KWNoteSchedule& schedule;

    Out values;
    std::array<Slot, kSlots> slots;
    int nextSlot = 0;
    int heldCount = 0;
    int lastNote = 0;
    int velocityOffset = 0;
    int octave = 0; // as of the last key
    ZoneSet sets[2];
    int keyTranspose = -1; // after key sync
    int keyPatternRaw = -1;
    LastSeen<int> grid;
    std::array<LastSeen<float>, kPerformanceKeys> buttonSent;
    LastSeen<int> modeSeen;
    LastSeen<int> classesSeen{-1};

    LastSeen<float> gateEdge;
    LastSeen<int> retriggerEdge;
    LastSeen<float> restartSeen;
    ParkMiller gateRandom{1234577};
    ParkMiller retriggerRandom{7654321};
    float gateAlternate = 0;
    float retriggerAlternate = 0;
    float gatePart = 0;
    float retriggerPart = 0;

    // A key that plays through, and what it started.
    struct Through {
        bool held = false;
        uint8_t note = 0;
        uint8_t channel = 0;
    };
    std::array<Through, 128> through;
    int throughKey = -1; // the last one, while it is held
    LastSeen<int> recordGate;
    LastSeen<int> recordingEdge;
    int recordStepCount = 0;
};

} // namespace ormund
