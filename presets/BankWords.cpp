#include "presets/BankWords.h"

#include "data/music/BendShapes.h"
#include "data/parameters/Tags.h"
#include "data/tracks/StepRules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <map>
#include <stdexcept>
#include <string_view>

namespace ormund {

namespace {

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
    {"trigger-mode", Tag::TriggerMode},
    {"key-sync", Tag::KeySync},
    {"chromatic-keys", Tag::TransposeMode},
    {"keyboard-mode", Tag::KeyboardModeSecond},
    {"random-min", Tag::RandomMin},
    {"random-max", Tag::RandomMax},
    {"seed", Tag::ChanceSeed},
    {"channel", Tag::MelodyChannel},
    {"launch", Tag::Launch},
    {"pads-on-step", Tag::PadsOnStep},
    {"play-through", Tag::PlayThrough},
    {"pitch-speed", Tag::LaneSpeed},
    {"lines-speed", Tag::LaneSpeed + 1},
    {"velocity-speed", Tag::LaneSpeed + 2},
    {"gate-speed", Tag::LaneSpeed + 3},
};

struct ModWord {
    const char* word;
    int controller;
};
constexpr std::array<ModWord, 8> kModWords = {{{"level", 11}, {"pan", 10}, {"wave", 70},
    {"detune", 94}, {"cutoff", 74}, {"resonance", 71}, {"peak", 75}, {"delay", 91}}};

constexpr std::array<std::string_view, 6> kMajorKinds = {"M", "Mb6", "6", "7", "M7", "9"};
constexpr std::array<std::string_view, 6> kMinorKinds = {"m", "mb6", "m6", "m7", "mM7", "m9"};
constexpr std::array<std::string_view, 4> kVoicings = {"", "/3", "/5", "/0"};
constexpr std::array<std::string_view, 6> kOtherChords = {
    "dim", "5", "aug", "fourths", "cluster", "fifths"};

constexpr std::array<std::string_view, 18> kRandomWords = {".", "pitch", "velocity", "on", "gate",
    "octave", "bend", "major", "minor", "arp", "mod1", "mod2", "mod3", "mod4", "mod5", "mod6",
    "mod7", "mod8"};

// In the order of the chord table.
std::map<std::string, int> chordWords()
{
    std::map<std::string, int> words;
    int place = 1;
    for (const auto& kinds : {kMajorKinds, kMinorKinds})
        for (const std::string_view voicing : kVoicings)
            for (const std::string_view kind : kinds)
                words[std::string(kind).append(voicing)] = place++;
    for (const std::string_view word : kOtherChords)
        words[std::string(word)] = place++;
    return words;
}

std::map<std::string, int> bendWords()
{
    std::map<std::string, int> words;
    for (int shape = 0; shape < kBendShapes; ++shape) {
        std::string word(bendShapeName(shape));
        for (char& c : word)
            c = c == ' ' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        words[word] = shape + 1;
    }
    return words;
}

int choice(const std::map<std::string, int>& words, const std::string& word)
{
    if (word == ".")
        return 0;
    if (const auto known = words.find(word); known != words.end())
        return known->second;
    throw std::runtime_error("no choice is called " + word);
}

float shapePoint(const std::string& name, float t)
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

} // namespace

