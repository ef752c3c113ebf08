// How long the window takes to stand there.
#pragma once

#include <optional>
#include <string>

struct EditorOpening {
    double milliseconds = 0; // from the host's call to the first painted picture
    int width = 0;           // of the panel, pixels
};

// The first opening in a process of its own, on the X server that DISPLAY names; empty without one.
std::optional<EditorOpening> firstOpening(const std::string& module, int scale);
