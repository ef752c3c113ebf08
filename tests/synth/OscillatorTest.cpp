#include "tests/synth/SynthPlayer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace ormund {

namespace {

constexpr float kSaw = 0.0f, kSquare = 0.5f, kThinPulse = 1.0f;

double cents(double hertz, double against) { return 1200.0 * std::log2(hertz / against); }

double hertzOf(double pitch) { return 440.0 * std::exp2((pitch - 69.0) / 12.0); }

TEST(Oscillators, EveryWavePlaysInTuneAtEveryRate)
{
    for (const float rate : {22050.0f, 44100.0f, 48000.0f, 96000.0f, 192000.0f}) {
        for (const float wave : {kSaw, kSquare, kThinPulse, 0.25f}) {
            for (const unsigned note : {24u, 45u, 69u, 93u}) {
                SynthPlayer player(rate);
                player.set(19, wave);
                player.noteOn(note);
                player.skip(static_cast<int>(rate / 320));
                const auto sound = player.play(static_cast<int>(rate / 32)).left;
                const double expected = hertzOf(note);
                const double measured = frequencyNear(sound, expected, static_cast<double>(rate));
                EXPECT_NEAR(cents(measured, expected), 0, 0.3)
                    << "note " << note << " wave " << wave << " rate " << rate;
            }
        }
    }
}

TEST(Oscillators, WavesHaveTheirSpectrum)
{
    // Amplitudes of the second to fifth harmonic against the first.
    const auto pulse = [](int k, double width) {
        return std::abs(
            std::sin(std::numbers::pi * k * width) / (k * std::sin(std::numbers::pi * width)));
    };
    for (const auto& [wave, width] :
        {std::pair{kSaw, 0.0}, {kSquare, 0.5}, {0.75f, 0.7}, {kThinPulse, 0.9}}) {
        SynthPlayer player;
        player.set(19, wave);
        player.noteOn(57); // 220 Hz
        player.skip(100);
        const auto sound = player.play(2756).left;
        const double first = amplitudeAt(sound, 220, 44100);
        ASSERT_GT(first, 0.005) << wave;
        for (int k = 2; k <= 5; ++k) {
            const double expected = width == 0 ? 1.0 / k : pulse(k, width);
            EXPECT_NEAR(amplitudeAt(sound, 220.0 * k, 44100) / first, expected, 0.02)
                << "wave " << wave << " harmonic " << k;
        }
    }
}

TEST(Oscillators, HighNotesDoNotAlias)
{
    // C8, 4186 Hz: partials at multiples of it and nothing between them.
    for (const float wave : {kSaw, kSquare}) {
        SynthPlayer player;
        player.set(19, wave);
        player.noteOn(108);
        player.skip(100);
        const auto sound = player.play(1378).left;
        const double tone = amplitudeAt(sound, 4186, 44100);
        for (const double between : {900.0, 1900.0, 3000.0, 6000.0, 7000.0})
            EXPECT_LT(amplitudeAt(sound, between, 44100), tone * 0.02) << wave << ' ' << between;
    }
}

TEST(Oscillators, DetuneAndBendMoveThePitchLinearlyInHertzBetweenNotes)
{
    SynthPlayer player;
    player.set(20, 1.0f); // half a semitone
    player.noteOn(57);    // 220 Hz and the middle between that and 233.08
    player.skip(100);
    const auto detuned = player.play(2756).left;
    EXPECT_NEAR(frequencyNear(detuned, 220, 44100), 220, 0.2);
    EXPECT_NEAR(frequencyNear(detuned, 226.54, 44100), 226.54, 0.2);

    player.set(20, 0.0f);
    const auto bent = player.play(2756, -2.0f).left;
    EXPECT_NEAR(frequencyNear(bent, hertzOf(55), 44100), hertzOf(55), 0.1);
}

TEST(Oscillators, TheHighestPitchIsHeldUnderABendWhileTheDetunedVoiceGoesHigher)
{
    SynthPlayer player(96000);
    player.set(19, kSquare);
    player.set(20, 1.0f);
    player.noteOn(127);
    player.skip(100);
    const auto sound = player.play(3000, 24.0f).left;
    const double held = amplitudeAt(sound, 12543.3, 96000);
    EXPECT_GT(held, 0.003);
    EXPECT_NEAR(amplitudeAt(sound, 12916.3, 96000), held, 0.2 * held);
    EXPECT_LT(amplitudeAt(sound, 13289, 96000), 0.1 * held);
}

TEST(Oscillators, AHeldNoteKeepsItsPitchWhenTheRateChanges)
{
    SynthPlayer player;
    player.set(19, kSaw);
    player.noteOn(69);
    player.skip(200);
    player.info.setSampleRate(96000);
    player.synth.sampleRateChanged();
    player.skip(200);
    const auto sound = player.play(3000).left;
    EXPECT_NEAR(cents(frequencyNear(sound, 440, 96000), 440), 0, 0.3);
    // Neither bank stays behind at 440 * 96000 / 44100.
    EXPECT_LT(amplitudeAt(sound, 957.8, 96000), 0.01 * amplitudeAt(sound, 440, 96000));
}

TEST(Oscillators, NotesAboveTheSampleRateKeepTheirPhaseInRange)
{
    KWBlitSawOsc saw;
    saw.setFrequency(0, 12543, 11050);
    EXPECT_LT(saw.state.phaseStep[0], 3.1416f);
    KWPulseOsc pulse;
    pulse.setFrequency(0, 12543, 1.0f / 11050);
    EXPECT_LE(pulse.state.increment[0], 2.0f);
}

TEST(Oscillators, AWidthThatRisesIsRampedAndOneThatFallsJumps)
{
    KWPulseOsc pulse;
    pulse.moveWidth(2, 0.8f);
    EXPECT_FLOAT_EQ(pulse.state.widthStep[2], 0.025f);
    EXPECT_EQ(pulse.state.width[2], 0.0f);
    pulse.moveWidth(2, -0.4f);
    EXPECT_EQ(pulse.state.widthStep[2], 0.0f);
    EXPECT_EQ(pulse.state.width[2], -0.4f);
}

} // namespace

} // namespace ormund
