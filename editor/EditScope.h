#pragma once

#include <cstdint>

namespace ormund {

struct ControlRow;

// Which part of the state a control's gesture can change.
enum class EditScope : uint8_t {
    None,      // pages, play, the keyboard: nothing to take back
    Parameter, // one parameter, in all patterns
    Looper,    // the looper and its length, which the roll area moves together
    Steps,     // one track or loop
    Tracks,    // every track and loop
    Song,      // all of these
    Map,       // which controller moves what
    Load,      // whatever a preset replaces
};

// What a gesture of the control changes, and the tag that it changes: for an arrow beside a list
// that is the list's.
EditScope scopeOf(const ControlRow& row);
int editedTag(const ControlRow& row);

} // namespace ormund
