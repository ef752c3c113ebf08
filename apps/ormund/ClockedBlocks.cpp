#include "apps/ormund/ClockedBlocks.h"

#include "apps/ormund/MidiApi.h"
#include "base/Product.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace ormund {

namespace {

constexpr int64_t kNanosPerSecond = 1000000000;
// The audio thread wakes nobody, so the sender looks by itself, this often.
constexpr int64_t kLookNanos = 500000;

template <typename Port>
std::string connectTo(Port& port, const std::string& part)
{
    for (unsigned i = 0; i < port.getPortCount(); ++i)
        if (port.getPortName(i).find(part) != std::string::npos) {
            port.openPort(i, product::kMidiName);
            return {};
        }
    return "there is no MIDI port named " + part + " (--list-devices shows them)";
}

// A port that others connect to, or one that is connected at once.
template <typename Port>
std::string openPort(Port& port, const std::string& part)
{
    if (!part.empty())
        return connectTo(port, part);
    port.openVirtualPort(product::kMidiName);
    return {};
}

} // namespace

ClockedBlocks::ClockedBlocks(LiveHost& ownHost, double sampleRate, int frames, int latency,
    const std::string& midiIn, const std::string& midiOut)
    : host(ownHost)
    , clock(sampleRate, frames)
    , frameCount(frames)
    , latencyNanos(static_cast<double>(latency) / sampleRate * kNanosPerSecond)
{
    openPorts(midiIn, midiOut);
    if (output)
        sender = std::thread([this] { send(); });
}

ClockedBlocks::~ClockedBlocks()
{
    over.raise();
    if (sender.joinable())
        sender.join();
    input.reset();
}

void ClockedBlocks::openPorts(const std::string& midiIn, const std::string& midiOut)
{
    const RtMidi::Api api = midiApi();
    if (api == RtMidi::RTMIDI_DUMMY) {
        // A machine without it plays sound all the same.
        if (!midiIn.empty() || !midiOut.empty())
            trouble = "neither ALSA's sequencer nor JACK is here, so there is no MIDI port";
        return;
    }
    try {
        input = std::make_unique<RtMidiIn>(api, product::kName);
        input->setCallback(
            [](double, std::vector<unsigned char>* bytes, void* self) {
                static_cast<ClockedBlocks*>(self)->hear(bytes->data(), bytes->size());
            },
            this);
        input->ignoreTypes(true, false, true); // clocks are heard
        trouble = openPort(*input, midiIn);
        output = std::make_unique<RtMidiOut>(api, product::kName);
        if (const std::string second = openPort(*output, midiOut); trouble.empty())
            trouble = second;
    } catch (const RtMidiError& error) {
        input.reset();
        output.reset();
        trouble = "there is no MIDI port: " + std::string(error.what());
    }
}

int64_t ClockedBlocks::now()
{
    // Read in the program's own memory: no call into the kernel.
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * kNanosPerSecond + time.tv_nsec;
}

void ClockedBlocks::hear(const uint8_t* bytes, size_t size)
{
    Timed timed;
    if (size < 1 || size > timed.message.bytes.size())
        return;
    timed.time = now();
    std::copy_n(bytes, size, timed.message.bytes.begin());
    timed.message.size = static_cast<int>(size);
    heard.push(timed);
}

// What came during the last block plays in this one, at the same place: late by a block, but
// evenly.
void ClockedBlocks::takeHeard(int64_t start)
{
    const double perFrame = clock.nanosPerFrame();
    while (const Timed* next = heard.front()) {
        const double frame = static_cast<double>(next->time - start) / perFrame + frameCount;
        if (frame >= frameCount)
            break;
        host.send(next->message.bytes.data(), static_cast<size_t>(next->message.size),
            static_cast<int>(std::max(frame, 0.0)));
        heard.drop();
    }
}

void ClockedBlocks::run(float* left, float* right)
{
    blockStart = clock.blockStart(now());
    takeHeard(blockStart);
    host.run(left, right, frameCount, *this);
}

void ClockedBlocks::midiOut(int frame, const LiveHost::Message& message)
{
    if (!output)
        return;
    const double later = frame * clock.nanosPerFrame() + latencyNanos;
    due.push({blockStart + static_cast<int64_t>(later), message});
}

void ClockedBlocks::send()
{
    // What is still waiting at the end goes out at once: it may be the end of a note.
    for (bool isLast = false; !isLast;) {
        isLast = over.isRaised();
        int64_t wake = now() + kLookNanos;
        while (const Timed* next = due.front()) {
            if (!isLast && next->time > now()) {
                wake = std::min(wake, next->time);
                break;
            }
            try {
                output->sendMessage(
                    next->message.bytes.data(), static_cast<size_t>(next->message.size));
            } catch (const RtMidiError&) {
                // A port that has gone takes nothing; the song goes on.
            }
            due.drop();
        }
        const timespec until{wake / kNanosPerSecond, wake % kNanosPerSecond};
        if (!isLast)
            clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
    }
}

} // namespace ormund