BankTokens splitBankLine(const std::string& text)
{
    BankTokens tokens;
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

float bankNumber(const std::string& text)
{
    size_t used = 0;
    float value = 0;
    try {
        value = std::stof(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size())
        throw std::runtime_error(text + " is no number");
    return value;
}

std::optional<int> bankNote(const std::string& text)
{
    constexpr std::string_view kLetters = "C D EF G A B";
    const size_t letter =
        text.empty() || text[0] == ' ' ? std::string_view::npos : kLetters.find(text[0]);
    if (letter == std::string_view::npos)
        return std::nullopt;
    int note = static_cast<int>(letter);
    size_t at = 1;
    if (at < text.size() && (text[at] == '#' || text[at] == 'b'))
        note += text[at++] == '#' ? 1 : -1;
    const bool isNegative = at < text.size() && text[at] == '-';
    at += isNegative;
    if (at + 1 != text.size() || std::isdigit(static_cast<unsigned char>(text[at])) == 0)
        return std::nullopt;
    const int octave = (text[at] - '0') * (isNegative ? -1 : 1);
    return note + 12 * (octave + 1);
}

std::optional<int> bankModTrack(const std::string& word, std::string& rest)
{
    if (word.size() < 4 || word.compare(0, 3, "mod") != 0 || word[3] < '1' || word[3] > '8')
        return std::nullopt;
    rest = word.substr(4);
    return word[3] - '1';
}

std::optional<int> bankDrum(const std::string& word)
{
    if (word.size() != 5 || word.compare(0, 4, "drum") != 0 || word[4] < '1' || word[4] > '8')
        return std::nullopt;
    return word[4] - '1';
}

std::optional<int> bankModTarget(const std::string& word)
{
    for (size_t track = 0; track < kModWords.size(); ++track)
        if (word == kModWords[track].word)
            return static_cast<int>(track);
    return std::nullopt;
}

int bankModController(int track) { return kModWords.at(static_cast<size_t>(track)).controller; }

int bankParameter(const std::string& word)
{
    for (const Word& known : kParameterWords)
        if (word == known.word)
            return known.tag;
    std::string rest;
    if (const auto track = bankModTrack(word, rest)) {
        if (rest == "-on")
            return Tag::ModTrackOn + *track;
        if (rest == "-target")
            return Tag::ModTarget + *track;
        if (rest == "-walk")
            return Tag::modMode(*track);
        if (rest == "-synth")
            return Tag::ModToSynth + *track;
        if (rest == "-note")
            return Tag::DrumNote + *track;
        if (rest == "-gate")
            return Tag::DrumGate + *track;
        if (rest == "-channel")
            return Tag::ModChannel + *track;
        if (rest == "-speed")
            return Tag::LaneSpeed + 4 + *track;
        if (rest.empty())
            return Tag::modSteps(*track);
    }
    throw std::runtime_error("no parameter is called " + word);
}

int bankChord(const std::string& word)
{
    static const std::map<std::string, int> words = chordWords();
    return choice(words, word);
}

int bankOctave(const std::string& word)
{
    static const std::map<std::string, int> words = {{"+2", 1}, {"+1", 2}, {"-1", 3}, {"-2", 4}};
    return choice(words, word);
}

int bankBend(const std::string& word)
{
    static const std::map<std::string, int> words = bendWords();
    const auto known = words.find(word);
    return known == words.end() ? bankCount(word) : known->second;
}

int bankRandom(const std::string& word)
{
    const auto known = std::find(kRandomWords.begin(), kRandomWords.end(), word);
    return known == kRandomWords.end() ? bankCount(word)
                                       : static_cast<int>(known - kRandomWords.begin());
}

int bankChance(const std::string& word)
{
    return word == "." ? 0 : 100 - std::clamp(static_cast<int>(bankNumber(word)), 0, 100);
}

int bankCondition(const std::string& word)
{
    static const std::map<std::string, int> words = [] {
        std::map<std::string, int> all = {
            {"1st", 36}, {"!1st", 37}, {"fill", 38}, {"!fill", 39}, {"pre", 40}, {"!pre", 41}};
        for (int of = 2; of <= kLongestTurn; ++of)
            for (int turn = 1; turn <= of; ++turn)
                all[std::to_string(turn) + ":" + std::to_string(of)] = turnCondition(turn, of);
        return all;
    }();
    return choice(words, word);
}

namespace {
// A number and one of three signs behind it, as the lists of ratchets and strums count them.
int signedChoice(const std::string& word, const char* signs, int least, int most)
{
    if (word == ".")
        return 0;
    const size_t sign =
        word.size() < 2 ? std::string::npos : std::string_view(signs).find(word.back());
    const int number = static_cast<int>(
        bankNumber(sign == std::string::npos ? word : word.substr(0, word.size() - 1)));
    if (number < least || number > most)
        throw std::runtime_error(word + " is out of range");
    return 1 + 3 * (number - least) + (sign == std::string::npos ? 0 : static_cast<int>(sign) + 1);
}
} // namespace

int bankRatchet(const std::string& word) { return signedChoice(word, "+-", 2, 8); }

int bankStrum(const std::string& word) { return signedChoice(word, "-~", 1, 8); }

int bankCount(const std::string& word)
{
    return word == "." ? 0 : static_cast<int>(bankNumber(word));
}

std::vector<float> bankShape(const BankTokens& values, int steps)
{
    const float periods = values.size() > 1 ? bankNumber(values[1]) : 1.0f;
    const float least = values.size() > 2 ? bankNumber(values[2]) / 127.0f : 0.0f;
    const float most = values.size() > 3 ? bankNumber(values[3]) / 127.0f : 1.0f;
    std::vector<float> points;
    for (int i = 0; i < steps; ++i) {
        const float t = static_cast<float>(i) * periods / static_cast<float>(steps);
        points.push_back(least + (most - least) * shapePoint(values[0], t));
    }
    return points;
}

} // namespace ormund
