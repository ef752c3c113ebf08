#include "tests/synth/SynthPlayer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace ormund {

namespace {

// A tune that moves every parameter, with chords, stolen voices and releases.
Stereo tune(float rate, const AudioLoops& loops, const SynthPlayer::Split& split)
{
    SynthPlayer player(rate, loops);
    Dice dice(11);
    for (int tag = KWSynth::kFirstTag; tag <= KWSynth::kLastTag; ++tag)
        player.set(tag, 0.3f + 0.4f * dice.unit());
    Stereo all;
    for (int step = 0; step < 150; ++step) {
        const unsigned velocity = dice.note(1, 127);
        player.noteOn(dice.note(30, 60), velocity);
        if (step % 3 == 0)
            player.noteOff(dice.note(30, 60));
        if (step % 20 == 19) {
            for (unsigned note = 30; note < 90; ++note)
                player.noteOff(note);
        }
        const float value = dice.unit();
        player.set(KWSynth::kFirstTag + dice.below(19), value);
        const float bend = dice.unit();
        const Stereo part = player.play(5 + dice.below(30), bend, split);
        all.left.insert(all.left.end(), part.left.begin(), part.left.end());
        all.right.insert(all.right.end(), part.right.begin(), part.right.end());
    }
    return all;
}

TEST(Synth, EverySplitAndEveryInstructionSetGiveTheSameSamples)
{
    Dice dice(5);
    const SynthPlayer::Split one = [](int) { return 1; };
    const SynthPlayer::Split seven = [](int left) { return std::min(left, 7); };
    const SynthPlayer::Split any = [&](int left) { return 1 + dice.below(left); };
    for (const float rate : {22050.0f, 44100.0f, 192000.0f}) {
        const Stereo whole = tune(rate, fastestLoops(), SynthPlayer::wholeBlocks);
        ASSERT_GT(rms(whole.left), 0.01);
        for (const AudioLoops* loops : {&fastestLoops(), &kBaselineLoops}) {
            EXPECT_EQ(tune(rate, *loops, one), whole) << rate;
            EXPECT_EQ(tune(rate, *loops, seven), whole) << rate;
            EXPECT_EQ(tune(rate, *loops, any), whole) << rate;
        }
    }
}

// FNV-1a over the bytes of both sides.
uint64_t hashOf(const Stereo& sound)
{
    uint64_t hash = 14695981039346656037u;
    for (const auto* side : {&sound.left, &sound.right}) {
        for (const float sample : *side) {
            uint32_t word = 0;
            std::memcpy(&word, &sample, sizeof word);
            hash = (hash ^ word) * 1099511628211u;
        }
    }
    return hash;
}

// The sound is part of every saved piece. A number here changes only when the sound is meant to.
TEST(Synth, TheSoundIsTheRecordedOne)
{
    EXPECT_EQ(hashOf(tune(22050, fastestLoops(), SynthPlayer::wholeBlocks)), 3080267610187348959u);
    EXPECT_EQ(hashOf(tune(44100, fastestLoops(), SynthPlayer::wholeBlocks)), 7016864330477705203u);
    EXPECT_EQ(hashOf(tune(48000, fastestLoops(), SynthPlayer::wholeBlocks)), 9532529721918347612u);
    EXPECT_EQ(hashOf(tune(96000, fastestLoops(), SynthPlayer::wholeBlocks)), 8416863006360718271u);
}

TEST(Synth, LevelFollowsVelocityAndSynthLevelAndThePanLaw)
{
    const auto levelOf = [](float level, unsigned velocity) {
        SynthPlayer player;
        player.set(17, level);
        player.noteOn(69, velocity);
        player.skip(100);
        return rms(player.play(200).left);
    };
    const double full = levelOf(0.1f, 64);
    EXPECT_NEAR(levelOf(0.1f, 32) / full, 0.5, 0.02);
    EXPECT_NEAR(levelOf(0.05f, 64) / full, 0.5, 0.02);

    SynthPlayer player;
    player.noteOn(69);
    player.skip(100);
    for (const float pan : {0.0f, 0.25f, 0.5f, 1.0f}) {
        player.set(18, pan);
        const Stereo sound = player.play(200);
        const double left = rms(sound.left), right = rms(sound.right);
        const double share = right * right / (left * left + right * right);
        EXPECT_NEAR(share, static_cast<double>(pan), 0.002) << pan;
    }
}

TEST(Synth, AttackAndReleaseTakeTheirMilliseconds)
{
    SynthPlayer player;
    player.set(21, 0.5f); // 125 ms
    player.set(24, 0.4f); // 64 ms
    player.noteOn(69, 128);
    const int voice = 1;
    const auto ticks = [&](float ms) {
        return static_cast<int>(ms / player.millisecondsPerTick());
    };
    player.skip(1 + ticks(62.5f));
    EXPECT_NEAR(player.synth.levels()[voice], 0.05, 0.001);
    player.skip(ticks(62.5f) + 2);
    EXPECT_FLOAT_EQ(player.synth.levels()[voice], 0.1f);
    player.noteOff(69);
    player.skip(1 + ticks(32));
    EXPECT_NEAR(player.synth.levels()[voice], 0.05, 0.001);
    player.skip(ticks(32) + 1);
    EXPECT_EQ(player.synth.levels()[voice], 0.0f);
    player.skip(300);
    EXPECT_LT(peak(player.play(10).left), 1e-6);
}

TEST(Synth, MovingTheLevelStartsSoundingNotesAnew)
{
    SynthPlayer player;
    player.set(22, 0.3f);
    player.set(23, 0.0f);
    player.noteOn(69);
    player.skip(200);
    EXPECT_EQ(player.synth.levels()[1], 0.0f);
    player.set(17, 0.2f);
    player.skip(1);
    EXPECT_FLOAT_EQ(player.synth.levels()[1], 0.2f * 100 / 128);
}

TEST(Synth, ANoteThatEndsWithinItsControlBlockIsNotHeard)
{
    SynthPlayer player;
    player.set(24, 0.9f);
    player.noteOn(69);
    player.noteOff(69);
    EXPECT_LT(peak(player.play(50).left), 1e-12);
    // The same velocity again in the same voice goes on with the new pitch, the envelope with it.
    player.set(22, 0.8f);
    player.set(23, 0.0f);
    player.noteOn(60);
    player.skip(20);
    const float fallen = player.synth.levels()[2];
    for (unsigned note = 61; note < 69; ++note)
        player.noteOn(note);
    player.skip(1);
    EXPECT_LT(player.synth.levels()[2], fallen);
    EXPECT_EQ(player.voices().notes()[2], 68.0f);
}

TEST(Synth, AVoiceThatHasEndedIsSilentUntilItsNextNoteAndThenSoundsTheSame)
{
    SynthPlayer player;
    player.noteOn(57);
    const Stereo first = player.play(60);
    player.noteOff(57);
    player.skip(3000);
    EXPECT_LT(peak(player.play(5).left), 1e-12);
    for (unsigned turn = 0; turn < 7; ++turn) {
        player.noteOn(20, 1);
        player.noteOff(20);
    }
    player.noteOn(57);
    const Stereo again = player.play(60);
    double apart = 0;
    for (size_t i = 0; i < first.left.size(); ++i)
        apart = std::max(apart, std::abs(static_cast<double>(first.left[i] - again.left[i])));
    // The filter's cutoff has arrived meanwhile, so only the first few milliseconds differ.
    EXPECT_LT(apart, peak(first.left));
    EXPECT_NEAR(rms(again.left) / rms(first.left), 1, 0.2);
}

TEST(Synth, EightLoudVoicesInPhaseBendButDoNotTurnOver)
{
    SynthPlayer player;
    player.set(17, 1.0f);
    player.set(18, 0.0f);
    for (int voice = 0; voice < kVoices; ++voice)
        player.noteOn(33, 127);
    player.skip(50);
    const auto sound = player.play(1000).left;
    EXPECT_LE(peak(sound), 1.0);
    // Sums above 4 rest at 0 instead of changing sign, so the tops of the wave are cut.
    EXPECT_GT(std::count(sound.begin(), sound.end(), 0.0f), 20);
}

TEST(Synth, OutputIsFiniteAndBoundedWhateverIsSet)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float odd[] = {-1, 0, 1, 2, 1e30f, kInfinity, -kInfinity, std::nanf("")};
    Dice dice(17);
    for (const float rate : {11050.0f, 44100.0f, 196000.0f}) {
        SynthPlayer player(rate);
        for (int step = 0; step < 2000; ++step) {
            const float value = dice.below(8) ? dice.unit() : odd[dice.below(std::size(odd))];
            player.set(KWSynth::kFirstTag + dice.below(19), value);
            player.noteOn(dice.below(3) ? dice.note(0, 128) : 127, dice.note(0, 300));
            const float bend = dice.below(5) ? 0.0f : 200 * dice.unit() - 100;
            const Stereo sound = player.play(1 + dice.below(10), bend);
            for (const auto* side : {&sound.left, &sound.right}) {
                for (const float sample : *side)
                    ASSERT_TRUE(std::abs(sample) <= 1.001f) << rate << " step " << step;
            }
        }
    }
}

} // namespace

} // namespace ormund
