#include "presets/BankSource.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace ormund {

namespace {

using Tokens = std::vector<std::string>;

struct Word {
    const char* word;
    int tag;
};
constexpr Word kParameterWords[] = {
    {"root", Tag::RootKey},
    {"scale", Tag::Scale},
    {"swing", Tag::Swing},
    {"level", Tag::SynthLevel},
    {"pan", Tag::SynthPan},
    {"wave", Tag::SynthWave},
    {"detune", Tag::SynthDetune},
    {"attack", Tag::SynthAttack},
    {"decay", Tag::SynthDecay},
    {"sustain", Tag::SynthSustain},
    {"release", Tag::SynthRelease},
    {"cutoff", Tag::FilterCutoff},
    {"resonance", Tag::SynthReso},
    {"peak", Tag::SynthPeak},
    {"filter-attack", Tag::FilterAttack},
    {"filter-decay", Tag::FilterDecay},
    {"filter-sustain", Tag::FilterSustain},
    {"filter-release", Tag::FilterRelease},
    {"delay-left", Tag::DelayLeft},
    {"delay-right", Tag::DelayRight},
    {"delay-feed", Tag::DelayFeed},
    {"delay-mix", Tag::DelayMix},
    {"length", Tag::GateTimeMultiply},
    {"speed", Tag::StepSpeed},
    {"song-speed", Tag::SongSpeed},
    {"walk", Tag::PitchMode},
    {"velocity-walk", Tag::VelocityMode},
    {"gate-walk", Tag::GateMode},
    {"lines-walk", Tag::PerformanceMode},
    {"trigger-source", Tag::TriggerSource},
    {"key-sync", Tag::KeySync},
    {"chromatic-keys", Tag::TransposeMode},
    {"keyboard-mode", Tag::KeyboardModeTwin},
    {"random-min", Tag::RandomMin},
    {"random-max", Tag::RandomMax},
};

// The kinds of chord that the bank uses, as places of the list.
const std::map<std::string, int> kChordWords = {{".", 0}, {"M", 1}, {"6", 3}, {"7", 4}, {"M7", 5},
    {"9", 6}, {"m", 25}, {"m6", 27}, {"m7", 28}, {"mM7", 29}, {"m9", 30}, {"dim", 49}, {"5", 50},
    {"aug", 51}, {"sus", 52}, {"5up", 54}};
const std::map<std::string, int> kOctaveWords = {
    {".", 0}, {"+2", 1}, {"+1", 2}, {"-1", 3}, {"-2", 4}};

// mod1 to mod8 as 0 to 7; `rest` is what follows, "-on" for instance.
std::optional<int> modTrack(const std::string& word, std::string& rest)
{
    if (word.size() < 4 || word.compare(0, 3, "mod") != 0 || word[3] < '1' || word[3] > '8')
        return std::nullopt;
    rest = word.substr(4);
    return word[3] - '1';
}

int parameterTag(const std::string& word)
{
    for (const Word& known : kParameterWords)
        if (word == known.word)
            return known.tag;
    std::string rest;
    if (const auto track = modTrack(word, rest)) {
        if (rest == "-on")
            return Tag::ModTrackOn + *track;
        if (rest == "-target")
            return Tag::ModTarget + *track;
        if (rest == "-walk")
            return Tag::modMode(*track);
        if (rest == "-synth")
            return Tag::ModToSynth + *track;
        if (rest.empty())
            return Tag::modSteps(*track);
    }
    throw std::runtime_error("no parameter is called " + word);
}

float number(const std::string& text)
{
    size_t used = 0;
    const float value = std::stof(text, &used);
    if (used != text.size())
        throw std::runtime_error(text + " is no number");
    return value;
}

float shape(const std::string& name, float t)
{
    const float phase = t - std::floor(t);
    if (name == "wave")
        return 0.5f - 0.5f * std::cos(phase * 6.2831853f);
    if (name == "up")
        return phase;
    if (name == "down")
        return 1.0f - phase;
    if (name == "tri")
        return 1.0f - std::abs(2.0f * phase - 1.0f);
    if (name == "square")
        return phase < 0.5f ? 1.0f : 0.0f;
    throw std::runtime_error("no shape is called " + name);
}

class Source {
public:
    Source(DetachedSong& filled, std::string sourceRoot) : song(filled), root(std::move(sourceRoot))
    {
    }

