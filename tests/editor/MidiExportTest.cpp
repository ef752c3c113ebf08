#include "editor/MidiExport.h"
#include "data/music/MidiFile.h"
#include "tests/editor/EditorRig.h"

#include <gmock/gmock.h>

namespace ormund {

namespace {

MidiFile exported(KWUniClient& engine, int bars)
{
    MidiFile file;
    EXPECT_EQ(file.read(exportMidi(engine, bars)), MidiFile::ReadResult::Ok);
    return file;
}

} // namespace

TEST(MidiExport, HoldsSoManyBarsAndEndsEveryNote)
{
    KWUniClient engine(nullptr);
    for (const int bars : {1, 3}) {
        const MidiFile file = exported(engine, bars);
        std::map<int, int> sounding;
        int notes = 0;
        for (const MidiFileEvent& event : file.events) {
            EXPECT_LE(file.beatOf(event.tick), 4.0 * bars);
            const bool on = (event.bytes[0] & 0xF0) == 0x90 && event.bytes[2] > 0;
            const bool off = (event.bytes[0] & 0xF0) == 0x80
                || ((event.bytes[0] & 0xF0) == 0x90 && event.bytes[2] == 0);
            notes += on;
            sounding[event.bytes[1]] += on ? 1 : off ? -1 : 0;
        }
        EXPECT_GE(notes, 2 * bars);
        for (const auto& [note, count] : sounding) {
            EXPECT_LE(count, 0) << "note " << note << " hangs";
        }
        EXPECT_NEAR(file.beatOf(file.lastTick()), 4.0 * bars, 1.0);
    }
}

TEST(MidiExport, PlaysTheSameWhateverTheInstrumentDoesAndLeavesItAlone)
{
    KWUniClient engine(nullptr);
    const StateImage before(engine);
    const std::vector<uint8_t> first = exportMidi(engine, 2);
    EXPECT_TRUE(StateImage(engine) == before);
    EXPECT_EQ(exportMidi(engine, 2), first);
    engine.setParameter(Tag::TriggerMode, 0.0f); // waits for a key: the file plays all the same
    EXPECT_EQ(exportMidi(engine, 2), first);
    engine.setParameter(Tag::RootKey, 0.7f);
    EXPECT_NE(exportMidi(engine, 2), first);
}

TEST(MidiExport, APullOnThePadDragsTheFile)
{
    EditorRig rig;
    const CPoint pad = EditorRig::middle(*findControl(kMidiDragTag));
    rig.user->drag(pad, {pad.x + 60, pad.y});
    ASSERT_EQ(rig.window->draggedFiles.size(), 1u);
    EXPECT_TRUE(rig.window->draggedFiles.front().ends_with(".mid"));
}

} // namespace ormund
