// The panel has a play button of its own, which in a host only lets the sequencer run along. Here
// it is the program's: pressing it, or the space bar on the panel, starts the transport.
#pragma once

namespace ormund {

// The screen's thread.
class PlayLink {
public:
    struct Seen {
        bool panelPlays = false;      // the button
        bool followsTransport = true; // else keys play, and the button shows them
        bool transportRolls = false;  // as of the last block
    };
    enum class Wish { Nothing, Start, Stop };

    // Once an idle. A button that differs from the transport is the user's doing only after the
    // transport has stood or rolled long enough for the engine to have set the button by itself.
    Wish look(const Seen& seen);
    // The transport was asked to start or stop by another way.
    void transportTold() { calm = 0; }

private:
    bool rolled = false;
    int calm = 0; // idles since the last change of the transport
};

} // namespace ormund
