// What plays the blocks: a JACK server, a sound device, or a clock alone.
#pragma once

#include "apps/ormund/LiveHost.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ormund {

struct SoundWishes {
    std::string device;  // as listed, or a part of its name; empty for the first that answers
    int rate = 0;        // Hz; 0 for the device's own
    int block = 0;       // frames; 0 for the usual
    std::string midiIn;  // a part of the name of a port to connect; empty for none
    std::string midiOut; // likewise
};

// The screen's thread. From its making to its end it runs the host's blocks on a thread of its own.
class AudioDriver {
public:
    virtual ~AudioDriver() = default;
    // One line for the user.
    virtual std::string describe() const = 0;
    // False once the server or the device is gone.
    virtual bool isAlive() const { return true; }
    // Now and then, while it is alive.
    virtual void idle() { }
    // Where several programs share one transport these ask for it; false where they do not.
    virtual bool play(bool /*on*/) { return false; }
    virtual bool isRolling() const { return false; }
    virtual bool locate(double /*beat*/, double /*tempo*/) { return false; }
};

// Answers in place of an exception: either a driver or what is wrong, in one line.
struct OpenedDriver {
    std::unique_ptr<AudioDriver> driver;
    std::string problem;
};
// Called when a driver is sure of its device and about to touch the host: the code that ran the
// blocks until then must have ended when this returns.
using BeforeBlocks = std::function<void()>;
OpenedDriver openSound(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before);

struct SoundDevice {
    std::string name;  // what --device takes
    std::string about; // a short remark
};
// Everything that answers now. "none" is no device and not among them.
std::vector<SoundDevice> soundDevices();

// The names of ports that other programs offer.
struct MidiPorts {
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;
};
MidiPorts midiPorts();

// Keeps the libraries from writing into the user's terminal what this program says in one line.
void quietLibraries();

} // namespace ormund