    void line(const std::string& text)
    {
        const Tokens tokens = split(text);
        if (tokens.empty())
            return;
        const std::string& word = tokens[0];
        const Tokens values(tokens.begin() + 1, tokens.end());
        if (values.empty() && word != "pattern")
            throw std::runtime_error(word + " needs a value");
        if (word == "set")
            set(values);
        else if (word == "tempo")
            song.info.setTempo(static_cast<double>(number(values[0])));
        else if (word == "key")
            // Notes go out an octave lower as long as nobody moves them.
            setRaw(Tag::RootKey, (number(values[0]) + 12.0f - 36.0f + 0.5f) / 49.0f);
        else if (word == "synth")
            include(text.substr(text.find("synth") + 5));
        else if (word == "song")
            chain(values);
        else if (word == "repeats")
            fillLine(song.tracks.patternRepeats, 0, values, {});
        else if (word == "learn")
            learn(values);
        else if (word == "loop")
            loop(values);
        else if (word == "pattern")
            nextPattern();
        else
            row(word, values);
    }

    // Patterns that were not written are those that were, in turn.
    void finish()
    {
        const int written = pattern + 1;
        if (written <= 0)
            return;
        for (int p = written; p < kPatterns; ++p)
            copyPattern(p % written, p);
    }

    void include(const std::string& name)
    {
        const size_t start = name.find_first_not_of(' ');
        readFile(root + "/synth/" + name.substr(start) + ".txt");
    }

    void readFile(const std::string& path)
    {
        std::ifstream file(path);
        if (!file)
            throw std::runtime_error(path + ": cannot be read");
        std::string text;
        for (int n = 1; std::getline(file, text); ++n) {
            try {
                line(text);
            } catch (const std::exception& reason) {
                const std::string what = reason.what();
                throw std::runtime_error(what.find(".txt:") != std::string::npos
                        ? what
                        : path + ":" + std::to_string(n) + ": " + what);
            }
        }
    }

private:
    // Words at blanks; a text in quotes is one, with its first quote kept as a mark.
    static Tokens split(const std::string& text)
    {
        Tokens tokens;
        for (size_t i = 0; i < text.size();) {
            if (text[i] == '#')
                break;
            if (text[i] == ' ' || text[i] == '\t') {
                ++i;
                continue;
            }
            size_t end = text[i] == '"' ? text.find('"', i + 1) : text.find_first_of(" \t", i);
            end = std::min(end, text.size());
            tokens.push_back(text.substr(i, end - i));
            i = end + (text[i] == '"' ? 1 : 0);
        }
        return tokens;
    }

    void set(const Tokens& values)
    {
        if (values.size() != 2)
            throw std::runtime_error("set takes a word and a value");
        const int tag = parameterTag(values[0]);
        if (values[1][0] != '"') {
            setRaw(tag, number(values[1]));
            return;
        }
        const auto raw = parameterFromText(tag, values[1].substr(1));
        if (!raw)
            throw std::runtime_error(values[0] + " has no choice " + values[1]);
        setRaw(tag, *raw);
    }

