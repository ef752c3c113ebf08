#include "presets/BankPatterns.h"

#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ormund {

namespace {

constexpr float kLegato = 0.94f; // of a written length, so that a repeated note is heard as two
constexpr float kStaccato = 0.4f;
constexpr float kLeastGate = 0.025f;
constexpr int kBeatsPerBar = 4;
constexpr int kRoot = 24;       // its place in a scale
constexpr int kLastDegree = 12; // of the pitch track, up and down
constexpr int kOctaves[] = {0, 1, -1, 2, -2};
constexpr int kMostRepeats = 15;
constexpr size_t kChainPlaces = 8;

int wholeOf(const std::string& text) { return static_cast<int>(bankNumber(text)); }

std::vector<float> degrees(const BankTokens& values)
{
    std::vector<float> steps;
    for (const std::string& value : values)
        steps.push_back(value == "." && !steps.empty() ? steps.back() : bankNumber(value));
    return steps;
}

std::vector<float> digits(const BankTokens& values, bool zeroIsWhole)
{
    std::vector<float> steps;
    for (const std::string& part : values)
        for (const char c : part) {
            if (c != '.' && (c < '0' || c > '9'))
                throw std::runtime_error("a step is a digit or a dot");
            const float tenths = c == '.' ? 0.0f : static_cast<float>(c - '0');
            steps.push_back(zeroIsWhole && c == '0' ? 1.0f : tenths * 0.1f);
        }
    return steps;
}

std::vector<float> controllers(const BankTokens& values)
{
    if (std::isalpha(static_cast<unsigned char>(values[0][0])) != 0)
        return bankShape(values, kTrackSteps);
    std::vector<float> steps;
    for (const std::string& value : values)
        steps.push_back(value == "." && !steps.empty() ? steps.back() : bankNumber(value) / 127.0f);
    return steps;
}

void fillLine(
    KWListLine& line, int lineRow, const BankTokens& values, int (*wordOf)(const std::string&))
{
    for (size_t i = 0; i < static_cast<size_t>(line.steps()); ++i)
        line.setStepAt(
            lineRow, static_cast<int>(i), static_cast<float>(wordOf(values[i % values.size()])));
}

// What a modulation track moves in our own synth.
constexpr std::array<int, kModTracks> kModSynthTags = {Tag::SynthLevel, Tag::SynthPan,
    Tag::SynthWave, Tag::SynthDetune, Tag::FilterCutoff, Tag::SynthReso, Tag::SynthPeak,
    Tag::DelayMix};

int scaleSize(int scale)
{
    int size = 1;
    while (size < kLastDegree && scaleNote(scale, kRoot + size) < 12)
        ++size;
    return size;
}

struct TrackPitch {
    int degree;
    int octaves;
};

// A degree of any height as the pitch track and the octave line reach it. Two scales break their
// own rule in the second octave; there the octave line stands in.
TrackPitch trackPitch(int scale, int degree)
{
    const int size = scaleSize(scale);
    const int above = ((degree % size) + size) % size;
    const int semitones = scaleNote(scale, kRoot + above) + (degree - above) / size * 12;
    for (const int octaves : kOctaves) {
        const int near = degree - octaves * size;
        if (std::abs(near) <= kLastDegree
            && scaleNote(scale, kRoot + near) + 12 * octaves == semitones)
            return {near, octaves};
    }
    throw std::runtime_error("a note is out of the octave line's reach");
}

int octaveStep(int octaves)
{
    for (size_t step = 0; step < kOctaveOffsets.size(); ++step)
        if (kOctaveOffsets[step] == octaves)
            return static_cast<int>(step);
    throw std::runtime_error("the octave line reaches two octaves");
}

} // namespace

BankPatterns::BankPatterns(DetachedSong& filled) : song(filled)
{
    for (Written& one : written)
        one.legato = kLegato;
}

void BankPatterns::setRaw(int tag, float raw)
{
    if (!(raw >= 0.0f && raw <= 1.0f))
        throw std::runtime_error("a value must be from 0 to 1");
    if (tag >= Tag::ModTrackOn && tag < Tag::ModTrackOn + kModTracks)
        switched.set(static_cast<size_t>(tag - Tag::ModTrackOn));
    if (pattern <= 0) {
        song.setParameter(tag, raw);
        for (int p = 0; p < kPatterns; ++p)
            song.patterns.write(tag, p, raw);
    } else if (patternSlot(tag) >= 0) {
        song.patterns.write(tag, pattern, raw);
    } else {
        throw std::runtime_error("a pattern does not hold this parameter");
    }
}

