// Whatever is done to a running instance, every note ends.

#include "data/parameters/Tags.h"
#include "data/tracks/FactoryContent.h"
#include "tests/support/Checked.h"
#include "tests/support/SequencerPlayer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace ormund {

namespace {
// Someone who tries everything, for reproducible hours.
class Disturber {
public:
    Disturber(SequencerPlayer& victim, unsigned seed) : player(victim), random(seed) { }

    void act()
    {
        Sequencer& engine = player.engine();
        switch (roll(12)) {
        case 0:
            engine.setParameter(roll(46), unit());
            break;
        case 1:
            pressButton(roll(kTagCount));
            // Drums, channels, speeds, launch and keys that play through stay as they were set.
            engine.setParameter(Tag::MelodyChannel + roll(kTagCount - Tag::MelodyChannel), unit());
            break;
        case 2:
            player.start(unit() * 200);
            break;
        case 3:
            player.stop();
            break;
        case 4:
            player.setTempo(20 + 560 * static_cast<double>(unit()));
            break;
        case 5:
            engine.tracks.writeStep(trackTag(), roll(32), unit());
            break;
        case 6:
            key(0x90);
            break;
        case 7:
            key(0x80);
            break;
        case 8:
            engine.setParameter(Tag::LockArea, unit());
            break;
        case 9:
            engine.setLockButton(roll(2) == 0);
            break;
        case 10:
            engine.countReload();
            break;
        default:
            player.setBlock(1 + roll(4096));
            break;
        }
        if (roll(4) == 0) {
            player.start(player.position());
            engine.setParameter(Tag::TriggerMode, 1.0f);
        }
        engine.setParameter(Tag::SynthOn, 0.0f);
    }

private:
    int roll(int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); }
    float unit() { return static_cast<float>(roll(1001)) / 1000.0f; }
    int trackTag()
    {
        return kTrackTable[static_cast<size_t>(roll(static_cast<int>(kTrackTable.size())))].tag;
    }
    void pressButton(int tag)
    {
        // Files and presets are another matter; clearing all would leave nothing to hang.
        if (tag >= Tag::PreviousPreset && tag <= Tag::NextSynthPreset)
            return;
        if (tag == Tag::RandomPreset)
            return;
        player.engine().setParameter(tag, roll(3) == 0 ? unit() : 1.0f);
        player.engine().setParameter(tag, 0.0f);
    }
    void key(int status) { player.send(status, 30 + roll(80), 1 + roll(127), roll(64)); }

    SequencerPlayer& player;
    std::mt19937 random;
};

// Every start is alone and every end has its start.
void expectSoundNotes(const std::vector<MidiOut>& events)
{
    bool sounding[16 * 128] = {};
    for (const MidiOut& event : events) {
        const int key = (event.status & 15) * 128 + event.data1;
        if (event.isNoteOn()) {
            ASSERT_FALSE(sounding[key]) << "twice " << event.data1 << " at " << event.frame;
            sounding[key] = true;
        } else if (event.isNoteOff()) {
            ASSERT_TRUE(sounding[key]) << "no start at " << event.frame;
            sounding[key] = false;
        }
    }
    EXPECT_TRUE(std::none_of(std::begin(sounding), std::end(sounding), [](bool on) { return on; }));
}
} // namespace

TEST(Hang, AnHourOfAbuseLeavesNoNoteSounding)
{
    size_t notes = 0;
    for (unsigned seed = 0; seed < unsigned{rounds(12)}; ++seed) {
        SequencerPlayer player({.empty = false});
        Disturber disturber(player, seed);
        player.start();
        for (int second = 0; second < 300; ++second) {
            for (int i = 0; i < 3; ++i)
                disturber.act();
            if (second % 40 == 0) // edits wear the content down
                writeFactoryContent(player.engine().tracks, player.engine().patternStore);
            player.play(44100);
        }
        player.stop();
        player.send(0xB0, 123, 0);
        player.setBlock(4096);
        player.play(44100 * 200); // the longest note there is lasts 171 seconds
        notes += player.noteOns().size();
        expectSoundNotes(player.events());
        EXPECT_EQ(player.soundingNotes(), 0) << "seed " << seed;
    }
    EXPECT_GT(notes, unsigned{rounds(5000)});
}

} // namespace ormund
