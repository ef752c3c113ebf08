#pragma once

#include "controls/KWBitSet128.h"

namespace ormund {

// Which pages of the panel are live. The editor looks at the engine's page values once an idle and
// says here what it found; the controls look at the gate. Screen thread.
class PageGates {
public:
    struct Pages {
        bool synth = false;         // else the settings
        bool separateLoops = false; // each lane has its own loop, else all follow the pitch
        int modTrack = 0;           // 0 to 7
        int keyMode = 0;            // 0 or 1
        bool drum = false;          // the track plays a drum, else it sends a controller
        bool rules = false;         // of the performance lane, else what its steps play
        friend bool operator==(const Pages&, const Pages&) = default;
    };

    PageGates() { show(Pages{}); }

    // True when something flipped.
    bool show(const Pages& wanted);
    const Pages& shown() const { return pages; }
    const KWBitSet128& gate() const { return bits; }

private:
    Pages pages;
    KWBitSet128 bits;
};

} // namespace ormund
