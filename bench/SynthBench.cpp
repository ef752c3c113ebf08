#include "bench/BenchSynth.h"
#include "bench/Floor.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace ormund {

namespace {

void reportFrames(benchmark::State& state, int64_t frames)
{
    state.SetItemsProcessed(frames);
    state.counters["frame"] = benchmark::Counter(
        static_cast<double>(frames), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// As the block function does it: a tick every 32 samples, runs cut at ticks and at block ends.
void playBlock(BenchSynth& bench, float* left, float* right, int samples, bool withDelay)
{
    int& counter = bench.info.controlCounter;
    while (samples > 0) {
        if (counter == kTickSamples) {
            bench.synth.controlTick(0);
            counter = 0;
        }
        const int run = std::min(samples, kTickSamples - counter);
        if (withDelay)
            bench.synth.render(left, right, run);
        else
            bench.synth.renderVoices(left, right, run);
        left += run;
        right += run;
        samples -= run;
        counter += run;
    }
}

void play(benchmark::State& state, const AudioLoops& loops, bool withDelay)
{
    const auto block = static_cast<int>(state.range(0));
    BenchSynth bench(loops);
    std::vector<float> left(static_cast<size_t>(block)), right(left);
    int64_t frames = 0;
    for (auto _ : state) {
        playBlock(bench, left.data(), right.data(), block, withDelay);
        benchmark::DoNotOptimize(left.data());
        benchmark::ClobberMemory();
        frames += block;
    }
    reportFrames(state, frames);
}

void VoicesAndDelay(benchmark::State& state) { play(state, fastestLoops(), true); }
BENCHMARK(VoicesAndDelay)->Arg(64)->Arg(512);

void VoicesAndDelayBaseline(benchmark::State& state) { play(state, kBaselineLoops, true); }
BENCHMARK(VoicesAndDelayBaseline)->Arg(64)->Arg(512);

void Voices(benchmark::State& state) { play(state, fastestLoops(), false); }
BENCHMARK(Voices)->Arg(64)->Arg(512);

void SilentVoices(benchmark::State& state)
{
    BenchSynth bench;
    bench.synth.setParameter(Tag::SynthRelease, 0.0f);
    for (unsigned note = 0; note < 128; ++note)
        bench.synth.voices().noteEvent(note, 0);
    std::vector<float> left(64), right(64);
    for (int i = 0; i < 5000; ++i)
        playBlock(bench, left.data(), right.data(), 64, false);
    int64_t frames = 0;
    for (auto _ : state) {
        playBlock(bench, left.data(), right.data(), 64, false);
        benchmark::ClobberMemory();
        frames += 64;
    }
    reportFrames(state, frames);
}
BENCHMARK(SilentVoices);

void ControlTick(benchmark::State& state)
{
    BenchSynth bench;
    int64_t frames = 0;
    for (auto _ : state) {
        bench.synth.controlTick(0);
        benchmark::ClobberMemory();
        frames += kTickSamples;
    }
    reportFrames(state, frames);
}
BENCHMARK(ControlTick);

void Delay(benchmark::State& state)
{
    BenchSynth bench;
    std::vector<float> left(32, 0.1f), right(32, -0.1f);
    int64_t frames = 0;
    for (auto _ : state) {
        bench.synth.delay().updateBlock();
        bench.synth.delay().process(left.data(), right.data(), 32);
        benchmark::ClobberMemory();
        frames += 32;
    }
    reportFrames(state, frames);
}
BENCHMARK(Delay);

void Floor(benchmark::State& state, FloorLoop* loop)
{
    const auto block = static_cast<int>(state.range(0));
    if (!loop) {
        state.SkipWithError("needs AVX2");
        return;
    }
    FloorState floor;
    std::vector<float> left(static_cast<size_t>(block)), right(left);
    int64_t frames = 0;
    for (auto _ : state) {
        loop(floor, left.data(), right.data(), block);
        benchmark::ClobberMemory();
        frames += block;
    }
    reportFrames(state, frames);
}
BENCHMARK_CAPTURE(Floor, Scalar, floorScalar)->Arg(512);
BENCHMARK_CAPTURE(Floor, Vector, floorVector())->Arg(64)->Arg(512);
BENCHMARK_CAPTURE(Floor, FilterAlone, filterVector())->Arg(512);

} // namespace

} // namespace ormund
