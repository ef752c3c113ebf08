// Hours of transport as fast as they go: random play, edits, loads, rates, blocks, tempos and
// locates. Ends with 1 and the seed when a note hangs, the steps leave the host's position, the
// memory grows, or a sample is no number.
#include "apps/options/CommandLine.h"
#include "tests/soak/RandomDisturber.h"
#include "tests/soak/SoakRig.h"
#include "tests/support/Checked.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <unistd.h>

using namespace ormund;

namespace fs = std::filesystem;

namespace {
constexpr double kRound = 600;     // seconds from one silence to the next
constexpr double kMostGrowth = 16; // KB, between the first quarter and the end
// KB that a window and its undo may hold: 8 MB of levels, 4 MB of texts, the images, one picture.
constexpr double kMostGiven = 24'000;

// What each thread's cache of the allocator holds counts as in use, up to a quarter of a megabyte,
// so the program starts again without it.
void doWithoutThreadCaches(char** argv)
{
    if (kChecked || std::getenv("GLIBC_TUNABLES"))
        return;
    setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
    execv("/proc/self/exe", argv);
}

struct Memory {
    double inUse = 0;    // KB handed out by the allocator
    double resident = 0; // KB
};

Memory memoryNow()
{
    Memory memory;
    if (!kChecked) {
        malloc_trim(0);
        memory.inUse = static_cast<double>(mallinfo2().uordblks) / 1024;
    }
    if (FILE* file = std::fopen("/proc/self/statm", "r")) {
        long size = 0;
        long pages = 0;
        if (std::fscanf(file, "%ld %ld", &size, &pages) == 2)
            memory.resident = static_cast<double>(pages) * 4;
        std::fclose(file);
    }
    return memory;
}

std::vector<std::string> presetsIn(const std::string& folder)
{
    std::vector<std::string> found;
    std::error_code error;
    for (fs::recursive_directory_iterator each(folder, error), end; !error && each != end;
         each.increment(error))
        if (each->path().extension() == ".kwe" || each->path().extension() == ".kws")
            found.push_back(each->path().string());
    std::sort(found.begin(), found.end());
    return found;
}

// A fresh instance's state, so that two measurements are of the same thing. What may lawfully grow
// goes: the drawn and measured texts with the window, what can be undone with a host's state.
void reset(SoakRig& rig, std::vector<char>& state)
{
    rig.closeEditor();
    rig.engine->midiMap.clearMap();
    rig.host.dispatch(effSetChunk, 0, static_cast<VstIntPtr>(state.size()), state.data());
    rig.host.dispatch(effEditIdle);
    rig.setRate(44100);
    rig.setBlock(512);
    rig.host.setTempo(120);
}

void report(const SoakFigures& figures, double wall, const Memory& first, const Memory& last)
{
    std::printf("%.2f hours of transport in %.0f s, %lld blocks, %lld notes, %lld messages\n",
        figures.seconds / 3600, wall, static_cast<long long>(figures.blocks),
        static_cast<long long>(figures.notes), static_cast<long long>(figures.messages));
    std::printf("position: at most %.6f ticks off in %lld blocks; step: right in %lld blocks\n",
        figures.widestDrift, static_cast<long long>(figures.positionChecks),
        static_cast<long long>(figures.stepChecks));
    std::printf("longest note %.1f s, loudest sample %.3f\n", figures.longestNote,
        static_cast<double>(figures.loudest));
    std::printf("memory: %.0f KB in use after the first quarter, %.0f KB at the end; resident %.0f "
                "and %.0f KB\n",
        first.inUse, last.inUse, first.resident, last.resident);
}
} // namespace

int main(int argc, char** argv)
{
    doWithoutThreadCaches(argv);
    CommandLine line("Plays for hours and checks every block", "ormund-soak");
    double hours = 0.1;
    double minutes = 0;
    int seed = 1;
    std::string presetFolder;
    line.number("--hours", hours, "of transport, simulated", "N", {0, 1e6});
    line.number("--minutes", minutes, "on the clock instead", "N", {0, 1e6});
    line.number("--seed", seed, "a run with the same seed and hours is the same", "N", {0, 1e9});
    line.text("--presets", presetFolder, "folder of presets to load", "FOLDER");
    if (const auto end = line.parse(argc, argv))
        return *end;

    using Clock = std::chrono::steady_clock;
    const auto began = Clock::now();
    const auto wall = [&] { return std::chrono::duration<double>(Clock::now() - began).count(); };
    const auto share = [&](const SoakFigures& figures) {
        return minutes > 0 ? wall() / (minutes * 60) : figures.seconds / (hours * 3600);
    };

    SoakRig rig;
    if (!rig.engine)
        return 1;
    std::printf("seed %d\n", seed);
    void* data = nullptr;
    const auto bytes = rig.host.dispatch(effGetChunk, 0, 0, &data);
    std::vector<char> fresh(static_cast<char*>(data), static_cast<char*>(data) + bytes);
    RandomDisturber disturber(rig, static_cast<unsigned>(seed), presetsIn(presetFolder));

    Memory first;
    Memory last;
    double mostGiven = 0;
    bool holds = true;
    while (holds && share(rig.figures) < 1) {
        for (double second = 0; holds && second < kRound && share(rig.figures) < 1; ++second) {
            disturber.act();
            holds = rig.play(1);
        }
        holds = holds && rig.fallSilent();
        const double before = memoryNow().inUse;
        reset(rig, fresh);
        last = memoryNow();
        mostGiven = std::max(mostGiven, before - last.inUse);
        last.inUse -= static_cast<double>(disturber.keptBytes()) / 1024;
        if (first.inUse == 0 || share(rig.figures) < 0.25)
            first = last;
    }
    report(rig.figures, wall(), first, last);
    std::printf("what goes with the window and its undo: at most %.0f KB\n", mostGiven);
    if (holds && last.inUse > first.inUse + kMostGrowth) {
        std::printf("the memory grows\n");
        holds = false;
    }
    if (holds && mostGiven > kMostGiven) {
        std::printf("the window holds too much\n");
        holds = false;
    }
    if (!rig.problem().empty())
        std::printf("%s\n", rig.problem().c_str());
    std::printf("%s\n", holds ? "all of it held" : "failed");
    return holds ? 0 : 1;
}
