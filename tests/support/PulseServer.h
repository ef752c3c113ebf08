// A PulseAudio server without a sound device, for one test, and what is heard at its output. Tests
// never touch the server of the one who runs them.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace ormund {

class PulseServer {
public:
    static constexpr int kRate = 48000; // Hz, of its only device

    // Keeps its socket and whatever else in `ownFolder`; PULSE_SERVER names it from then on.
    explicit PulseServer(std::string ownFolder);
    ~PulseServer();
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    static bool isInstalled();
    bool isRunning() const { return answers; }
    // Dies as by a crash.
    void kill();

    // What the device plays on its left side, from now on.
    void record();
    // Waits until that much is there, counted from the first sound; up to twenty seconds.
    std::vector<float> endRecord(double seconds);

private:
    std::vector<float> recorded() const;

    std::string folder;
    pid_t process = -1;
    pid_t recorder = -1;
    bool answers = false;
};

} // namespace ormund
