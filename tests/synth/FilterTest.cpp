#include "tests/synth/SynthPlayer.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace ormund {

namespace {

constexpr double kRate = 44100;

double hertzOfCutoff(float value) { return static_cast<double>(value * value) * 16000 + 45; }

// The gain at `hertz` by the transfer function of the chain: each stage as a fraction in z, the
// feedback path closed around the three poles.
double expectedGain(double cutoff, double resonance, double hertz)
{
    const double a = cutoff * 2 * std::numbers::pi / kRate;
    const double c = std::min(a, 1.0), f = std::min(a, 1.9), b = 2 - f;
    const double r = resonance * 0.98, d = 2 * (1 - r);
    const double q = (f + 2) * b * d / (2 * (f * d + b));
    const std::complex<double> late = std::polar(1.0, -2 * std::numbers::pi * hertz / kRate);
    const auto pole = [&](double k) { return k / (1.0 - (1 - k) * late); };
    const auto two = pole(c) * pole(c);
    const auto loop = two * (2.0 * pole(c / 2) - 1.0);
    const auto ladder = loop / (1.0 + loop * late);
    // band (1 - z') = f (in - q z' band - z' low), low (1 - z') = f band
    const auto band = f / (1.0 - late + f * q * late + f * f * late / (1.0 - late));
    const auto low = band * f / (1.0 - late);
    return std::abs(ladder * low * (1.0 + late)) * 0.5 / (1 + 2 * r * r * r);
}

std::vector<float> sawThrough(float cutoff, float resonance)
{
    SynthPlayer player;
    player.set(25, cutoff);
    player.set(27, cutoff);
    player.set(26, resonance);
    player.noteOn(45, 10); // 110 Hz, soft: the clip must not add anything
    player.skip(400);
    return player.play(2756).left;
}

TEST(Filter, TheMeasuredResponseIsThatOfItsTransferFunction)
{
    constexpr float kReference = 0.9f;
    const auto reference = sawThrough(kReference, 0);
    for (const auto& [cutoff, resonance] :
        {std::pair{0.2f, 0.0f}, {0.2f, 0.6f}, {0.35f, 0.9f}, {0.5f, 0.5f}, {0.5f, 1.0f}}) {
        const auto sound = sawThrough(cutoff, resonance);
        for (const int k : {1, 3, 6, 10, 20, 40}) {
            const double hertz = 110.0 * k;
            const double measured =
                amplitudeAt(sound, hertz, kRate) / amplitudeAt(reference, hertz, kRate);
            const double expected =
                expectedGain(hertzOfCutoff(cutoff), static_cast<double>(resonance), hertz)
                / expectedGain(hertzOfCutoff(kReference), 0, hertz);
            EXPECT_NEAR(20 * std::log10(measured / expected), 0, 0.3)
                << "cutoff " << cutoff << " resonance " << resonance << " at " << hertz;
        }
    }
}

TEST(Filter, ResonanceRaisesTheCutoffAgainstTheBass)
{
    const auto shape = [](float resonance) {
        const auto sound = sawThrough(0.25f, resonance); // 1045 Hz
        return amplitudeAt(sound, 990, kRate) / amplitudeAt(sound, 110, kRate);
    };
    EXPECT_GT(shape(0.7f), 2 * shape(0.0f));
    EXPECT_GT(shape(0.95f), 2 * shape(0.7f));
}

TEST(Filter, EveryMoveOfTheCutoffIsALineOfEightMilliseconds)
{
    SynthPlayer player;
    player.set(25, 0.0f);
    player.skip(20);
    EXPECT_EQ(player.synth.cutoffs()[3], 45.0f);
    player.set(25, 1.0f);
    std::vector<float> line;
    for (int tick = 0; tick < 13; ++tick) {
        player.skip(1);
        line.push_back(player.synth.cutoffs()[3]);
    }
    // 11.025 ticks: eleven equal steps, and the rest of the way at the twelfth.
    for (size_t tick = 0; tick < 11; ++tick)
        EXPECT_NEAR(line[tick], 45 + 16000 / 11.025 * static_cast<double>(tick + 1), 0.1);
    EXPECT_EQ(line[11], 16045.0f);
    EXPECT_EQ(line[12], 16045.0f);
}

TEST(Filter, TheEnvelopeMovesTheCutoffFromItsOwnKnobToThePeak)
{
    SynthPlayer player;
    player.set(25, 0.0f);
    player.set(27, 0.5f); // 4045 Hz
    player.set(29, 0.5f); // decay 125 ms
    player.set(30, 0.25f);
    player.noteOn(60);
    player.skip(static_cast<int>(62.5f / player.millisecondsPerTick()));
    const int voice = 1;
    // Half the decay: E is 0.625, and the line of 8 ms lags by as much as that.
    EXPECT_NEAR(player.synth.cutoffs()[voice], 45 + 4000 * 0.625, 4000 * 0.75 * 10 / 125);
    player.skip(100);
    EXPECT_NEAR(player.synth.cutoffs()[voice], 45 + 1000, 1);
    EXPECT_EQ(player.synth.cutoffs()[voice + 1], 45.0f);
}

TEST(Filter, IsStableForEveryCutoffAndResonanceWhileBothMove)
{
    Dice dice(3);
    SynthPlayer player;
    player.set(17, 1.0f);
    for (unsigned note = 0; note < 8; ++note)
        player.noteOn(30 + note * 12, 127);
    for (int i = 0; i < 3000; ++i) {
        for (const int tag : {19, 25, 26, 27})
            player.set(tag, dice.below(4) ? dice.unit() : static_cast<float>(dice.below(2)));
        player.play(1 + dice.below(20));
        for (int voice = 0; voice < kVoices; ++voice)
            ASSERT_TRUE(std::isfinite(player.synth.cutoffs()[voice]));
    }
    // Nothing was left behind: the tone is the one of a synth that never moved.
    for (const int tag : {19, 26})
        player.set(tag, 0.0f);
    player.set(17, 0.1f);
    for (unsigned note = 0; note < 8; ++note)
        player.noteOff(30 + note * 12);
    player.skip(2000);
    EXPECT_LT(peak(player.play(100).left), 1e-6);
}

} // namespace

} // namespace ormund
