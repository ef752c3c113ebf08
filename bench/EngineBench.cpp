// The tick and what changes a value, in nanoseconds per sample frame or per call.

#include "data/parameters/Tags.h"
#include "tests/support/Player.h"

#include <benchmark/benchmark.h>

namespace ormund {

namespace {
// A block of the whole plug-in, all tracks busy.
void processBlock(benchmark::State& state, bool synth)
{
    const int block = static_cast<int>(state.range(0));
    Player player({.block = block, .empty = false});
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::SynthOn, synth ? 1.0f : 0.0f);
    engine.setParameter(Tag::SongOn, 1);
    for (int k = 0; k < 8; ++k)
        engine.setParameter(Tag::ModTrackOn + k, 1);
    player.start();
    player.play(44100);
    for (auto _ : state) {
        player.forget();
        player.play(block);
    }
    state.counters["ns/frame"] = benchmark::Counter(static_cast<double>(state.iterations()) * block,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
void BM_SequencerAlone(benchmark::State& state) { processBlock(state, false); }
void BM_SequencerAndSynth(benchmark::State& state) { processBlock(state, true); }
BENCHMARK(BM_SequencerAlone)->Arg(64)->Arg(512);
BENCHMARK(BM_SequencerAndSynth)->Arg(64)->Arg(512);

void BM_SetPlainParameter(benchmark::State& state)
{
    Player player;
    float value = 0;
    for (auto _ : state) {
        value = value < 0.9f ? value + 0.01f : 0.0f;
        player.engine().setParameter(Tag::FilterCutoff, value);
    }
}
BENCHMARK(BM_SetPlainParameter);

void BM_SetTableStep(benchmark::State& state)
{
    Player player;
    float value = 0;
    for (auto _ : state) {
        value = value < 0.9f ? value + 0.01f : 0.0f;
        player.engine().setParameter(Tag::GateTime, value);
    }
}
BENCHMARK(BM_SetTableStep);

void BM_Construct(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(std::make_unique<KWUniClient>(nullptr));
}
BENCHMARK(BM_Construct)->Unit(benchmark::kMicrosecond);
} // namespace

} // namespace ormund
