// Ormund beside what else is installed: cost, memory and load time of each, in one run.
#include "bench/host/EditorOpening.h"
#include "bench/host/Report.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <iostream>

namespace {
constexpr int kOpenings = 7; // each in a new process; the shortest counts

// This many instances, the first one apart, all playing.
void reportManyInstances(const Entrant& ours, int instances)
{
    if (const auto footprint = footprintOf(ours, instances - 1))
        std::cout << instances - 1 << " further instances of " << ours.name << ": "
                  << footprint->megabytesEach * (instances - 1) << " MiB\n";
}

void reportWindow(const std::string& module)
{
    for (const int scale : {1, 2}) {
        std::optional<EditorOpening> best;
        for (int i = 0; i < kOpenings; ++i) {
            const auto opening = firstOpening(module, scale);
            if (opening && (!best || opening->milliseconds < best->milliseconds))
                best = opening;
        }
        if (best)
            std::cout << "first opening of the window, " << best->width
                      << " pixels wide: " << best->milliseconds << " ms\n";
    }
}
} // namespace

int main(int argc, char** argv)
{
    CLI::App app{"Costs of Ormund and its peers"};
    std::string module = ORMUND_MODULE;
    std::string chart;
    int rounds = 15;
    int instances = 64;
    app.add_option("--module", module, "our VST2 module");
    app.add_option("--chart", chart, "write the chart to this PNG file");
    app.add_option("--rounds", rounds, "repetitions of the piece")->check(CLI::Range(1, 1000));
    app.add_option("--instances", instances, "of our own, for the memory of many")
        ->check(CLI::Range(2, 1000));
    CLI11_PARSE(app, argc, argv);

    setenv("QT_QPA_PLATFORM", "offscreen", 0); // a peer starts its toolkit even without a window
    settle();
    std::cout << machineName() << "\n\n";
    std::vector<Result> results;
    for (const Entrant& entrant : lineup(module)) {
        const std::optional<Footprint> footprint = footprintOf(entrant);
        if (!footprint) {
            std::cerr << entrant.name << " cannot be loaded, or is not installed\n";
            continue;
        }
        Result& result = results.emplace_back();
        result.entrant = entrant;
        result.footprint = *footprint;
    }
    for (const Result& result : results)
        if (result.entrant.name.starts_with("Ormund"))
            reportManyInstances(result.entrant, instances);
    reportWindow(module);
    measureCosts(results, rounds);
    std::cout << '\n';
    writeTable(std::cout, results);
    std::cout << '\n';
    writeRatios(std::cout, results);
    if (!chart.empty() && !writeChart(chart, results)) {
        std::cerr << "Cannot write " << chart << '\n';
        return 1;
    }
    return 0;
}
