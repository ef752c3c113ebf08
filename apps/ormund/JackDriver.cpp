#include "apps/ormund/JackDriver.h"

#include "apps/ormund/ClockedBlocks.h"
#include "base/Product.h"

#include <algorithm>
#include <cmath>
#include <jack/midiport.h>
#include <jack/transport.h>
#include <memory>

namespace ormund {

namespace {

constexpr double kTicksPerBeat = 1920;
constexpr int64_t kOfferNanos = 500000000; // between two offers

using PortNames = std::unique_ptr<const char*, decltype(&jack_free)>;

PortNames portsOf(jack_client_t* client, const char* type, unsigned long flags)
{
    return {
        jack_get_ports(client, nullptr, type, flags), reinterpret_cast<void (*)(void*)>(jack_free)};
}

jack_client_t* join(jack_status_t* status = nullptr)
{
    return jack_client_open(product::kName, JackNoStartServer, status);
}

} // namespace

int JackDriver::serverRate()
{
    jack_client_t* visitor = join();
    if (!visitor)
        return 0;
    const auto rate = static_cast<int>(jack_get_sample_rate(visitor));
    jack_client_close(visitor);
    return rate;
}

MidiPorts JackDriver::ports()
{
    MidiPorts found;
    jack_client_t* visitor = join();
    if (!visitor)
        return found;
    const auto list = [visitor](unsigned long flags, std::vector<std::string>& names) {
        const PortNames ports = portsOf(visitor, JACK_DEFAULT_MIDI_TYPE, flags);
        for (const char** name = ports.get(); name && *name; ++name)
            names.emplace_back(*name);
    };
    list(JackPortIsOutput, found.inputs); // what others send is what we take
    list(JackPortIsInput, found.outputs);
    jack_client_close(visitor);
    return found;
}

OpenedDriver JackDriver::open(LiveHost& host, const SoundWishes& wishes, const BeforeBlocks& before)
{
    jack_client_t* client = join();
    if (!client)
        return {nullptr, "no JACK server runs"};
    std::unique_ptr<JackDriver> made(new JackDriver(host, client));
    if (std::string problem = made->begin(wishes, before); !problem.empty())
        return {nullptr, std::move(problem)};
    return {std::move(made), {}};
}

JackDriver::JackDriver(LiveHost& ownHost, jack_client_t* ownClient)
    : host(ownHost), client(ownClient), song(jack_get_sample_rate(ownClient))
{
}

JackDriver::~JackDriver()
{
    if (isAlive())
        jack_deactivate(client);
    jack_client_close(client);
}

std::string JackDriver::begin(const SoundWishes& wishes, const BeforeBlocks& before)
{
    const auto rate = static_cast<int>(jack_get_sample_rate(client));
    const auto block = static_cast<int>(jack_get_buffer_size(client));
    if (wishes.rate != 0 && wishes.rate != rate)
        return "JACK runs at " + std::to_string(rate) + " Hz, and that is set there, not here";
    if (wishes.block != 0 && wishes.block != block)
        return "JACK's blocks have " + std::to_string(block)
            + " frames, and that is set there, not here";
    const auto add = [this](const char* name, const char* type, unsigned long flags) {
        return jack_port_register(client, name, type, flags, 0);
    };
    left = add("left", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput);
    right = add("right", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput);
    midiInput = add(product::kMidiInName, JACK_DEFAULT_MIDI_TYPE, JackPortIsInput);
    midiOutput = add(product::kMidiOutName, JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput);
    if (!left || !right || !midiInput || !midiOutput)
        return "JACK has no ports left";
    before();
    host.setFormat(static_cast<float>(rate), block);
    title = "JACK, " + std::to_string(rate) + " Hz";

    jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* self) {
            return static_cast<JackDriver*>(self)->process(frames);
        },
        this);
    // No block runs while the size changes.
    jack_set_buffer_size_callback(
        client,
        [](jack_nframes_t frames, void* self) {
            LiveHost& played = static_cast<JackDriver*>(self)->host;
            played.dispatch(effSetBlockSize, 0, static_cast<VstIntPtr>(frames));
            return 0;
        },
        this);
    jack_on_shutdown(
        client, [](void* self) { static_cast<JackDriver*>(self)->gone = 1; }, this);
    if (jack_activate(client) != 0)
        return "JACK does not let Ormund play";
    offerBars();
    connectSound();
    for (const bool isInput : {true, false})
        if (std::string problem = connectMidi(isInput ? wishes.midiIn : wishes.midiOut, isInput);
            !problem.empty())
            return problem;
    return {};
}

// Bars and tempo come from here only where no other client gives them.
void JackDriver::offerBars()
{
    jack_set_timebase_callback(
        client, 1,
        [](jack_transport_state_t, jack_nframes_t frames, jack_position_t* position, int,
            void* self) { static_cast<JackDriver*>(self)->tellBars(frames, *position); },
        this);
}

void JackDriver::idle()
{
    // Who gave them has left, and JACK tells nobody.
    const int64_t now = ClockedBlocks::now();
    if (lacksBars == 0 || now < nextOffer)
        return;
    nextOffer = now + kOfferNanos;
    offerBars();
}

void JackDriver::connectSound()
{
    const PortNames speakers =
        portsOf(client, JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput | JackPortIsPhysical);
    const char** name = speakers.get();
    for (jack_port_t* side : {left, right})
        if (name && *name)
            jack_connect(client, jack_port_name(side), *name++);
}