    void setRaw(int tag, float raw)
    {
        if (!(raw >= 0.0f && raw <= 1.0f))
            throw std::runtime_error("a value must be from 0 to 1");
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

    void nextPattern()
    {
        if (++pattern >= kPatterns)
            throw std::runtime_error("there are sixteen patterns");
        if (pattern > 0)
            copyPattern(0, pattern);
        else
            for (int i = 0; i < kTrackSteps; ++i)
                song.tracks.velocityOn.setStepAt(0, i, 1.0f);
    }

    void copyPattern(int from, int to)
    {
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

    void row(const std::string& word, const Tokens& values)
    {
        if (pattern < 0)
            throw std::runtime_error("no word is called " + word + " before the first pattern");
        std::string rest;
        if (word == "pitch")
            fillTable(song.tracks.pitch, degrees(values));
        else if (word == "velocity")
            fillTable(song.tracks.velocity, digits(values, false));
        else if (word == "gate")
            fillTable(song.tracks.gateTime, digits(values, true));
        else if (word == "lock")
            fillLock(values[0]);
        else if (word == "chord")
            fillLine(song.tracks.chord, pattern, values, kChordWords);
        else if (word == "octave")
            fillLine(song.tracks.octave, pattern, values, kOctaveWords);
        else if (word == "arp")
            fillLine(song.tracks.arpeggio, pattern, values, {});
        else if (word == "bend")
            fillLine(song.tracks.pitchBend, pattern, values, {});
        else if (word == "random")
            fillLine(song.tracks.performance, pattern, values, {});
        else if (const auto track = modTrack(word, rest); track && rest.empty())
            fillTable(song.tracks.mods[static_cast<size_t>(*track)], controllers(values));
        else
            throw std::runtime_error("no word is called " + word);
    }

    static std::vector<float> degrees(const Tokens& values)
    {
        std::vector<float> steps;
        for (const std::string& value : values)
            steps.push_back(value == "." && !steps.empty() ? steps.back() : number(value));
        return steps;
    }

    static std::vector<float> digits(const Tokens& values, bool zeroIsWhole)
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

    static std::vector<float> controllers(const Tokens& values)
    {
        std::vector<float> steps;
        if (std::isalpha(static_cast<unsigned char>(values[0][0])) != 0) {
            const float periods = values.size() > 1 ? number(values[1]) : 1.0f;
            const float least = values.size() > 2 ? number(values[2]) / 127.0f : 0.0f;
            const float most = values.size() > 3 ? number(values[3]) / 127.0f : 1.0f;
            for (int i = 0; i < kTrackSteps; ++i) {
                const float t = static_cast<float>(i) * periods / kTrackSteps;
                steps.push_back(least + (most - least) * shape(values[0], t));
            }
            return steps;
        }
        for (const std::string& value : values)
            steps.push_back(value == "." && !steps.empty() ? steps.back() : number(value) / 127.0f);
        return steps;
    }

    void fillTable(KWTableXY& table, const std::vector<float>& steps)
    {
        for (size_t i = 0; i < static_cast<size_t>(kTrackSteps); ++i)
            table.setRowValue(pattern, static_cast<int>(i), steps[i % steps.size()]);
    }

    void fillLock(const std::string& marks)
    {
        for (size_t i = 0; i < static_cast<size_t>(kTrackSteps); ++i)
            song.tracks.pitchLock.setStepAt(
                pattern, static_cast<int>(i), marks[i % marks.size()] == 'x' ? 1.0f : 0.0f);
    }

    static void fillLine(KWListLine& line, int lineRow, const Tokens& values,
        const std::map<std::string, int>& words)
    {
        for (size_t i = 0; i < static_cast<size_t>(line.steps()); ++i) {
            const std::string& value = values[i % values.size()];
            const auto known = words.find(value);
            float step = 0;
            if (known != words.end())
                step = static_cast<float>(known->second);
            else if (!words.empty())
                throw std::runtime_error("no choice is called " + value);
            else if (value != ".")
                step = number(value);
            line.setStepAt(lineRow, static_cast<int>(i), step);
        }
    }

    void chain(const Tokens& values)
    {
        fillLine(song.tracks.patternNumbers, 0, values, {});
        song.tracks.sequenceLoop.setZone(0, {0, static_cast<int>(values.size()) - 1});
        song.setParameter(Tag::SongOn, 0.5f);
    }

    void learn(const Tokens& values)
    {
        if (values.size() < 2)
            throw std::runtime_error("learn takes a controller and a word");
        const int step = values.size() > 2 ? static_cast<int>(number(values[2])) : 0;
        const int tag = values[1] == "velocity" ? Tag::Velocity
            : values[1] == "pitch"              ? Tag::Pitch
                                                : parameterTag(values[1]);
        song.midiMap.addAssignment(static_cast<int>(number(values[0])), tag, step);
    }

    void loop(const Tokens& values)
    {
        if (values.size() != 3 || pattern < 0)
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
        else if (const auto track = modTrack(values[0], rest))
            zones = &song.tracks.modLoops[static_cast<size_t>(*track)];
        if (!zones)
            throw std::runtime_error("no lane is called " + values[0]);
        zones->setZone(
            pattern, {static_cast<int>(number(values[1])), static_cast<int>(number(values[2]))});
    }

    DetachedSong& song;
    std::string root;
    int pattern = -1;
};

} // namespace

bool readBankSource(
    const std::string& path, const std::string& root, DetachedSong& song, std::string& error)
{
    try {
        Source source(song, root);
        source.readFile(path);
        source.finish();
        return true;
    } catch (const std::exception& reason) {
        error = reason.what();
        return false;
    }
}

} // namespace ormund
