// All tracks of an instance and the loops they play in.
#pragma once

#include "data/parameters/Tags.h"
#include "data/tracks/KWBtnLine.h"
#include "data/tracks/KWListLine.h"
#include "data/tracks/KWTableXY.h"
#include "data/tracks/KWZoneHandlerContainer.h"

#include <array>
#include <cstdint>
#include <span>

namespace ormund {

class KWSystemInfo;

constexpr int kTrackRows = 16; // a row for each pattern
constexpr int kTrackSteps = 32;
constexpr int kSongSteps = 8; // positions of the pattern sequencer

enum class TrackClass : uint8_t { TableXY, BtnLine, ListLine };

// What a track is, a row of the table of tracks.
struct TrackRow {
    int tag;
    const char* word;
    TrackClass trackClass;
    int steps;
    int rows;
    float least;       // tables: the range
    float most;        // tables: the range; lines: scale of a button, entries of a list
    float whenCleared; // the default of a step
    float maximum;     // lines: the last value that a hand can choose
    float threshold;   // lists: what a random draw must pass to give a value
    int group;         // 1: the global buttons reach it; 2: all but the random one
    int family;        // of the tracks' own clipboard
    uint32_t flags;    // tables: the view's word
};
extern const std::array<TrackRow, 30> kTrackTable;
const TrackRow* trackRow(int tag); // null for what is no track

// The members stand in the order in which the global buttons reach them.
class Tracks {
public:
    explicit Tracks(KWSystemInfo& owner);
    Tracks(const Tracks&) = delete;
    Tracks& operator=(const Tracks&) = delete;

    // --- pattern sequencer: one row, eight positions ---
    KWListLine patternRepeats;
    KWListLine patternNumbers;
    // --- a row for every pattern ---
    KWListLine performance;
    KWTableXY pitch; // scale degrees -12 to 12
    KWBtnLine pitchLock;
    KWListLine arpeggio;
    KWBtnLine velocityOn; // 1 plays
    KWTableXY velocity;
    KWTableXY gateTime; // part of a step
    KWListLine chord;
    KWListLine octave;
    KWListLine pitchBend;
    std::array<KWTableXY, kModTracks> mods;
    // --- when and how a step of the performance lane plays; data/tracks/StepRules.h reads them ---
    KWListLine chance;
    KWListLine condition;
    KWListLine ratchet;
    KWListLine late;
    KWListLine strum;
    // Which five lines of the performance lane are shown: 1 the rules above. What draws or clears
    // keeps to them.
    Crossing<int32_t> performancePage = 0;
    // What the tool buttons do: an EditTool, and the hits of Euclid.
    Crossing<int32_t> editTool = 0;
    Crossing<int32_t> toolHits = 4;
    // --- rows that only display something ---
    KWTableXY modDisplay;   // 258
    KWTableXY bendDisplay;  // 336
    KWTableXY scaleDisplay; // 382
    KWTableXY gateDisplay;  // 428
    KWTableXY arpeggioDisplay;
    // --- playback loops ---
    KWZoneHandlerContainer pitchLoop; // the main lane's
    KWZoneHandlerContainer velocityLoop;
    KWZoneHandlerContainer gateLoop;
    KWZoneHandlerContainer performanceLoop;
    std::array<KWZoneHandlerContainer, kModTracks> modLoops;
    KWZoneHandlerContainer sequenceLoop; // one handler

    // The row of a pattern in every track and loop. Any thread; allocates nothing.
    void selectRow(int pattern);
    int selectedRow() const { return pitch.row(); }

    // By tag, null for any other tag.
    KWTableXY* tableAt(int tag);
    StepLine* lineAt(int tag); // of either class
    KWBtnLine* btnLineAt(int tag);
    KWListLine* listLineAt(int tag);
    KWZoneHandlerContainer* zonesAt(int tag);
    KWChunkableClass* chunkableAt(int tag); // any of the above
    KWInitInterface* trackAt(int tag);      // a table or a line

    // A controller's value, 0 to 1, as a step of the selected row. A tag that is no track (loops
    // included) and a step outside do nothing.
    void writeStep(int tag, int step, float value);
    // Every row of every saved track to its default and every loop to its whole.
    void clearAll();

    // All of the owner's tracks, in the order in which the global buttons reach them.
    std::span<KWInitInterface* const> inOrder() const;

    // The loops that the global copy and paste take along: pitch, velocity, gate and performance
    // before the tracks, the eight of the modulation tracks behind them.
    std::array<KWZoneHandlerContainer*, 4> mainLoops();

private:
    KWSystemInfo& owner;
};

} // namespace ormund
