#pragma once

#include <span>

namespace ormund {

// A control whose use changes nothing, or a parameter that the engine does not react to when it is
// set, and why that is so.
struct PassiveControl {
    int tag;
    const char* why;
};

// Controls of the catalogue, in tag order; the hints are left out, which only show.
std::span<const PassiveControl> passiveControls();
// Parameters, in tag order.
std::span<const PassiveControl> passiveParameters();

} // namespace ormund
