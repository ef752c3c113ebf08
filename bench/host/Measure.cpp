#include "bench/host/Measure.h"

#include "bench/host/InChild.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fstream>
#include <limits>
#include <numeric>
#include <sched.h>
#include <sys/resource.h>
#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace ormund {

namespace {
constexpr int kPieceFrames = 44032; // two bars at 120 beats a minute, whole blocks of every size
constexpr int kRestFrames = 11264;
constexpr int kWarmFrames = 11264;
constexpr int kNotes[] = {36, 43, 48, 52, 55, 60, 64, 71};
constexpr int kVelocity = 100;

double now()
{
    return std::chrono::duration<double, std::nano>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// What two readings of the clock cost by themselves.
double clockCost()
{
    std::vector<double> costs(1001);
    for (double& cost : costs) {
        const double start = now();
        cost = now() - start;
    }
    std::nth_element(costs.begin(), costs.begin() + 500, costs.end());
    return costs[500];
}

class Performance {
public:
    Performance(const Entrant& itsEntrant, std::unique_ptr<Instrument> itsInstrument)
        : entrant(itsEntrant), instrument(std::move(itsInstrument))
    {
    }

    // From the first beat: notes down, warm-up, the piece, notes up and a rest.
    void play(int block, std::vector<double>& least)
    {
        const double overhead = clockCost();
        transport = {.rolling = true};
        notes(true);
        run(kWarmFrames, block, nullptr, overhead);
        const int64_t before = instrument->messagesOut();
        peak = 0;
        run(kPieceFrames, block, &least, overhead);
        messages = instrument->messagesOut() - before;
        notes(false);
        transport.rolling = false;
        run(kRestFrames, block, nullptr, overhead);
    }
    void playOnce(int frames)
    {
        transport = {.rolling = true};
        notes(true);
        run(frames, Instrument::kMostFrames, nullptr, 0);
    }

    float peak = 0;
    int64_t messages = 0;

private:
    void notes(bool down)
    {
        if (!entrant.holdsNotes)
            return;
        for (const int note : kNotes)
            instrument->send(down ? 0x90 : 0x80, note, down ? kVelocity : 0);
    }

    void run(int frames, int block, std::vector<double>* least, double overhead)
    {
        for (int i = 0; i < frames / block; ++i) {
            instrument->prepare(transport, block);
            const double start = now();
            instrument->process(block);
            const double cost = now() - start - overhead;
            if (least)
                (*least)[static_cast<size_t>(i)] =
                    std::min((*least)[static_cast<size_t>(i)], cost / block);
            for (int k = 0; k < block; ++k)
                peak = std::max(peak, std::abs(instrument->left[k]));
            if (transport.rolling)
                transport.beat += block * transport.tempo / (60.0 * Instrument::kRate);
        }
    }

    const Entrant& entrant;
    std::unique_ptr<Instrument> instrument;
    Transport transport;
};

// Memory that this process alone has written, megabytes.
double privateMegabytes()
{
    std::ifstream file("/proc/self/smaps_rollup");
    double kilobytes = 0;
    for (std::string word; file >> word;) {
        double value = 0;
        if ((word == "Private_Dirty:" || word == "Swap:") && file >> value)
            kilobytes += value;
    }
    return kilobytes / 1024;
}

std::optional<Footprint> measureFootprint(const Entrant& entrant, int further)
{
    constexpr int kThreeSeconds = 3 * Instrument::kRate;
    const auto performer = [&] {
        std::unique_ptr<Instrument> instrument = entrant.load();
        return instrument ? std::make_unique<Performance>(entrant, std::move(instrument)) : nullptr;
    };
    loadLv2("urn:nothing"); // reads the list of what is installed
    const double empty = privateMegabytes();
    const double start = now();
    std::vector<std::unique_ptr<Performance>> all;
    all.push_back(performer());
    if (!all[0])
        return std::nullopt;
    Footprint footprint{.loadMs = (now() - start) * 1e-6};
    all[0]->playOnce(kThreeSeconds);
    const double first = privateMegabytes();
    footprint.megabytesFirst = first - empty;
    for (int i = 0; i < further; ++i) {
        all.push_back(performer());
        if (!all.back())
            return std::nullopt;
        all.back()->playOnce(kThreeSeconds);
    }
    footprint.megabytesEach = (privateMegabytes() - first) / further;
    return footprint;
}
} // namespace

void settle()
{
#if defined(__SSE__)
    _mm_setcsr(_mm_getcsr() | 0x8040);
#endif
    cpu_set_t cores;
    if (sched_getaffinity(0, sizeof cores, &cores) != 0)
        return;
    int last = 0;
    for (int core = 0; core < CPU_SETSIZE; ++core)
        if (CPU_ISSET(core, &cores))
            last = core;
    CPU_ZERO(&cores);
    CPU_SET(last, &cores);
    sched_setaffinity(0, sizeof cores, &cores);
    setpriority(PRIO_PROCESS, 0, -5); // where that is allowed
}

std::optional<Footprint> footprintOf(const Entrant& entrant, int furtherInstances)
{
    return inChild([&] { return measureFootprint(entrant, furtherInstances); });
}

void measureCosts(std::vector<Result>& results, int rounds)
{
    std::vector<std::unique_ptr<Performance>> performances;
    for (const Result& result : results)
        performances.push_back(
            std::make_unique<Performance>(result.entrant, result.entrant.load()));
    for (size_t size = 0; size < std::size(kBlockSizes); ++size) {
        const int block = kBlockSizes[size];
        const std::vector<double> unknown(
            static_cast<size_t>(kPieceFrames / block), std::numeric_limits<double>::infinity());
        std::vector<std::vector<double>> least(results.size(), unknown);
        for (int round = 0; round < rounds; ++round)
            for (size_t i = 0; i < results.size(); ++i)
                performances[i]->play(block, least[i]);
        for (size_t i = 0; i < results.size(); ++i) {
            std::sort(least[i].begin(), least[i].end());
            const double sum = std::accumulate(least[i].begin(), least[i].end(), 0.0);
            results[i].cost[size] = {least[i][least[i].size() / 2], least[i].back(),
                sum / static_cast<double>(least[i].size())};
            results[i].peak = performances[i]->peak;
            results[i].messages = performances[i]->messages;
        }
    }
}

} // namespace ormund
