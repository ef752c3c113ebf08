// The sixteen patterns of a new instance. Each is a page of its own: a scale, a speed, how long the
// notes are, a line of degrees, accents, gates, and the few marks that make it move.
#include "data/tracks/FactoryContent.h"

#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ControllerNames.h"
#include "data/tracks/PatternStore.h"
#include "data/tracks/Tracks.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace ormund {

namespace {

enum ScaleChoice {
    kChromatic = 0,
    kMajor = 1,
    kDorian = 2,
    kPhrygian = 3,
    kLydian = 4,
    kMixolydian = 5,
    kAeolian = 6,
    kHarmonicMinor = 9,
    kMajorPentatonic = 11,
    kMinorPentatonic = 12,
    kBlues = 14,
};
enum SpeedChoice { kQuarter = 3, kEighth = 5, kEighthTriplet = 6, kSixteenth = 7 };
enum WalkChoice { kForward, kBackward, kRandom, kEachSecond, kEachThird, kEachFourth };
// How many steps a full gate lasts: index into the multiples.
enum LengthChoice { kHalfStep = 0, kOneStep = 1, kTwoSteps = 3, kFourSteps = 7 };

struct Page {
    const char* name;
    ScaleChoice scale;
    SpeedChoice speed;
    float swing;
    LengthChoice length;
    WalkChoice walk;
    std::array<int8_t, kTrackSteps> degrees;
    // A digit a step, repeated to the end of the row: velocity 1 to 9, '.' rests.
    std::string_view velocity;
    // A digit a step, repeated: gate in tenths, '0' a whole one.
    std::string_view gate;
    std::string_view locked; // 'x' where the keyboard does not transpose
    std::string_view moving; // the modulation tracks, 1 to 8, that draw something
    int lastPitch = 31;      // the ends of the loops; unequal ones drift against each other
    int lastVelocity = 31;
    int lastGate = 31;
};

// The first page is written in semitones and in long gates, because it is what plays before
// anything has been set.
// clang-format off
const std::array<Page, kPatterns> kPages = {{
    {"Night drive", kChromatic, kSixteenth, 0, kFourSteps, kForward,
        { 0, 0, 12, 0,   3, 0, 10, 12,   0, 0, 12, 0,   7, 5, 3, -2,
          0, 0, 12, 0,   3, 0, 10, 12,  -4, -4, 8, -4, -2, -2, 10, -2},
        "9.6.8.57" "9.6.84.5", "22322243", "", "25"},
    {"Answer", kDorian, kSixteenth, 0.12f, kOneStep, kForward,
        { 0, 0, 4, 6,    7, 6, 4, 3,     2, 0, 2, 4,   3, 2, 0, -1,
          0, 0, 4, 6,    7, 9, 8, 7,     6, 4, 6, 4,   3, 2, 1, -1},
        "9.697.6." "8.6.75.6", "80656087", "", "26"},
    {"Stabs", kDorian, kSixteenth, 0.2f, kTwoSteps, kForward,
        { 0, 0, 0, 0,    0, 0, 0, 0,     3, 3, 3, 3,   3, 3, 3, 3,
          0, 0, 0, 0,    0, 0, 0, 0,    -1, -1, -1, -1, 3, 3, 3, 3},
        "9..7..8." "..7..6..", "55585565", "x", "38"},
    {"Fountain", kMinorPentatonic, kEighth, 0, kOneStep, kForward,
        { 0, 0, 2, 2,    3, 3, 1, 1,     0, 0, 4, 4,   3, 3, 2, 1,
          0, 0, 2, 2,    3, 3, 5, 5,     4, 4, 3, 3,   2, 2, 1, -1},
        "9687", "75", "", "25"},
    {"Silver line", kMinorPentatonic, kSixteenth, 0.08f, kOneStep, kForward,
        { 0, 0, 5, 0,    0, 1, 0, 5,     0, 4, 0, 0,   3, 0, 1, 5,
          0, 0, 5, 0,    0, 1, 0, 5,     2, 2, 4, 2,   5, 4, 1, 0},
        "95796957" "7.896958", "64085490", "", "56"},
    {"Twelve against nine", kMinorPentatonic, kSixteenth, 0, kOneStep, kForward,
        { 0, 2, 3, 5,    7, 5, 3, 2,     4, 2, 1, 0,   0, 0, 0, 0,
          0, 0, 0, 0,    0, 0, 0, 0,     0, 0, 0, 0,   0, 0, 0, 0},
        "9.57.8.46", "5648375", "", "257", 11, 8, 6},
    {"Deep water", kAeolian, kEighth, 0, kTwoSteps, kForward,
        { 0, 0, 0, 0,    0, 0, 2, 4,     5, 5, 5, 5,   4, 4, 2, 1,
          0, 0, 0, 0,    0, 0, 2, 4,     3, 3, 3, 3,  -1, -1, 1, 2},
        "9...6..5" "8...6.5.", "0", "", "57"},
    {"Shuffle", kBlues, kEighthTriplet, 0, kOneStep, kForward,
        { 0, 0, 4, 5,    5, 4, 0, 0,     2, 3, 3, 4,   0, 0, 4, 6,
          6, 5, 4, 4,    2, 1, 1, 0,     0, 0, 0, 0,   0, 0, 0, 0},
        "9.68.6", "706706", "", "24", 23, 23, 23},
    {"Walk", kMixolydian, kEighth, 0.5f, kOneStep, kForward,
        { 0, 1, 2, 4,    5, 4, 2, 1,     3, 4, 5, 7,   8, 7, 5, 4,
          4, 5, 6, 8,    3, 2, 1, -1,    0, 2, 4, 5,   6, 4, 3, 1},
        "8697", "98", "", "36"},
    {"Bells", kLydian, kSixteenth, 0, kFourSteps, kEachThird,
        { 7, 9, 11, 8,   10, 12, 7, 4,   9, 11, 6, 8,  10, 5, 7, 9,
          7, 9, 11, 8,   10, 12, 7, 4,   8, 10, 5, 7,   9, 4, 6, 11},
        "7.5..6.4" ".7..5.6.", "46", "", "28"},
    {"Engine room", kPhrygian, kSixteenth, 0, kOneStep, kForward,
        { 0, 0, 0, 1,    0, 0, 0, 0,     0, 0, 1, 0,   0, 3, 1, 0,
          0, 0, 0, 1,    0, 0, 0, 0,    -1, -1, -1, 0, 4, 3, 1, 0},
        "95648564" "95749567", "5455", "", "567"},
    {"Slow waltz", kHarmonicMinor, kEighth, 0, kTwoSteps, kForward,
        { 0, 4, 2, 4, 2, 4,   3, 7, 5, 7, 5, 7,   4, 6, 8, 6, 8, 6,   0, 4, 7, 4, 2, 1,
          0, 0, 0, 0, 0, 0,   0, 0},
        "9.5.5." "8.6.54", "965656", "", "38", 23, 23, 23},
    {"Cloud", kDorian, kQuarter, 0, kFourSteps, kForward,
        { 0, 0, 0, 0,    3, 3, 3, 3,     5, 5, 5, 5,   4, 4, 1, 1,
          0, 0, 0, 0,    3, 3, 3, 3,    -2, -2, -2, -2, -1, -1, 1, 1},
        "7...", "9", "x", "2458"},
    {"Corner shop", kMixolydian, kSixteenth, 0.28f, kOneStep, kForward,
        { 0, 0, 7, 0,    6, 7, 0, 0,     0, 4, 0, 6,   7, 0, 3, 4,
          0, 0, 7, 0,    6, 7, 0, 0,     3, 3, 10, 3,  9, 4, 6, 6},
        "9.8.47.5" ".68.59.7", "53424537", "", "56"},
    {"Garden", kMajorPentatonic, kSixteenth, 0.1f, kTwoSteps, kRandom,
        { 0, 2, 4, 5,    7, 5, 4, 2,     3, 5, 6, 8,   7, 5, 3, 1,
          0, 2, 4, 5,    7, 9, 7, 5,     6, 5, 3, 2,   1, 3, 0, -1},
        "8.6.7..5" "7.5.8.64", "3647", "", "2357"},
    {"Last train", kMinorPentatonic, kSixteenth, 0.16f, kOneStep, kForward,
        { 0, 0, 0, 3,    0, 0, -1, 0,    2, 2, 2, 5,   2, 2, 1, 2,
         -2, -2, -2, 0, -2, -2, 1, -1,   0, 0, 5, 4,   3, 2, 1, -1},
        "96.84.85" "9.684.78", "64746503", "", "257"},
}};

enum Line { kChordLine, kArpeggioLine, kOctaveLine, kBendLine, kPerformanceLine };

// What the five performance lines hold. Values are the lines' own: 0 none, n the n-th choice.
struct Mark {
    int pattern;
    Line line;
    int step;
    int value;
};
constexpr int kUp = 2;       // octaves
constexpr int kDown = 3;
constexpr int kMinor7 = 28;
constexpr int kMajor7 = 5;
constexpr int kDominant7 = 4;
constexpr int kMinorTriad = 25;
constexpr int kMajorTriad = 1;
constexpr int kMinorAdd9 = 30;
constexpr int kFifth = 50;
constexpr int kRise = 7;     // arpeggios: up in all four, and its other rhythms behind it
constexpr int kFall = 13;
constexpr int kRandomVelocity = 2; // performance commands
constexpr int kRandomOctave = 5;
constexpr int kScoop = 1;    // bends
constexpr int kSmallScoop = 2;
constexpr int kFallOff = 4;
constexpr int kDoit = 6;
constexpr int kVibrato = 19;

constexpr Mark kMarks[] = {
    { 0, kBendLine, 30, kSmallScoop},
    { 1, kOctaveLine, 14, kUp},     { 1, kOctaveLine, 30, kUp},      { 1, kBendLine, 4, kScoop},
    { 2, kChordLine, 0, kMinor7},   { 2, kChordLine, 3, kMinor7},    { 2, kChordLine, 6, kMinor7},
    { 2, kChordLine, 10, kDominant7}, { 2, kChordLine, 13, kDominant7},
    { 2, kChordLine, 16, kMinor7},  { 2, kChordLine, 19, kMinor7},   { 2, kChordLine, 22, kMinorAdd9},
    { 2, kChordLine, 26, kMajor7},  { 2, kChordLine, 29, kDominant7},
    { 4, kOctaveLine, 11, kUp},     { 4, kOctaveLine, 27, kDown},    { 4, kBendLine, 7, kSmallScoop},
    { 4, kBendLine, 28, kFallOff},  { 4, kPerformanceLine, 13, kRandomVelocity},
    { 5, kOctaveLine, 7, kUp},
    { 6, kBendLine, 7, kVibrato},   { 6, kBendLine, 12, kFallOff},   { 6, kOctaveLine, 24, kDown},
    { 7, kBendLine, 2, kScoop},     { 7, kBendLine, 14, kScoop},     { 7, kOctaveLine, 23, kDown},
    { 8, kChordLine, 28, kDominant7}, { 8, kBendLine, 14, kSmallScoop},
    { 9, kChordLine, 0, kFifth},    { 9, kChordLine, 16, kFifth},    { 9, kOctaveLine, 10, kDown},
    {10, kChordLine, 24, kFifth},   {10, kOctaveLine, 13, kUp},      {10, kArpeggioLine, 31, kRise},
    {11, kChordLine, 0, kMinorTriad}, {11, kChordLine, 6, kMinorTriad}, {11, kChordLine, 12, kMajorTriad},
    {11, kChordLine, 18, kMinorTriad},
    {12, kChordLine, 0, kMinorAdd9}, {12, kChordLine, 4, kDominant7}, {12, kChordLine, 8, kMinorTriad},
    {12, kChordLine, 12, kMinor7},  {12, kChordLine, 16, kMinorAdd9}, {12, kChordLine, 20, kDominant7},
    {12, kChordLine, 24, kMajor7},  {12, kChordLine, 28, kMajor7},
    {13, kBendLine, 5, kDoit},      {13, kOctaveLine, 15, kUp},      {13, kBendLine, 26, kScoop},
    {14, kPerformanceLine, 0, kRandomVelocity}, {14, kPerformanceLine, 8, kRandomOctave},
    {14, kPerformanceLine, 16, kRandomVelocity}, {14, kPerformanceLine, 24, kRandomOctave},
    {14, kArpeggioLine, 20, kFall},
    {15, kBendLine, 15, kScoop},    {15, kChordLine, 28, kFifth},    {15, kArpeggioLine, 31, kFall},
};
// clang-format on

// The pattern sequencer's eight positions: verse, verse, stabs, line, and the way back.
constexpr std::array<int, kSongSteps> kChain = {0, 0, 1, 4, 2, 13, 15, 0};
constexpr int kBar = 15; // sixteen units, a bar of sixteenths

// Where the modulation tracks go when they leave the plug-in, and what they send while they stand
// still. Each is the neighbour of what the same track moves in our own synth: level, pan, wave,
// detune, cutoff, resonance, the filter's peak and the delay.
struct ModRow {
    int controller;
    float still;
};
constexpr std::array<ModRow, kModTracks> kModRows = {{
    {7, 0.53f},
    {10, 0.504f},
    {1, 0.0f},
    {94, 0.3f},
    {74, 0.55f},
    {71, 0.5f},
    {16, 0.6f},
    {91, 0.35f},
}};

float modShape(int track, int pattern, int step)
{
    const float t = static_cast<float>(step) / kTrackSteps;
    const auto beat = static_cast<float>(step % 4) * 0.25f;
    const auto turns = static_cast<float>(pattern % 4 + 1);
    const float phase = t * turns - std::floor(t * turns);
    const float wave = 0.5f - 0.5f * std::cos(phase * 6.2831853f);
    switch (track) {
    case 0:
        return 0.6f - 0.25f * beat;
    case 1:
        return 0.504f + 0.3f * std::sin(phase * 6.2831853f);
    case 2:
        return 0.2f + 0.5f * (1.0f - std::abs(2.0f * t - 1.0f));
    case 3:
        return 0.25f + 0.35f * wave;
    case 4:
        return 0.3f + 0.45f * wave;
    case 5:
        return step % 8 < 4 ? 0.65f : 0.45f;
    case 6:
        return 0.85f - 0.4f * phase;
    default:
        return 0.1f + 0.4f * static_cast<float>(step * 7 % 16) / 15.0f;
    }
}

float repeated(std::string_view text, int step) // 0 to 10, -1 a rest
{
    const char c = text[static_cast<size_t>(step) % text.size()];
    return c == '.' ? -1.0f : static_cast<float>(c == '0' ? 10 : c - '0');
}

// The middle of the raw values that choose an entry.
float rawChoice(int index, int count)
{
    return (static_cast<float>(index) + 0.5f) / static_cast<float>(count);
}

void writeSteps(const Page& page, int row, Tracks& tracks)
{
    for (int step = 0; step < kTrackSteps; ++step) {
        tracks.pitch.setRowValue(row, step, page.degrees[static_cast<size_t>(step)]);
        const float velocity = repeated(page.velocity, step);
        tracks.velocity.setRowValue(row, step, velocity < 0 ? 0.0f : velocity / 9.0f * 0.95f);
        // Rests are rests of velocity; the switch stays for the hand.
        tracks.velocityOn.setStepAt(row, step, 1);
        tracks.gateTime.setRowValue(row, step, repeated(page.gate, step) * 0.1f);
        const bool locked = !page.locked.empty()
            && page.locked[static_cast<size_t>(step) % page.locked.size()] == 'x';
        tracks.pitchLock.setStepAt(row, step, locked ? 1.0f : 0.0f);
        for (int track = 0; track < kModTracks; ++track) {
            const bool moves =
                track == 0 || page.moving.find(static_cast<char>('1' + track)) != page.moving.npos;
            tracks.mods[static_cast<size_t>(track)].setRowValue(row, step,
                moves ? modShape(track, row, step) : kModRows[static_cast<size_t>(track)].still);
        }
    }
    tracks.pitchLoop.setZone(row, {0, page.lastPitch});
    tracks.velocityLoop.setZone(row, {0, page.lastVelocity});
    tracks.gateLoop.setZone(row, {0, page.lastGate});
    tracks.performanceLoop.setZone(row, {0, page.lastPitch});
}

void writeArpeggio(int row, Tracks& tracks)
{
    // Up in all its rhythms, then down: a beat each.
    for (int step = 0; step < kTrackSteps; ++step)
        tracks.arpeggio.setStepAt(
            row, step, static_cast<float>((step < 16 ? kRise : kFall) + step / 4 % 4));
}

// The place of the first target belongs to a tag that is no target, so the first track has none to
// remember; it is off.
void writeTargets(int pattern, PatternStore& store)
{
    for (int track = 1; track < kModTracks; ++track)
        store.write(Tag::ModTarget + track, pattern,
            rawChoice(kModRows[static_cast<size_t>(track)].controller, kModTargets));
}

void writeValues(const Page& page, int pattern, PatternStore& store)
{
    store.write(Tag::Scale, pattern, rawChoice(page.scale, kScales));
    store.write(Tag::StepSpeed, pattern, rawChoice(page.speed, kSpeeds));
    store.write(Tag::PitchMode, pattern, rawChoice(page.walk, kPlaybackModes));
    store.write(Tag::Swing, pattern, page.swing);
    store.write(Tag::GateTimeMultiply, pattern, rawChoice(page.length, kGateMultiples - 1));
}

StepLine& lineOf(Line line, Tracks& tracks)
{
    switch (line) {
    case kChordLine:
        return tracks.chord;
    case kArpeggioLine:
        return tracks.arpeggio;
    case kOctaveLine:
        return tracks.octave;
    case kBendLine:
        return tracks.pitchBend;
    case kPerformanceLine:
        break;
    }
    return tracks.performance;
}

} // namespace

void writeFactoryContent(Tracks& tracks, PatternStore& store)
{
    tracks.clearAll();
    for (int pattern = 0; pattern < kPatterns; ++pattern) {
        const Page& page = kPages[static_cast<size_t>(pattern)];
        writeSteps(page, pattern, tracks);
        writeTargets(pattern, store);
        // The first pattern keeps the host's parameters where a new instance has them.
        if (pattern > 0)
            writeValues(page, pattern, store);
    }
    writeArpeggio(3, tracks);
    for (const Mark& mark : kMarks)
        lineOf(mark.line, tracks)
            .setStepAt(mark.pattern, mark.step, static_cast<float>(mark.value));
    for (int position = 0; position < kSongSteps; ++position) {
        tracks.patternNumbers.setStep(
            position, static_cast<float>(kChain[static_cast<size_t>(position)]));
        tracks.patternRepeats.setStep(position, kBar);
    }
}

} // namespace ormund
