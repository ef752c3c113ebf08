#include "tests/support/Player.h"

#include "data/parameters/Tags.h"

#include <algorithm>
#include <cstring>

namespace ormund {

namespace {
constexpr int kMostBlock = 8192;
// The host callback has no word of its own for the host, so the player that runs a block says so.
thread_local Player* current = nullptr;
} // namespace

VstIntPtr Player::host(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void* ptr, float)
{
    if (!current)
        return 0;
    switch (opcode) {
    case audioMasterGetTime:
        return current->sendsRecord ? reinterpret_cast<VstIntPtr>(&current->record) : 0;
    case audioMasterGetCurrentProcessLevel:
        return current->processLevel;
    case audioMasterProcessEvents:
        return current->keep(*static_cast<const VstEvents*>(ptr));
    default:
        return 0;
    }
}

VstIntPtr Player::keep(const VstEvents& events)
{
    const VstEvent* const* list = events.events;
    for (VstInt32 i = 0; i < events.numEvents; ++i) {
        VstMidiEvent midi;
        std::memcpy(&midi, list[i], sizeof midi);
        const auto byte = [&](int k) {
            return static_cast<int>(static_cast<uint8_t>(midi.midiData[k]));
        };
        out.push_back({frame + midi.deltaFrames, byte(0), byte(1), byte(2)});
    }
    return 1;
}

Player::Player(const Setup& setup)
    : tempo(setup.tempo), rate(static_cast<double>(setup.rate)), block(setup.block)
{
    current = this;
    client = std::make_unique<KWUniClient>(host, *setup.loops);
    client->setSampleRate(setup.rate);
    client->resume();
    if (setup.empty) {
        client->tracks.clearAll();
        client->patternStore.fillWithDefaults();
        client->patternStore.replay(*client);
        client->setParameter(Tag::SynthOn, 0.0f);
    }
}

Player::~Player()
{
    current = this;
    client.reset();
    current = nullptr;
}

void Player::start(double from)
{
    beats = from;
    rolling = true;
}

void Player::stop() { rolling = false; }

void Player::cycle(double from, double to)
{
    record.cycleStartPos = from;
    record.cycleEndPos = to;
    cycling = true;
}

void Player::send(int status, int data1, int data2, int at)
{
    VstMidiEvent midi{};
    midi.type = kVstMidiType;
    midi.byteSize = sizeof midi;
    midi.deltaFrames = at;
    midi.midiData[0] = static_cast<uint8_t>(status);
    midi.midiData[1] = static_cast<uint8_t>(data1);
    midi.midiData[2] = static_cast<uint8_t>(data2);
    pending.push_back(midi);
}

void Player::play(int64_t frames)
{
    current = this;
    float left[kMostBlock];
    float right[kMostBlock];
    float* outputs[] = {left, right};
    while (frames > 0) {
        const int count = static_cast<int>(std::min<int64_t>(frames, block));
        record.flags = kVstPpqPosValid | kVstTempoValid | (rolling ? kVstTransportPlaying : 0)
            | (cycling ? kVstCyclePosValid | kVstTransportCycleActive : 0);
        record.ppqPos = beats;
        record.tempo = tempo;
        record.sampleRate = rate;
        if (!pending.empty()) {
            std::vector<char> memory(sizeof(VstEvents) + pending.size() * sizeof(VstEvent*));
            auto* events = reinterpret_cast<VstEvents*>(memory.data());
            events->numEvents = static_cast<VstInt32>(pending.size());
            VstEvent** list = events->events;
            for (size_t i = 0; i < pending.size(); ++i)
                list[i] = reinterpret_cast<VstEvent*>(&pending[i]);
            client->processEvents(events);
            pending.clear();
        }
        client->processReplacing(nullptr, outputs, count);
        keepSound(left, right, count);
        frame += count;
        frames -= count;
        if (!rolling)
            continue;
        beats += count * tempo / (60.0 * rate);
        if (cycling && beats >= record.cycleEndPos)
            beats -= record.cycleEndPos - record.cycleStartPos;
    }
}

void Player::playBeats(double count) { play(static_cast<int64_t>(count * 60.0 / tempo * rate)); }

std::vector<int> Player::stepTicks(int count)
{
    if (!rolling)
        start();
    while (static_cast<int>(noteOns().size()) < count && frame < 44100 * 60)
        play(block);
    return ticksOf(count);
}

} // namespace ormund
