// Ticks in which nothing has moved leave most stages out. That must never show.

#include "base/ParkMiller.h"
#include "data/parameters/Tags.h"
#include "data/tracks/EditButtons.h"
#include "tests/support/SequencerPlayer.h"

#include <gtest/gtest.h>

#include <iterator>

namespace ormund {

namespace {
constexpr int kBlocks = 60000;

class Dice {
public:
    int below(int count)
    {
        return static_cast<int>(random.nextMagnitude() * 0.9999f * static_cast<float>(count));
    }
    float unit() { return random.nextMagnitude(); }

private:
    ParkMiller random{20231};
};

constexpr int kTimeTags[] = {Tag::Swing, Tag::Swing, Tag::StepSpeed, Tag::KeySync, Tag::KeySync,
    Tag::Looper, Tag::Retrigger, Tag::Slowdown, Tag::HalfSpeed, Tag::TriggerMode, Tag::SongSpeed};

// Edit buttons draw from the numbers of the whole process, and presets would need files.
bool isRepeatable(int tag)
{
    return !editButton(tag) && tag != Tag::PreviousPreset && tag != Tag::NextPreset
        && tag != Tag::PreviousSynthPreset && tag != Tag::NextSynthPreset
        && tag != Tag::RandomPreset;
}

void disturb(SequencerPlayer& player, Dice& dice, bool withSynth)
{
    Sequencer& engine = player.engine();
    Tracks& tracks = engine.tracks;
    const int step = dice.below(kTrackSteps);
    const int row = dice.below(kTrackRows);
    const float value = dice.unit();
    const auto mod = static_cast<size_t>(dice.below(kModTracks));
    const int tag = dice.below(kTagCount);
    switch (dice.below(24)) {
    case 0:
        tracks.pitch.setValue(step, value * 24 - 12);
        break;
    case 1:
        tracks.velocity.setRowValue(row, step, value);
        break;
    case 2:
        tracks.gateTime.rotateForward(0, 0);
        break;
    case 3:
        tracks.mods[mod].setValue(step, value);
        break;
    case 4:
        tracks.chord.setStep(step, value * 20);
        break;
    case 5:
        tracks.performance.setStepAt(row, step, value < 0.5f ? 0.0f : value * 17);
        break;
    case 6:
        tracks.arpeggio.setStep(step, value < 0.7f ? 0.0f : value * 24);
        break;
    case 7:
        tracks.velocityOn.shiftBackward(0, 0);
        break;
    case 8:
        tracks.modLoops[mod].setZone(row, {step / 2, step});
        break;
    case 9:
        engine.setLockButton(value < 0.5f);
        break;
    case 10:
    case 17:
    case 18:
    case 19:
        player.send(value < 0.5f ? 0x80 : 0x90, 24 + dice.below(60), 90);
        break;
    case 11:
        player.setTempo(50 + 300 * static_cast<double>(value));
        break;
    case 12:
        if (value < 0.3f)
            engine.countReload();
        break;
    case 13: // what decides when the next step comes
        engine.setParameter(kTimeTags[dice.below(std::ssize(kTimeTags))], value);
        break;
    case 14:
        player.start(dice.below(3) == 0 ? -1.5 : 64 * static_cast<double>(value));
        break;
    case 15:
        engine.keyState.noteOnVelocity = 100;
        (value < 0.5f ? engine.keyState.noteOn : engine.keyState.noteOff).post(30 + dice.below(60));
        break;
    case 16:
        tracks.sequenceLoop.setZone(0, {step / 8, step / 4});
        break;
    case 20: // chance, condition, ratchet, late, strum
        tracks.lineAt(Tag::StepChance + dice.below(5))->setStep(step, value * 60);
        break;
    default:
        if (isRepeatable(tag))
            engine.setParameter(tag, value);
        // Whatever it was, the notes go on.
        engine.setParameter(Tag::Mute, 0);
        engine.setParameter(Tag::TriggerMode, value < 0.6f ? 1.0f : 0.5f);
        engine.setParameter(Tag::SynthOn, withSynth ? 1.0f : 0.0f);
        engine.setParameter(Tag::StepPlay, value < 0.2f ? 1.0f : 0.0f);
        break;
    }
}

struct Played {
    std::string trace;
    std::vector<float> sound;
};

Played play(bool everyTickInFull)
{
    SequencerPlayer player({.block = kTickSamples, .empty = false});
    player.engine().setParameter(Tag::ChanceSeed, 0.5f);
    Dice dice;
    for (int k = 0; k < kModTracks; ++k)
        player.engine().setParameter(Tag::ModTrackOn + k, 1);
    player.keepAudio(true);
    player.start();
    for (int i = 0; i < kBlocks; ++i) {
        if (dice.below(40) == 0)
            disturb(player, dice, true);
        if (everyTickInFull)
            player.engine().info.changes.count();
        player.play(kTickSamples);
    }
    return {player.trace(), player.left()};
}

std::string traceOfBlocks(bool withSynth)
{
    SequencerPlayer player({.empty = false});
    player.engine().setParameter(Tag::ChanceSeed, 0.5f);
    Dice dice;
    player.engine().setParameter(Tag::SynthOn, withSynth ? 1.0f : 0.0f);
    player.start();
    for (int i = 0; i < kBlocks / 2; ++i) {
        if (dice.below(10) == 0)
            disturb(player, dice, withSynth);
        player.setBlock(1 + dice.below(300));
        player.play(300);
    }
    return player.trace();
}
} // namespace

TEST(QuietTick, PlaysAndSoundsAsIfEveryStageHadRun)
{
    const Played full = play(true);
    const Played sparing = play(false);
    EXPECT_GT(full.trace.size(), 40000u);
    EXPECT_EQ(full.trace, sparing.trace);
    EXPECT_TRUE(full.sound == sparing.sound);
}

// Without the synth a whole block may rest at once; with it, tick by tick.
TEST(QuietTick, WholeBlocksPlayAsTheirTicks)
{
    const std::string inTicks = traceOfBlocks(true);
    EXPECT_GT(inTicks.size(), 40000u);
    EXPECT_EQ(inTicks, traceOfBlocks(false));
}

} // namespace ormund
