// What each edit button does to which tracks.
#pragma once

#include <cstdint>
#include <span>

namespace ormund {

class Tracks;

enum class EditTarget : uint8_t {
    Mod, // with the number of its track
    Pitch,
    Velocity,
    Gate,
    Performance,
    All,
};

enum class EditOperation : uint8_t {
    ShiftBackward,
    ShiftForward,
    ShiftUp,
    ShiftDown,
    Copy,
    Paste,
    Clear,
    Random,
    Mutate,
    Tool, // whichever is chosen: data/tracks/EditTools.h
};

struct EditButton {
    int tag;
    EditTarget target;
    int track; // of Mod, 0 to 7
    EditOperation operation;
};

std::span<const EditButton> editButtons();
const EditButton* editButton(int tag); // null for any other tag

// Does what the button says to the selected rows, inside the track's loop; the global ones to whole
// rows. False for a tag that is no edit button. Called at the button's release, on any thread;
// allocates nothing and never waits.
bool performEdit(int tag, Tracks& tracks);

} // namespace ormund
