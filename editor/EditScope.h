#pragma once

#include "panel/ControlCatalogue.h"

namespace ormund {

// What a gesture of the control changes, and the tag that it changes: for an arrow beside a list
// that is the list's.
EditScope scopeOf(const ControlRow& row);
int editedTag(const ControlRow& row);

} // namespace ormund
