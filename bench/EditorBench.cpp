// The open window on a rolling transport: ten minutes of the host's idle calls at 30 Hz.

#include "data/parameters/Tags.h"
#include "editor/KWUniClientEditor.h"
#include "panel/ControlCatalogue.h"
#include "tests/support/Player.h"
#include "view/offscreen/OffscreenWindow.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <unistd.h>

namespace ormund {

namespace {
constexpr int kIdlesPerSecond = 30;
constexpr int kTenMinutes = 600 * kIdlesPerSecond;

double residentMegabytes()
{
    std::ifstream statm("/proc/self/statm");
    double total = 0;
    double resident = 0;
    statm >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

void BM_OpenWindow(benchmark::State& state)
{
    Player player({.block = 1470, .empty = false});
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::SynthOn, 0.0f);
    engine.setParameter(Tag::SongOn, 1.0f);
    KWUniClientEditor editor(engine);
    auto memory = std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight);
    OffscreenWindow& window = *memory;
    editor.openIn(std::move(memory));
    player.start();
    for (int i = 0; i < 4 * kIdlesPerSecond; ++i) {
        player.play(44100 / kIdlesPerSecond);
        editor.idle();
    }

    const double before = residentMegabytes();
    double area = 0;
    for (auto _ : state) {
        player.play(44100 / kIdlesPerSecond);
        player.forget();
        const int presents = window.presents;
        const auto start = std::chrono::steady_clock::now();
        editor.idle();
        const std::chrono::duration<double> cost = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(cost.count());
        if (window.presents != presents)
            for (const CRect& part : window.presented)
                area += static_cast<double>(part.width()) * part.height();
    }
    const auto idles = static_cast<double>(state.iterations());
    state.counters["pixels/s"] = area / idles * kIdlesPerSecond;
    state.counters["MB grown"] = residentMegabytes() - before;
    editor.close();
}
BENCHMARK(BM_OpenWindow)->UseManualTime()->Iterations(kTenMinutes)->Unit(benchmark::kMicrosecond);
} // namespace

} // namespace ormund