void BankPatterns::setKey(int note, const std::string& text)
{
    const int keyNote = note >= 0 ? note : wholeOf(text);
    for (size_t p = 0; p < written.size(); ++p)
        if (pattern <= 0 || static_cast<int>(p) == pattern)
            written[p].keyNote = keyNote;
    // Notes go out an octave lower as long as nobody moves them.
    setRaw(Tag::RootKey, (static_cast<float>(keyNote) + 12.0f - 36.0f + 0.5f) / 49.0f);
}

void BankPatterns::keepMods()
{
    keepsMods = true;
    for (int track = 0; track < kModTracks; ++track)
        setRaw(Tag::ModTrackOn + track, parameterEntry(Tag::ModTrackOn + track)->defaultRaw);
}

void BankPatterns::line(const std::string& word, const BankTokens& values)
{
    if (word == "pattern")
        next(values);
    else if (word == "song") {
        fillLine(song.tracks.patternNumbers, 0, values, bankCount);
        song.tracks.sequenceLoop.setZone(0, {0, static_cast<int>(values.size()) - 1});
        song.setParameter(Tag::SongOn, 0.5f);
    } else if (word == "repeats")
        fillLine(song.tracks.patternRepeats, 0, values, bankCount);
    else if (word == "chain")
        chainWords = values;
    else if (pattern < 0)
        throw std::runtime_error("no word is called " + word + " before the first pattern");
    else if (word == "loop")
        loop(values);
    else if (word == "steps")
        steps(wholeOf(values[0]));
    else if (word == "mod")
        mod(values);
    else if (scoreLine(word, values))
        writeScore(word);
    else
        row(word, values);
}

void BankPatterns::finish()
{
    chain();
    std::bitset<kModTracks> used;
    for (int p = 0; p <= pattern; ++p)
        used |= written[static_cast<size_t>(p)].mods;
    // A track that one pattern moves rests at the sound's own value in the others.
    for (int p = 0; p <= pattern; ++p)
        for (int track = 0; track < kModTracks; ++track)
            if (const auto k = static_cast<size_t>(track);
                used[k] && !written[static_cast<size_t>(p)].mods[k]) {
                const bool isDrum = song.parameters.index(Tag::DrumRow + track) != 0;
                const float own = isDrum ? 0.0f : song.parameters.raw(kModSynthTags[k]);
                for (int step = 0; step < kTrackSteps; ++step)
                    song.tracks.mods[k].setRowValue(p, step, own);
                song.patterns.write(Tag::ModTrackOn + track, p, 0.5f);
            }
    // Patterns that were not written are those that were, in turn.
    for (int p = pattern + 1; pattern >= 0 && p < kPatterns; ++p)
        copyPattern(p % (pattern + 1), p);
}

void BankPatterns::next(const BankTokens& values)
{
    // Tracks that the song does not name send nothing.
    if (pattern < 0)
        for (int track = 0; track < kModTracks; ++track)
            if (!switched[static_cast<size_t>(track)])
                setRaw(Tag::ModTrackOn + track, 0.0f);
    if (++pattern >= kPatterns)
        throw std::runtime_error("there are sixteen patterns");
    int from = 0;
    if (values.size() >= 3 && values[1] == "from")
        from = indexOf(values[2]);
    else if (values.size() > 1)
        throw std::runtime_error("pattern takes a name, from, a name");
    if (pattern > 0)
        copyPattern(from, pattern);
    else
        for (int i = 0; i < kTrackSteps; ++i)
            song.tracks.velocityOn.setStepAt(0, i, 1.0f);
    written[static_cast<size_t>(pattern)].name = values.empty() ? "" : values[0];
}

