#include "bench/host/Report.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace ormund {

namespace {
constexpr float kSilence = 1e-4f;

std::string number(const char* format, double value)
{
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

const char* digits(double value) { return value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f"; }
std::string rounded(double value) { return number(digits(value), value); }

const Result* find(const std::vector<Result>& results, Role role)
{
    const auto it = std::find_if(results.begin(), results.end(),
        [role](const Result& result) { return result.entrant.role == role; });
    return it == results.end() ? nullptr : &*it;
}
} // namespace

std::string machineName()
{
    std::ifstream file("/proc/cpuinfo");
    std::string model = "unknown processor";
    std::string family;
    for (std::string line; std::getline(file, line) && !line.empty();) {
        const std::string value = line.substr(std::min(line.find(':') + 2, line.size()));
        if (line.starts_with("model name"))
            model = value;
        else if (line.starts_with("cpu family"))
            family = value;
    }
    double load[1] = {};
    getloadavg(load, 1);
    return model + " (family " + family + "), "
        + std::to_string(std::thread::hardware_concurrency()) + " cores, load "
        + number("%.1f", load[0]);
}

void writeTable(std::ostream& out, const std::vector<Result>& results)
{
    out << "| | What sounds | ns/frame, 64 | worst | ns/frame, 512 | worst | a voice | MiB each | "
           "load ms |\n|---|---|---:|---:|---:|---:|---:|---:|---:|\n";
    for (const Result& result : results) {
        const Entrant& entrant = result.entrant;
        const bool isFloor = entrant.role == Role::Floor;
        out << "| " << entrant.name << " | " << entrant.does;
        if (entrant.voices > 0 && result.peak < kSilence)
            out << " (silent)";
        for (const BlockCost& cost : result.cost)
            out << " | " << rounded(cost.median) << " | " << rounded(cost.worst);
        out << " | " << (entrant.voices > 0 ? rounded(result.cost[0].median / entrant.voices) : "")
            << " | " << (isFloor ? "" : rounded(result.footprint.megabytesEach)) << " | "
            << (isFloor ? "" : rounded(result.footprint.loadMs)) << " |\n";
    }
}

void writeRatios(std::ostream& out, const std::vector<Result>& results)
{
    const Result* floor = find(results, Role::Floor);
    const Result* whole = find(results, Role::Whole);
    const Result* sequencer = find(results, Role::Sequencer); // ours comes first
    if (!floor || !whole || !sequencer)
        return;
    const Result* cheapest = nullptr;
    for (const Result& result : results) {
        const auto costOf = [](const Result& r) { return r.cost[0].median / r.entrant.voices; };
        if (result.entrant.role == Role::Synth && result.peak > kSilence
            && (!cheapest || costOf(result) < costOf(*cheapest)))
            cheapest = &result;
    }
    const double voice = whole->cost[0].median / whole->entrant.voices;
    const double synth = whole->cost[0].median - sequencer->cost[0].median;
    out << "all over the floor: " << rounded(whole->cost[0].median / floor->cost[0].median)
        << " (64), " << rounded(whole->cost[1].median / floor->cost[1].median) << " (512)\n"
        << "worst block over the median at 64: "
        << rounded(whole->cost[0].worst / whole->cost[0].median) << '\n'
        << "sequencer over the synth at 64: "
        << number("%.1f", 100 * sequencer->cost[0].median / synth) << " %\n";
    out << "sequencer alone, mean of all blocks: " << rounded(sequencer->cost[0].mean) << " (64), "
        << rounded(sequencer->cost[1].mean) << " (512)\n";
    if (cheapest)
        out << "a voice of " << cheapest->entrant.name << " over one of ours: "
            << rounded(cheapest->cost[0].median / cheapest->entrant.voices / voice) << '\n';
}

} // namespace ormund
