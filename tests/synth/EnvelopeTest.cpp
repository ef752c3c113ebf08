#include "synth/Envelope.h"

#include <gmock/gmock.h>

#include <vector>

namespace ormund {

namespace {

using Stage = Envelope::Stage;
using Shape = Envelope::Shape;

// Times in ticks.
EnvelopeTimes times(float attack, float decay, float sustain, float release)
{
    constexpr float kTiny = 1e-18f;
    return {.attackMs = attack,
        .attack = attack + kTiny,
        .decay = decay + kTiny,
        .release = release + kTiny,
        .sustain = sustain,
        .ticksPerMs = 1};
}

class EnvelopeOf {
public:
    EnvelopeOf(Shape shape, const EnvelopeTimes& itsTimes) : envelope(shape), set(itsTimes) { }

    std::vector<float> play(float trigger, int ticks)
    {
        std::vector<float> values;
        Lanes triggers;
        triggers[kVoice] = trigger;
        for (int tick = 0; tick < ticks; ++tick) {
            envelope.tick(triggers, set);
            values.push_back(envelope.values()[kVoice]);
        }
        return values;
    }
    Stage stage() const { return envelope.stageOf(kVoice); }

private:
    static constexpr int kVoice = 5;
    Envelope envelope;
    EnvelopeTimes set;
};

TEST(Envelope, RisesFallsHoldsAndEndsInTheTimesThatAreSet)
{
    EnvelopeOf unit(Shape::Unit, times(4, 4, 0.5f, 2));
    EXPECT_THAT(unit.play(90, 11),
        testing::ElementsAre(0, 0.25f, 0.5f, 0.75f, 1, 0.875f, 0.75f, 0.625f, 0.5f, 0.5f, 0.5f));
    EXPECT_EQ(unit.stage(), Stage::Sustain);
    // The release takes as long from wherever it starts.
    EXPECT_THAT(unit.play(0, 4), testing::ElementsAre(0.5f, 0.25f, 0, 0));
    EXPECT_EQ(unit.stage(), Stage::Finished);

    EnvelopeOf level(Shape::Level, times(2, 2, 0.5f, 4));
    EXPECT_THAT(level.play(8, 6), testing::ElementsAre(0, 4, 8, 6, 4, 4));
    EXPECT_THAT(level.play(0, 5), testing::ElementsAre(4, 3, 2, 1, 0));
}

TEST(Envelope, ANoteThatEndsInItsAttackOrDecayReleasesFromThere)
{
    EnvelopeOf attacked(Shape::Unit, times(4, 4, 0.5f, 2));
    EXPECT_THAT(attacked.play(1, 3), testing::ElementsAre(0, 0.25f, 0.5f));
    EXPECT_THAT(attacked.play(0, 3), testing::ElementsAre(0.5f, 0.25f, 0));
    EnvelopeOf decayed(Shape::Level, times(0, 4, 0, 1));
    EXPECT_THAT(decayed.play(1, 2), testing::ElementsAre(1, 0.75f));
    EXPECT_THAT(decayed.play(0, 2), testing::ElementsAre(0.75f, 0));
}

TEST(Envelope, TimesOfZeroJump)
{
    EnvelopeOf unit(Shape::Unit, times(0, 0, 0.25f, 0));
    EXPECT_THAT(unit.play(64, 3), testing::ElementsAre(1, 0.25f, 0.25f));
    EXPECT_THAT(unit.play(0, 3), testing::ElementsAre(0.25f, 0, 0));
    EnvelopeOf level(Shape::Level, times(0, 0, 0.5f, 0));
    EXPECT_THAT(level.play(0.5f, 2), testing::ElementsAre(0.5f, 0.25f));
}

TEST(Envelope, AStolenVoiceStartsItsAttackPartWayAndItsFilterAnew)
{
    // Half way up at level 0.5 the value is 0.25, which is taken as a quarter of the attack.
    EnvelopeOf level(Shape::Level, times(8, 1, 1, 100));
    level.play(0.5f, 5);
    EXPECT_THAT(level.play(0.8f, 2), testing::ElementsAre(0.25f, testing::FloatEq(0.3f)));
    EnvelopeOf unit(Shape::Unit, times(8, 1, 1, 100));
    unit.play(50, 5);
    EXPECT_THAT(unit.play(80, 2), testing::ElementsAre(0.5f, 0.125f));
}

TEST(Envelope, TheSameTriggerAgainDoesNotStartItAnew)
{
    EnvelopeOf unit(Shape::Unit, times(2, 2, 0, 2));
    unit.play(70, 3);
    EXPECT_THAT(unit.play(70, 1), testing::ElementsAre(0.5f));
}

} // namespace

} // namespace ormund