void BankPatterns::copyPattern(int from, int to)
{
    written[static_cast<size_t>(to)] = written[static_cast<size_t>(from)];
    for (const TrackRow& track : kTrackTable) {
        if (track.rows != kTrackRows)
            continue;
        KWTableXY* table = song.tracks.tableAt(track.tag);
        StepLine* line = song.tracks.lineAt(track.tag);
        for (int i = 0; i < track.steps; ++i) {
            if (table)
                table->setRowValue(to, i, table->getRowAtIndex(from, i));
            if (line)
                line->setStepAt(to, i, line->stepAt(from, i));
        }
    }
    for (const ParameterEntry* entry : presetParameters())
        if (KWZoneHandlerContainer* zones = song.tracks.zonesAt(entry->tag))
            zones->setZone(to, zones->zone(from));
    for (int i = 0; i < kPatternValues; ++i)
        song.patterns.setAt(to, i, song.patterns.at(from, i));
}

bool BankPatterns::scoreLine(const std::string& word, const BankTokens& values)
{
    Written& here = written[static_cast<size_t>(pattern)];
    const auto value = [&](size_t i) {
        if (i >= values.size())
            throw std::runtime_error(word + " needs more values");
        return wholeOf(values[i]);
    };
    const auto degree = [&](int note) { return degreeOf(note); };
    if (word == "notes")
        here.score.write(values, 0, degree);
    else if (word == "at")
        here.score.write({values.begin() + 1, values.end()}, value(0) - 1, degree);
    else if (word == "accents")
        here.score.accent(values[0]);
    else if (word == "transpose")
        here.score.transpose(value(0));
    else if (word == "invert")
        here.score.invert();
    else if (word == "reverse")
        here.score.reverse(value(0));
    else if (word == "rotate")
        here.score.rotate(value(0), value(1));
    else if (word == "thin")
        here.score.thin(value(0));
    else if (word == "rest")
        here.score.rest(value(0) - 1, value(1) - 1);
    else if (word == "shorten")
        here.score.shorten(value(0));
    else if (word == "legato")
        here.legato = bankNumber(values[0]);
    else
        return false;
    return true;
}

// A score's rows: pitch and octave line, velocity, chord line, and the shortest length of the gate
// that its longest note fits into.
void BankPatterns::writeScore(const std::string& word)
{
    const Written& here = written[static_cast<size_t>(pattern)];
    if (here.score.isEmpty() && word == "accents")
        return; // they are for the notes that follow
    if (here.score.isEmpty())
        throw std::runtime_error("there are no notes yet");
    const auto longest = static_cast<float>(here.score.longest());
    size_t length = 0;
    while (length + 1 < kGateMultiplyTable.size() && kGateMultiplyTable[length] * 4 < longest)
        ++length;
    const float full = kGateMultiplyTable[length] * 4;
    const auto places = static_cast<float>(kGateMultiplyTable.size() - 1);
    setRaw(Tag::GateTimeMultiply, std::min((static_cast<float>(length) + 0.01f) / places, 1.0f));
    const int scale = choiceOf(Tag::Scale);
    float pitch = 0;
    int octave = 0;
    for (int step = 0; step < kTrackSteps; ++step) {
        const ScoreNote& note = here.score.at(step);
        if (note.length > 0) {
            const TrackPitch reached = trackPitch(scale, note.degree);
            pitch = static_cast<float>(reached.degree);
            octave = reached.octaves;
        }
        song.tracks.pitch.setRowValue(pattern, step, pitch);
        song.tracks.octave.setStepAt(pattern, step, static_cast<float>(octaveStep(octave)));
        song.tracks.chord.setStepAt(pattern, step, static_cast<float>(note.chord));
        song.tracks.velocity.setRowValue(pattern, step, here.score.velocityAt(step));
        const float sounding = note.length > 0
            ? static_cast<float>(note.length) * (note.isShort ? kStaccato : here.legato)
            : 1.0f;
        song.tracks.gateTime.setRowValue(
            pattern, step, std::clamp(sounding / full, kLeastGate, 1.0f));
    }
}

