#include "synth/KWSimpleMidiManager.h"

#include <gmock/gmock.h>

#include <vector>

namespace ormund {

namespace {

using Slots = KWSimpleMidiManager<float, 8>;

std::vector<int> asInts(const float* values) { return {values, values + 8}; }

TEST(VoiceSlots, NotesTakeTheSlotsInTurnFromTheSecondOn)
{
    Slots slots;
    for (unsigned note = 60; note < 68; ++note)
        slots.noteEvent(note, note);
    EXPECT_THAT(asInts(slots.notes()), testing::ElementsAre(67, 60, 61, 62, 63, 64, 65, 66));
    EXPECT_THAT(asInts(slots.velocities()), testing::ElementsAre(67, 60, 61, 62, 63, 64, 65, 66));
}

TEST(VoiceSlots, AReleasedSlotKeepsItsPitchAndIsTakenBeforeAHeldOneIsStolen)
{
    Slots slots;
    for (unsigned note = 60; note < 68; ++note)
        slots.noteEvent(note, 100);
    slots.noteEvent(64, 0);
    EXPECT_THAT(asInts(slots.notes()), testing::Contains(64));
    EXPECT_THAT(
        asInts(slots.velocities()), testing::ElementsAre(100, 100, 100, 100, 100, 0, 100, 100));
    // The turn is at slot 1, which is held: the released slot 5 serves.
    slots.noteEvent(72, 80);
    EXPECT_EQ(slots.notes()[5], 72.0f);
    // With all held again, the slot after the last one taken is stolen, not the oldest note.
    slots.noteEvent(73, 90);
    EXPECT_THAT(asInts(slots.notes()), testing::ElementsAre(67, 60, 61, 62, 63, 72, 73, 66));
}

TEST(VoiceSlots, OneNoteOffReleasesEveryVoiceOfItsPitch)
{
    Slots slots;
    slots.noteEvent(60, 100);
    slots.noteEvent(62, 100);
    slots.noteEvent(60, 50);
    slots.noteEvent(60, 0);
    EXPECT_THAT(asInts(slots.velocities()), testing::ElementsAre(0, 0, 100, 0, 0, 0, 0, 0));
}

} // namespace

} // namespace ormund
