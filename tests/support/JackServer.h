// A JACK server without a sound device, for one test, and another client of it that sends and hears
// messages, handles the transport and may lead it. Tests never touch the server of the one who runs
// them.
#pragma once

#include "base/Crossing.h"
#include "base/Ring.h"

#include <array>
#include <cstdint>
#include <jack/jack.h>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ormund {

class JackServer {
public:
    static constexpr int kRate = 48000; // Hz
    static constexpr int kBlock = 256;  // frames

    // `logFile`: what the server says goes there.
    explicit JackServer(std::string logFile);
    ~JackServer();
    JackServer(const JackServer&) = delete;
    JackServer& operator=(const JackServer&) = delete;

    static bool isInstalled();
    bool isRunning() const { return answers; }
    std::string said() const;
    void stop();
    void standStill(bool on) const; // answers nobody, as one that hangs

private:
    void start(const std::string& name);

    std::string log;
    pid_t process = -1;
    bool answers = false;
};

class JackClient {
public:
    struct Message {
        int64_t frame; // of the rolling transport; -1 while it stands
        std::array<uint8_t, 3> bytes;
        friend bool operator==(const Message&, const Message&) = default;
    };

    JackClient();
    ~JackClient();
    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;

    // Waits for the ports of the other client, up to ten seconds.
    bool connectFrom(const std::string& port);
    bool connectTo(const std::string& port);
    void play(bool on);
    void locate(unsigned frame) { jack_transport_locate(client, frame); }
    bool isRolling() const;
    unsigned frame() const { return jack_get_current_transport_frame(client); }
    bool waitRolling(bool wanted, int milliseconds = 5000) const;
    bool waitFrame(unsigned wanted, int milliseconds = 20000) const;
    // Tempo that the server reports, 0 for none.
    double tempo() const;
    // Gives bars and tempo (beats per minute) from now on, in place of another client; whole ticks.
    void lead(double beatsPerMinute);
    // Goes out when the transport comes to its frame; in rising order.
    void send(const Message& message) { toSend.push(message); }
    std::vector<Message> take();

    jack_client_t* client;

private:
    int process(jack_nframes_t frames);
    void tellBars(jack_position_t& position) const;
    bool connect(const std::string& from, const std::string& to);

    jack_port_t* input;
    jack_port_t* output;
    Ring<Message, 16384> heard;
    Ring<Message, 64> toSend;
    Crossing<double> ledTempo = 120.0;
};

} // namespace ormund
