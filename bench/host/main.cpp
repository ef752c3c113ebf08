// Ormund beside what else is installed: cost, memory and load time of each, in one run.
#include "apps/options/CommandLine.h"
#include "bench/host/EditorOpening.h"
#include "bench/host/Report.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <vector>

using namespace ormund;

namespace {
constexpr int kOpenings = 9; // each in a new process

// This many instances, the first one apart, all playing.
void reportManyInstances(const Entrant& ours, int instances)
{
    if (const auto footprint = footprintOf(ours, instances - 1))
        std::cout << instances - 1 << " further instances of " << ours.name << ": "
                  << footprint->megabytesEach * (instances - 1) << " MiB\n";
}

void reportLeastAndMedian(const char* what, std::vector<double> milliseconds)
{
    std::ranges::sort(milliseconds);
    std::cout << ", " << what << ' ' << milliseconds.front() << " to "
              << milliseconds[milliseconds.size() / 2];
}

// Least and median of each.
void reportWindow(const std::string& module)
{
    for (const double scale : {1.0, 1.5, 2.0}) {
        std::vector<EditorOpening> openings;
        for (int i = 0; i < kOpenings; ++i)
            if (const auto opening = openingOfEditor(module, scale))
                openings.push_back(*opening);
        if (openings.empty())
            return;
        for (const auto which : {&EditorOpening::first, &EditorOpening::second}) {
            std::vector<double> clock, processor;
            for (const EditorOpening& opening : openings) {
                clock.push_back((opening.*which).clock);
                processor.push_back((opening.*which).processor);
            }
            std::cout << (which == &EditorOpening::first ? "first" : "second")
                      << " opening of the window, " << openings.front().width << " pixels wide";
            reportLeastAndMedian("clock", clock);
            reportLeastAndMedian("processor", processor);
            std::cout << " ms\n";
        }
    }
}
} // namespace

int main(int argc, char** argv)
{
    CommandLine line("Costs of Ormund and its peers", "ormund-bench-host");
    std::string module = ORMUND_MODULE;
    std::string chart;
    int rounds = 15;
    int instances = 64;
    line.text("--module", module, "our VST2 module", "FILE");
    line.text("--chart", chart, "write the chart to this PNG file", "FILE");
    line.number("--rounds", rounds, "repetitions of the piece", "N", {1, 1000});
    line.number("--instances", instances, "of our own, for the memory of many", "N", {2, 1000});
    bool windowAlone = false;
    line.flag("--window", windowAlone, "measure the opening of our window alone");
    if (const auto end = line.parse(argc, argv))
        return *end;

    setenv("QT_QPA_PLATFORM", "offscreen", 0); // a peer starts its toolkit even without a window
    settle();
    std::cout << machineName() << "\n\n";
    if (windowAlone) {
        reportWindow(module);
        return 0;
    }
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
