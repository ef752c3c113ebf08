// The arrows beside a list: each moves it by one entry.
#pragma once

namespace ormund {

struct ChoiceArrow {
    int tag;
    int target;    // the list's tag
    int direction; // -1 or 1
};

// Null for any other tag. An arrow acts on release.
const ChoiceArrow* choiceArrow(int tag);

} // namespace ormund