void BankPatterns::row(const std::string& word, const BankTokens& values)
{
    std::string rest;
    Tracks& tracks = song.tracks;
    if (word == "pitch")
        fillTable(tracks.pitch, degrees(values));
    else if (word == "velocity")
        fillTable(tracks.velocity, digits(values, false));
    else if (word == "gate")
        fillTable(tracks.gateTime, digits(values, true));
    else if (word == "lock")
        for (size_t i = 0; i < static_cast<size_t>(kTrackSteps); ++i)
            tracks.pitchLock.setStepAt(
                pattern, static_cast<int>(i), values[0][i % values[0].size()] == 'x' ? 1.0f : 0.0f);
    else if (word == "chord")
        fillLine(tracks.chord, pattern, values, bankChord);
    else if (word == "octave")
        fillLine(tracks.octave, pattern, values, bankOctave);
    else if (word == "arp")
        fillLine(tracks.arpeggio, pattern, values, bankCount);
    else if (word == "bend")
        fillLine(tracks.pitchBend, pattern, values, bankBend);
    else if (word == "random")
        fillLine(tracks.performance, pattern, values, bankRandom);
    else if (word == "chance")
        fillLine(tracks.chance, pattern, values, bankChance);
    else if (word == "condition")
        fillLine(tracks.condition, pattern, values, bankCondition);
    else if (word == "ratchet")
        fillLine(tracks.ratchet, pattern, values, bankRatchet);
    else if (word == "late")
        fillLine(tracks.late, pattern, values, bankCount);
    else if (word == "strum")
        fillLine(tracks.strum, pattern, values, bankStrum);
    else if (const auto drumRow = bankDrum(word))
        drum(*drumRow, values);
    else if (const auto track = bankModTrack(word, rest); track && rest.empty()) {
        fillTable(tracks.mods[static_cast<size_t>(*track)], controllers(values));
        written[static_cast<size_t>(pattern)].mods.set(static_cast<size_t>(*track), !keepsMods);
    } else
        throw std::runtime_error("no word is called " + word);
}

void BankPatterns::drum(int track, const BankTokens& values)
{
    const auto k = static_cast<size_t>(track);
    fillTable(song.tracks.mods[k], digits(values, false));
    written[static_cast<size_t>(pattern)].mods.set(k);
    song.setParameter(Tag::DrumRow + track, 1.0f);
    if (pattern == 0)
        song.setParameter(Tag::ModTrackOn + track, 0.5f);
    song.patterns.write(Tag::ModTrackOn + track, pattern, 0.5f);
}

void BankPatterns::mod(const BankTokens& values)
{
    const auto track = bankModTarget(values[0]);
    if (!track || values.size() < 2)
        throw std::runtime_error(
            "mod takes level, pan, wave, detune, cutoff, resonance, peak or delay");
    const auto k = static_cast<size_t>(*track);
    fillTable(song.tracks.mods[k], controllers({values.begin() + 1, values.end()}));
    written[static_cast<size_t>(pattern)].mods.set(k);
    const float controller = (static_cast<float>(bankModController(*track)) + 0.5f) / 130.0f;
    song.setParameter(Tag::ModToSynth + *track, 0.5f);
    song.setParameter(Tag::ModTarget + *track, controller);
    for (int p = 0; p < kPatterns; ++p)
        song.patterns.write(Tag::ModTarget + *track, p, controller);
    if (pattern == 0)
        song.setParameter(Tag::ModTrackOn + *track, 0.5f);
    song.patterns.write(Tag::ModTrackOn + *track, pattern, 0.5f);
}

void BankPatterns::loop(const BankTokens& values)
{
    if (values.size() != 3)
        throw std::runtime_error("loop takes a lane, its first and its last step");
    std::string rest;
    KWZoneHandlerContainer* zones = nullptr;
    if (values[0] == "pitch")
        zones = &song.tracks.pitchLoop;
    else if (values[0] == "velocity")
        zones = &song.tracks.velocityLoop;
    else if (values[0] == "gate")
        zones = &song.tracks.gateLoop;
    else if (values[0] == "lines")
        zones = &song.tracks.performanceLoop;
    else if (const auto track = bankModTrack(values[0], rest))
        zones = &song.tracks.modLoops[static_cast<size_t>(*track)];
    else if (const auto target = bankModTarget(values[0]))
        zones = &song.tracks.modLoops[static_cast<size_t>(*target)];
    if (!zones)
        throw std::runtime_error("no lane is called " + values[0]);
    zones->setZone(pattern, {wholeOf(values[1]), wholeOf(values[2])});
}

