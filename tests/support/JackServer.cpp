#include "tests/support/JackServer.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <jack/midiport.h>
#include <spawn.h>
#include <sstream>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ormund {

namespace {

constexpr int kStepMs = 20;

template <typename Condition>
bool waitUntil(int milliseconds, Condition condition)
{
    for (int waited = 0; waited < milliseconds; waited += kStepMs) {
        if (condition())
            return true;
        usleep(kStepMs * 1000);
    }
    return condition();
}

void beQuiet()
{
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
}

bool isAnswered()
{
    jack_client_t* visitor = jack_client_open("visitor", JackNoStartServer, nullptr);
    if (visitor)
        jack_client_close(visitor);
    return visitor != nullptr;
}

// A file that one program at a time holds; waits for it.
class HeldFile {
public:
    explicit HeldFile(const std::string& name)
        : file(open((std::filesystem::temp_directory_path()
                        / (name + '-' + std::to_string(getuid()) + ".lock"))
                        .c_str(),
            O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        flock(file, LOCK_EX);
    }
    ~HeldFile() { close(file); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

private:
    int file;
};
} // namespace

bool JackServer::isInstalled() { return access("/usr/bin/jackd", X_OK) == 0; }

JackServer::JackServer(std::string logFile) : log(std::move(logFile))
{
    beQuiet();
    const std::string name = "ormund-test-" + std::to_string(getpid());
    setenv("JACK_DEFAULT_SERVER", name.c_str(), 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    // Two of the first servers on a machine, started at once, make their common list twice, and the
    // clients of one look into the other's.
    const HeldFile turn("ormund-test-start");
    start(name);
    answers = waitUntil(20000, isAnswered);
}

void JackServer::start(const std::string& name)
{
    const std::string rate = std::to_string(kRate);
    const std::string block = std::to_string(kBlock);
    // Synchronous and patient: a client that is late on a busy machine loses nothing. The server
    // ends with the test even when that crashes.
    const char* arguments[] = {"setpriv", "--pdeathsig", "TERM", "jackd", "-n", name.c_str(), "-r",
        "-S", "-t", "5000", "-d", "dummy", "-r", rate.c_str(), "-p", block.c_str(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    if (posix_spawnp(
            &process, arguments[0], &actions, nullptr, const_cast<char**>(arguments), environ)
        != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
}

std::string JackServer::said() const
{
    std::ostringstream text;
    text << std::ifstream(log).rdbuf();
    return text.str();
}

JackServer::~JackServer()
{
    stop();
    unsetenv("JACK_DEFAULT_SERVER");
}

void JackServer::stop()
{
    if (process <= 0)
        return;
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    process = -1;
}

void JackServer::standStill(bool on) const { kill(process, on ? SIGSTOP : SIGCONT); }

JackClient::JackClient()
    : client(jack_client_open("other", JackNoStartServer, nullptr))
    , input(jack_port_register(client, "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0))
    , output(jack_port_register(client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0))
{
    jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* self) {
            return static_cast<JackClient*>(self)->process(frames);
        },
        this);
    jack_activate(client);
}

JackClient::~JackClient() { jack_client_close(client); }

int JackClient::process(jack_nframes_t frames)
{
    jack_position_t position;
    const bool rolls = jack_transport_query(client, &position) == JackTransportRolling;
    void* incoming = jack_port_get_buffer(input, frames);
    for (uint32_t i = 0, count = jack_midi_get_event_count(incoming); i < count; ++i) {
        jack_midi_event_t event;
        if (jack_midi_event_get(&event, incoming, i) != 0)
            continue;
        Message one{rolls ? int64_t{position.frame} + event.time : -1, {}};
        std::copy_n(event.buffer, std::min<size_t>(event.size, 3), one.bytes.begin());
        heard.push(one);
    }
    void* outgoing = jack_port_get_buffer(output, frames);
    jack_midi_clear_buffer(outgoing);
    const Message* next = toSend.front();
    for (; rolls && next && next->frame < int64_t{position.frame} + frames; next = toSend.front()) {
        const int64_t offset = std::max<int64_t>(next->frame - position.frame, 0);
        jack_midi_event_write(
            outgoing, static_cast<jack_nframes_t>(offset), next->bytes.data(), next->bytes.size());
        toSend.drop();
    }
    return 0;
}

void JackClient::lead(double beatsPerMinute)
{
    ledTempo = beatsPerMinute;
    jack_set_timebase_callback(
        client, 0,
        [](jack_transport_state_t, jack_nframes_t, jack_position_t* position, int, void* self) {
            static_cast<const JackClient*>(self)->tellBars(*position);
        },
        this);
}

void JackClient::tellBars(jack_position_t& position) const
{
    constexpr int kBeatsPerBar = 4;
    constexpr int kTicksPerBeat = 1920;
    // The first position that the server asks about has no rate yet.
    const double beats = position.frame * ledTempo / 60 / jack_get_sample_rate(client);
    const auto ticks = static_cast<int64_t>(beats * kTicksPerBeat);
    const int64_t beat = ticks / kTicksPerBeat;
    position.valid = JackPositionBBT;
    position.bar = static_cast<int32_t>(beat / kBeatsPerBar) + 1;
    position.beat = static_cast<int32_t>(beat % kBeatsPerBar) + 1;
    position.tick = static_cast<int32_t>(ticks % kTicksPerBeat);
    position.bar_start_tick = static_cast<double>(position.bar - 1) * kBeatsPerBar * kTicksPerBeat;
    position.beats_per_bar = kBeatsPerBar;
    position.beat_type = 4;
    position.ticks_per_beat = kTicksPerBeat;
    position.beats_per_minute = ledTempo;
}

bool JackClient::connect(const std::string& from, const std::string& to)
{
    return waitUntil(10000, [&] {
        const int answer = jack_connect(client, from.c_str(), to.c_str());
        return answer == 0 || answer == EEXIST; // a busy server may do it and answer too late
    });
}

bool JackClient::connectFrom(const std::string& port)
{
    return connect(port, jack_port_name(input));
}

bool JackClient::connectTo(const std::string& port)
{
    return connect(jack_port_name(output), port);
}

void JackClient::play(bool on)
{
    if (on)
        jack_transport_start(client);
    else
        jack_transport_stop(client);
}

bool JackClient::isRolling() const
{
    return jack_transport_query(client, nullptr) == JackTransportRolling;
}

bool JackClient::waitRolling(bool wanted, int milliseconds) const
{
    return waitUntil(milliseconds, [&] { return isRolling() == wanted; });
}

bool JackClient::waitFrame(unsigned wanted, int milliseconds) const
{
    return waitUntil(milliseconds, [&] { return frame() >= wanted; });
}

double JackClient::tempo() const
{
    jack_position_t position;
    jack_transport_query(client, &position);
    return position.valid & JackPositionBBT ? position.beats_per_minute : 0;
}

std::vector<JackClient::Message> JackClient::take()
{
    std::vector<Message> all;
    Message one;
    while (heard.take(one))
        all.push_back(one);
    return all;
}

} // namespace ormund