std::string JackDriver::connectMidi(const std::string& part, bool isInput)
{
    if (part.empty())
        return {};
    const PortNames others =
        portsOf(client, JACK_DEFAULT_MIDI_TYPE, isInput ? JackPortIsOutput : JackPortIsInput);
    for (const char** name = others.get(); name && *name; ++name) {
        if (std::string(*name).find(part) == std::string::npos)
            continue;
        const char* own = jack_port_name(isInput ? midiInput : midiOutput);
        return jack_connect(client, isInput ? *name : own, isInput ? own : *name) == 0
            ? ""
            : std::string("JACK does not connect ") + *name;
    }
    return "JACK has no MIDI port named " + part + " (--list-devices shows them)";
}

bool JackDriver::play(bool on)
{
    if (!isAlive())
        return false;
    if (on)
        jack_transport_start(client);
    else
        jack_transport_stop(client);
    return true;
}

bool JackDriver::isRolling() const
{
    return isAlive() && jack_transport_query(client, nullptr) != JackTransportStopped;
}

bool JackDriver::locate(double beat, double tempo)
{
    if (!isAlive())
        return false;
    const double frame = std::round(beat * 60.0 / tempo * jack_get_sample_rate(client));
    return jack_transport_locate(client, static_cast<jack_nframes_t>(std::max(frame, 0.0))) == 0;
}

// --- JACK's process thread ----------------------------------------------------------------------

SharedSong::Report JackDriver::report()
{
    jack_position_t position;
    const jack_transport_state_t state = jack_transport_query(client, &position);
    SharedSong::Report found;
    found.rolling = state == JackTransportRolling;
    found.frame = position.frame;
    // While it stands nobody is asked for bars.
    lacksBars = found.rolling && !givesBars && !(position.valid & JackPositionBBT) ? 1 : 0;
    const bool fits = position.beat_type > 0 && position.beats_per_bar > 0
        && position.ticks_per_beat > 0 && position.beats_per_minute > 0;
    // What stands there may be what was reported from here, before the user changed the tempo.
    const bool isOwn = givesBars || (!found.rolling && position.beats_per_minute == reportedTempo);
    if (isOwn || !(position.valid & JackPositionBBT) || !fits)
        return found;
    const double quartersPerBeat = 4.0 / static_cast<double>(position.beat_type);
    const double tick =
        position.valid & JackTickDouble ? position.tick_double : static_cast<double>(position.tick);
    const double beats = (position.bar - 1) * static_cast<double>(position.beats_per_bar)
        + (position.beat - 1) + tick / position.ticks_per_beat;
    found.hasBars = true;
    found.tempo = position.beats_per_minute * quartersPerBeat;
    found.quarters = beats * quartersPerBeat;
    found.resolution = quartersPerBeat / position.ticks_per_beat;
    // The bars may belong to a frame before the block's first.
    if (position.valid & JackBBTFrameOffset)
        found.quarters += position.bbt_offset * found.tempo / 60.0 / position.frame_rate;
    return found;
}

void JackDriver::tellBars(jack_nframes_t frames, jack_position_t& position)
{
    givesBars = true;
    const double beat = song.beatAt(position.frame, host.ownTempo(), static_cast<int>(frames));
    const double inBar = std::fmod(beat, LiveHost::kBeatsPerBar);
    const auto whole = static_cast<int>(inBar);
    position.valid = JackPositionBBT;
    position.bar = 1 + static_cast<int>(beat / LiveHost::kBeatsPerBar);
    position.beat = 1 + whole;
    position.tick = static_cast<int>((inBar - whole) * kTicksPerBeat);
    position.bar_start_tick = (position.bar - 1) * LiveHost::kBeatsPerBar * kTicksPerBeat;
    position.beats_per_bar = LiveHost::kBeatsPerBar;
    position.beat_type = 4;
    position.ticks_per_beat = kTicksPerBeat;
    reportedTempo = host.ownTempo();
    position.beats_per_minute = reportedTempo;
}

int JackDriver::process(jack_nframes_t frames)
{
    auto* leftBuffer = static_cast<float*>(jack_port_get_buffer(left, frames));
    auto* rightBuffer = static_cast<float*>(jack_port_get_buffer(right, frames));
    void* incoming = jack_port_get_buffer(midiInput, frames);
    midiBuffer = jack_port_get_buffer(midiOutput, frames);
    jack_midi_clear_buffer(midiBuffer);
    for (uint32_t i = 0, count = jack_midi_get_event_count(incoming); i < count; ++i) {
        jack_midi_event_t event;
        if (jack_midi_event_get(&event, incoming, i) == 0)
            host.send(event.buffer, event.size, static_cast<int>(event.time));
    }
    host.takeCommands();
    const auto place = song.follow(report(), host.ownTempo(), static_cast<int>(frames));
    givesBars = false;
    host.run(leftBuffer, rightBuffer, static_cast<int>(frames), *this, &place);
    midiBuffer = nullptr;
    return 0;
}

void JackDriver::midiOut(int frame, const LiveHost::Message& message)
{
    // A full buffer drops the message, as JACK has it.
    jack_midi_event_write(midiBuffer, static_cast<jack_nframes_t>(frame), message.bytes.data(),
        static_cast<size_t>(message.size));
}

} // namespace ormund