void BankPatterns::steps(int count)
{
    if (count < 1 || count > kTrackSteps)
        throw std::runtime_error("a pattern has 32 steps");
    Tracks& tracks = song.tracks;
    for (KWZoneHandlerContainer* zones :
        {&tracks.pitchLoop, &tracks.velocityLoop, &tracks.gateLoop, &tracks.performanceLoop})
        zones->setZone(pattern, {0, count - 1});
    for (KWZoneHandlerContainer& zones : tracks.modLoops)
        zones.setZone(pattern, {0, count - 1});
}

// Each part lasts whole bars at its pattern's own speed; the unit is the longest that all share.
void BankPatterns::chain()
{
    if (chainWords.empty())
        return;
    if (chainWords.size() % 2 != 0 || chainWords.size() > 2 * kChainPlaces)
        throw std::runtime_error("a chain is up to eight patterns, each with its bars");
    std::vector<std::pair<int, float>> parts; // pattern, steps
    for (size_t i = 0; i < chainWords.size(); i += 2) {
        const int which = indexOf(chainWords[i]);
        const float raw = patternValue(Tag::StepSpeed, which);
        const auto speed = std::min(static_cast<size_t>(raw * kSpeeds), size_t{kSpeeds - 1});
        parts.emplace_back(which,
            std::round(bankNumber(chainWords[i + 1]) * kBeatsPerBar * kSpeedStepsPerBeat[speed]));
    }
    for (int unit = kSongSpeeds - 1; unit >= 0; --unit) {
        const float length = kSongSpeedSteps[static_cast<size_t>(unit)];
        if (!std::all_of(parts.begin(), parts.end(), [&](const auto& part) {
                return std::fmod(part.second, length) == 0 && part.second >= length
                    && part.second / length <= kMostRepeats + 1;
            }))
            continue;
        for (size_t i = 0; i < parts.size(); ++i) {
            song.tracks.patternNumbers.setStepAt(
                0, static_cast<int>(i), static_cast<float>(parts[i].first));
            song.tracks.patternRepeats.setStepAt(
                0, static_cast<int>(i), parts[i].second / length - 1);
        }
        song.tracks.sequenceLoop.setZone(0, {0, static_cast<int>(parts.size()) - 1});
        song.setParameter(
            Tag::SongSpeed, (static_cast<float>(unit) + 0.1f) / static_cast<float>(kSongSpeeds));
        song.setParameter(Tag::SongOn, 0.5f);
        return;
    }
    throw std::runtime_error("the chain's parts have no common length");
}

void BankPatterns::fillTable(KWTableXY& table, const std::vector<float>& values)
{
    for (size_t i = 0; i < static_cast<size_t>(kTrackSteps); ++i)
        table.setRowValue(pattern, static_cast<int>(i), values[i % values.size()]);
}

int BankPatterns::degreeOf(int note) const
{
    const int scale = choiceOf(Tag::Scale);
    const int size = scaleSize(scale);
    const int keyNote = written[static_cast<size_t>(std::max(pattern, 0))].keyNote;
    for (const int octave : kOctaves)
        for (int d = 0; d <= kLastDegree; ++d)
            for (const int degree : {d, -d})
                if (keyNote + scaleNote(scale, kRoot + degree) + 12 * octave == note)
                    return degree + octave * size;
    constexpr const char* kNames[] = {
        "C", "C#", "D", "Eb", "E", "F", "F#", "G", "Ab", "A", "Bb", "B"};
    throw std::runtime_error(std::string(kNames[note % 12]) + std::to_string(note / 12 - 1)
        + " is no note of " + std::string(scaleName(scale)));
}

int BankPatterns::indexOf(const std::string& name) const
{
    for (int p = 0; p <= std::min(pattern, kPatterns - 1); ++p)
        if (written[static_cast<size_t>(p)].name == name)
            return p;
    throw std::runtime_error("no pattern is called " + name);
}

float BankPatterns::patternValue(int tag, int which) const
{
    return song.patterns.at(which, patternSlot(tag));
}

int BankPatterns::choiceOf(int tag) const
{
    const float raw = patternValue(tag, std::max(pattern, 0));
    return std::min(static_cast<int>(raw * kScales), kScales - 1);
}

} // namespace ormund
