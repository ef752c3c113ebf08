#pragma once

#include "editor/EditCells.h"
#include "editor/EditScope.h"

#include <span>
#include <string>

namespace ormund {

class KWUniClient;

// What an edit is called in the list of the levels: "Shift left, pitch", "Filter cutoff to 54 %".
struct EditName {
    std::string text;
    int track = -1; // tag of the track whose hue it has; -1 for none
};

// Of a gesture on the control of a tag.
EditName nameOfGesture(const KWUniClient& engine, EditScope scope, int tag);
// Of steps that something else than the panel wrote; `tags` are those of the cells.
EditName nameOfTake(std::span<const int> tags);
EditName nameOfOutsideEdit(std::span<const int> tags);

} // namespace ormund
