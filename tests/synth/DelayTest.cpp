#include "tests/synth/SynthPlayer.h"

#include <gmock/gmock.h>

#include <cmath>

namespace ormund {

namespace {

// The delay alone, with a control block every 32 samples.
class DelayPlayer {
public:
    explicit DelayPlayer(double tempo = 120, const AudioLoops& loops = fastestLoops())
        : delay((info.setTempo(tempo), info), loops)
    {
        delay.rebuild();
    }

    Stereo play(Stereo signal, int run = kTickSamples)
    {
        for (size_t at = 0; at < signal.left.size();) {
            if (sample % kTickSamples == 0)
                delay.updateBlock();
            const int untilTick = kTickSamples - sample % kTickSamples;
            const int count = std::min({run, untilTick, static_cast<int>(signal.left.size() - at)});
            delay.process(&signal.left[at], &signal.right[at], count);
            at += static_cast<size_t>(count);
            sample += count;
        }
        return signal;
    }
    Stereo playSilence(int samples)
    {
        const std::vector<float> silence(static_cast<size_t>(samples));
        return play({silence, silence});
    }
    void setTempo(double tempo)
    {
        info.setTempo(tempo);
        info.notifyTempoListeners();
    }

    KWSystemInfo info;
    KWDelay16 delay;

private:
    int sample = 0;
};

Stereo noise(int samples, float amplitude)
{
    Dice dice(1);
    Stereo out;
    for (int i = 0; i < samples; ++i) {
        out.left.push_back(amplitude * (2 * dice.unit() - 1));
        out.right.push_back(amplitude * (2 * dice.unit() - 1));
    }
    return out;
}

std::vector<int> placesAbove(const std::vector<float>& signal, float level)
{
    std::vector<int> places;
    for (size_t i = 0; i < signal.size(); ++i) {
        if (signal[i] > level)
            places.push_back(static_cast<int>(i));
    }
    return places;
}

TEST(Delay, AnImpulseReturnsAfterWholeSixteenthsOfTheTempo)
{
    struct Case {
        double tempo;
        int sixteenths;
    };
    for (const Case& c : {Case{120, 1}, {120, 16}, {125, 8}, {60, 9}, {240, 3}}) {
        DelayPlayer player(c.tempo);
        player.delay.setParameter(KWDelay16::LeftTime, static_cast<float>(c.sixteenths));
        player.delay.setParameter(KWDelay16::RightTime, 1.0f);
        player.delay.setMix(1.0f);
        player.playSilence(kTickSamples);
        const double sixteenth = 44100 * 60 / c.tempo / 4;
        EXPECT_NEAR(player.delay.leftDelay(), c.sixteenths * sixteenth, 0.01);
        EXPECT_NEAR(player.delay.rightDelay(), sixteenth, 0.01);

        Stereo impulse = noise(static_cast<int>(c.sixteenths * sixteenth) + 100, 0);
        impulse.left[0] = 0.4f;
        const auto out = player.play(impulse).left;
        // A whole delay comes a sample early, and a part of one is shared by two samples.
        const double heard = c.sixteenths * sixteenth;
        const auto places = placesAbove(out, 0.05f);
        ASSERT_FALSE(places.empty()) << c.tempo;
        EXPECT_NEAR(places.front(), heard - 1, 1.01) << c.tempo;
        EXPECT_LE(places.size(), 2u);
    }
}

TEST(Delay, ASineComesBackWholeThroughEveryWrapOfTheLine)
{
    // Times with a part of a sample from 0 to 0.75. The place that is read then lies the rest of a
    // sample behind a whole one, and by the turned weights the delay is a sample less twice that
    // rest shorter.
    for (const auto& [tempo, part] :
        {std::pair{120.0, 0.5}, {100.0, 0.0}, {441.0, 0.0}, {240.0, 0.25}, {80.0, 0.75}}) {
        DelayPlayer player(tempo);
        player.delay.setMix(1.0f);
        player.playSilence(kTickSamples);
        const double delay = player.delay.leftDelay();
        ASSERT_NEAR(delay - std::floor(delay), part, 1e-6) << tempo;
        const double rest = part > 0 ? 1 - part : 0;
        const auto sine = [](double place) { return 0.01 * std::sin(place * 0.01); };
        Stereo in = noise(player.delay.bufferLength() * 3, 0);
        for (size_t i = 0; i < in.left.size(); ++i)
            in.left[i] = static_cast<float>(sine(static_cast<double>(i)));
        const auto out = player.play(in).left;
        for (size_t i = static_cast<size_t>(delay) + 1; i < out.size(); ++i) {
            const double whole = sine(static_cast<double>(i) - (delay - 1 + 2 * rest));
            // The clip of the line, and a chord for the curve.
            ASSERT_NEAR(out[i], whole * (1 - std::abs(whole) / 4), 2e-6) << tempo << " at " << i;
        }
    }
}

TEST(Delay, RepeatsFallByTheFeedbackAndTheSidesDoNotMix)
{
    DelayPlayer player;
    player.delay.setParameter(KWDelay16::Feedback, 0.5f);
    player.delay.setMix(1.0f);
    player.playSilence(kTickSamples);
    Stereo impulse = noise(5512 * 4, 0);
    impulse.left[0] = 0.01f;
    const Stereo out = player.play(impulse);
    EXPECT_LT(peak(out.right), 1e-9);
    // 5512.5 samples: each repeat is spread over one more sample, so compare the sums.
    const auto sumNear = [&](int place) {
        double sum = 0;
        for (int i = place - 5; i < place + 5; ++i)
            sum += static_cast<double>(out.left[static_cast<size_t>(i)]);
        return sum;
    };
    EXPECT_NEAR(sumNear(5512), 0.01, 0.0001);
    EXPECT_NEAR(sumNear(11025), 0.00495, 0.0001);
    EXPECT_NEAR(sumNear(16537), 0.00245, 0.0001);
}

TEST(Delay, MixZeroPassesTheSignalUnchangedWhileTheLinesFill)
{
    DelayPlayer player;
    const Stereo in = noise(6000, 1);
    EXPECT_EQ(player.play(in), in);
    player.delay.setMix(1.0f);
    EXPECT_GT(peak(player.playSilence(3000).left), 0.5);
}

TEST(Delay, StaysBoundedAtFullFeedbackUnderAnyInput)
{
    DelayPlayer loud;
    loud.delay.setParameter(KWDelay16::Feedback, 0.9f);
    loud.delay.setMix(1.0f);
    for (int i = 0; i < 20; ++i)
        EXPECT_LE(peak(loud.play(noise(5000, 1)).left), 1.001);
    // The lines themselves must not run away either, however hard they are driven.
    for (int i = 0; i < 20; ++i)
        EXPECT_LE(peak(loud.play(noise(5000, 1000)).left), 8.001);
    loud.playSilence(44100 * 60);
    EXPECT_LT(peak(loud.playSilence(5000).left), 0.1);
}

TEST(Delay, ATempoChangeGlidesToTheNewTimeWithinOneControlBlock)
{
    DelayPlayer player(120);
    player.delay.setParameter(KWDelay16::LeftTime, 16.0f);
    player.playSilence(kTickSamples * 2);
    player.setTempo(60);
    EXPECT_EQ(player.delay.bufferLength(), 4 * 44100 + 4);
    player.playSilence(kTickSamples / 2);
    EXPECT_NEAR(player.delay.leftDelay(), 1.5 * 88200, 1);
    player.playSilence(kTickSamples / 2);
    EXPECT_NEAR(player.delay.leftDelay(), 2 * 88200, 0.001);
    // Faster again: a time beyond the shorter line jumps.
    player.playSilence(kTickSamples);
    player.setTempo(120);
    EXPECT_EQ(player.delay.bufferLength(), 2 * 44100 + 4);
    EXPECT_EQ(player.delay.leftDelay(), 88200);
}

TEST(Delay, RunsOfAnyLengthAndEveryInstructionSetGiveTheSameSamples)
{
    const Stereo in = noise(60000, 1);
    const auto play = [&](int run, const AudioLoops& loops) {
        DelayPlayer player(490, loops);
        Stereo out;
        // Through moving times, moving mixes and several wraps of the lines.
        for (size_t part = 0; part < 6; ++part) {
            player.delay.setParameter(KWDelay16::LeftTime, part == 3 ? 16.0f : 4.0f);
            player.delay.setParameter(
                KWDelay16::RightTime, 16.0f - 2.0f * static_cast<float>(part));
            player.delay.setParameter(KWDelay16::Feedback, 0.8f);
            player.delay.setMix(0.1f * static_cast<float>(part));
            const auto from = static_cast<std::ptrdiff_t>(part * 10000);
            const Stereo piece =
                player.play({{in.left.begin() + from, in.left.begin() + from + 10000},
                                {in.right.begin() + from, in.right.begin() + from + 10000}},
                    run);
            out.left.insert(out.left.end(), piece.left.begin(), piece.left.end());
            out.right.insert(out.right.end(), piece.right.begin(), piece.right.end());
        }
        return out;
    };
    const Stereo whole = play(32, fastestLoops());
    EXPECT_GT(rms(whole.left), 0.1);
    for (const int run : {1, 7, 31}) {
        EXPECT_EQ(play(run, fastestLoops()), whole) << run;
        EXPECT_EQ(play(run, kBaselineLoops), whole) << run;
    }
}

TEST(Delay, ChangesOfRateAndTempoInMidGlideStayInsideTheLines)
{
    DelayPlayer player;
    player.delay.setParameter(KWDelay16::Feedback, 0.9f);
    player.delay.setMix(0.5f);
    Dice dice(7);
    for (int i = 0; i < 3000; ++i) {
        player.delay.setParameter(dice.below(2), static_cast<float>(1 + dice.below(16)));
        player.play(noise(1 + dice.below(90), 1), 1 + dice.below(32));
        if (dice.below(3) == 0)
            player.setTempo(30 + 480 * static_cast<double>(dice.unit()));
        if (dice.below(8) == 0) {
            player.info.setSampleRate(11050 + 184950 * dice.unit());
            player.delay.sampleRateChanged();
        }
        const Stereo out = player.play(noise(20, 1));
        ASSERT_LE(peak(out.left), 8.0);
        ASSERT_LE(peak(out.right), 8.0);
    }
}

} // namespace

} // namespace ormund
