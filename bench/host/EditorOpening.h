// How long the window takes to stand there.
#pragma once

#include <optional>
#include <string>

namespace ormund {

// From the host's call to the first painted picture, milliseconds.
struct OpeningCost {
    double clock = 0;
    double processor = 0;
};

struct EditorOpening {
    OpeningCost first;  // in a new process
    OpeningCost second; // after a close, of the same instance
    int width = 0;      // of the panel, pixels
};

// In a process of its own, on the X server that DISPLAY names; empty without one.
std::optional<EditorOpening> openingOfEditor(const std::string& module, double scale);

} // namespace ormund
