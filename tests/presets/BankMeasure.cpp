#include "tests/presets/BankMeasure.h"

#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Parameters.h"
#include "data/parameters/Tags.h"

#include <algorithm>
#include <cmath>
#include <ebur128.h>
#include <map>
#include <memory>
#include <set>

namespace ormund {

namespace {

constexpr float kRate = 44100;
constexpr size_t kIntervals = 25; // an octave down to an octave up
constexpr size_t kPlaces = 16;    // of a bar
constexpr size_t kHeights = 12;   // half octaves
constexpr size_t kBands = 11;     // of the spectrum, by octaves
constexpr double kLowestBand = 20;
constexpr double kSilence = 1e-9;

double decibels(double value) { return 20 * std::log10(std::max(value, kSilence)); }

// Beats of the whole chain, and how many patterns it names.
double chainOf(KWUniClient& engine, int& patterns)
{
    const int parts = engine.tracks.sequenceLoop.end(0) + 1;
    const auto unit =
        std::min(static_cast<size_t>(engine.parameters.raw(Tag::SongSpeed) * float{kSongSpeeds}),
            size_t{kSongSpeeds - 1});
    double beats = 0;
    std::set<int> named;
    for (int part = 0; part < parts; ++part) {
        const int which = static_cast<int>(engine.tracks.patternNumbers.stepAt(0, part));
        const float raw = engine.patternStore.at(which, patternSlot(Tag::StepSpeed));
        const auto speed = std::min(static_cast<size_t>(raw * float{kSpeeds}), size_t{kSpeeds - 1});
        const float repeats = engine.tracks.patternRepeats.stepAt(0, part);
        beats +=
            static_cast<double>((repeats + 1) * kSongSpeedSteps[unit] / kSpeedStepsPerBeat[speed]);
        named.insert(which);
    }
    patterns = static_cast<int>(named.size());
    return beats;
}

template <size_t count>
void addShares(SongMeasure& measure, size_t at, const std::array<double, count>& counts)
{
    double sum = kSilence;
    for (const double one : counts)
        sum += one;
    for (size_t i = 0; i < count; ++i)
        measure.shape[at + i] = counts[i] / sum;
}

void measureNotes(SongMeasure& measure, const Player& player, double framesPerBeat)
{
    std::array<double, kIntervals> intervals{};
    std::array<double, kPlaces> places{};
    std::array<double, kHeights> heights{};
    std::map<int, std::vector<std::pair<int, int>>> bars; // place in the bar, note
    int before = -1;
    measure.firstSound = static_cast<double>(player.left().size()) / double{kRate};
    for (const MidiOut& event : player.events()) {
        const bool controls = (event.status & 0xF0) == 0xB0;
        measure.bankSelects += controls && (event.data1 == 0 || event.data1 == 32);
        if (!event.isNoteOn())
            continue;
        measure.firstSound =
            std::min(measure.firstSound, static_cast<double>(event.frame) / double{kRate});
        const double sixteenth = static_cast<double>(event.frame) / framesPerBeat * 4;
        const int place = static_cast<int>(sixteenth + 0.25);
        bars[place / 16].emplace_back(place % 16, event.data1);
        ++places[static_cast<size_t>(place % 16)];
        ++heights[static_cast<size_t>(std::clamp((event.data1 - 24) / 6, 0, 11))];
        if (before >= 0)
            ++intervals[static_cast<size_t>(std::clamp(event.data1 - before, -12, 12) + 12)];
        before = event.data1;
    }
    std::set<std::vector<std::pair<int, int>>> different;
    for (const auto& [bar, notes] : bars)
        different.insert(notes);
    measure.differentBars = static_cast<int>(different.size());
    addShares(measure, 0, intervals);
    addShares(measure, kIntervals, places);
    addShares(measure, kIntervals + kPlaces, heights);
}

void measureSound(
    SongMeasure& measure, const std::vector<float>& left, const std::vector<float>& right)
{
    std::vector<float> both;
    double sums[2] = {}, squares[2] = {}, product = 0;
    std::array<double, kBands + 1> low{};
    std::array<double, kBands + 1> weight{};
    std::array<double, kBands> bands{};
    for (size_t band = 0; band <= kBands; ++band)
        weight[band] = 1 - std::exp(-6.283185 * kLowestBand * std::pow(2, band) / double{kRate});
    for (size_t i = 0; i < left.size(); ++i) {
        const double l = static_cast<double>(left[i]);
        const double r = static_cast<double>(right[i]);
        both.push_back(left[i]);
        both.push_back(right[i]);
        sums[0] += l;
        sums[1] += r;
        squares[0] += l * l;
        squares[1] += r * r;
        product += l * r;
        for (size_t band = 0; band <= kBands; ++band)
            low[band] += weight[band] * (l + r - low[band]);
        for (size_t band = 0; band < kBands; ++band)
            bands[band] += std::abs(low[band + 1] - low[band]);
    }
    const auto frames = static_cast<double>(left.size());
    measure.correlation = product / std::max(std::sqrt(squares[0] * squares[1]), kSilence);
    measure.dc = decibels(std::max(std::abs(sums[0]), std::abs(sums[1])) / frames);
    addShares(measure, kIntervals + kPlaces + kHeights, bands);
    ebur128_state* meter =
        ebur128_init(2, static_cast<unsigned long>(kRate), EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK);
    ebur128_add_frames_float(meter, both.data(), left.size());
    ebur128_loudness_global(meter, &measure.loudness);
    double peaks[2] = {};
    for (unsigned side = 0; side < 2; ++side)
        ebur128_true_peak(meter, side, &peaks[side]);
    measure.truePeak = decibels(std::max(peaks[0], peaks[1]));
    ebur128_destroy(&meter);
}

} // namespace

SongMeasure measureSong(const std::string& path, double tempo)
{
    SongMeasure measure;
    Player player({.tempo = tempo, .rate = kRate, .empty = false});
    if (player.engine().library.load(PresetKind::Global, path) != LoadResult::Done)
        return measure;
    const double beats = chainOf(player.engine(), measure.patterns);
    measure.bars = static_cast<int>(std::lround(beats / 4));
    player.keepAudio(true);
    player.start();
    player.playBeats(beats);
    measureNotes(measure, player, double{kRate} * 60 / tempo);
    measureSound(measure, player.left(), player.right());
    return measure;
}

double distance(const SongMeasure& one, const SongMeasure& other)
{
    double sum = 0;
    for (size_t i = 0; i < one.shape.size(); ++i)
        sum += std::abs(one.shape[i] - other.shape[i]);
    return sum / 4; // four shares of one
}

} // namespace ormund
