// A host that has lost its mind: MIDI bytes, parameters of any value, opcodes, states and blocks of
// any size, all through the C interface. Sound stays finite and bounded.
#include "host/plugin/KWUniClient.h"
#include "platform/Messages.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace ormund;

namespace {

constexpr int kMostFrames = 512;
constexpr float kLoudest = 1.001f;
constexpr VstInt32 kMostOpcode = 90;

class Bytes {
public:
    Bytes(const uint8_t* data, size_t size) : at(data), left(size) { }
    bool isEmpty() const { return left == 0; }
    uint8_t next()
    {
        if (left == 0)
            return 0;
        --left;
        return *at++;
    }
    template <typename T>
    T take()
    {
        uint8_t bytes[sizeof(T)];
        for (uint8_t& byte : bytes)
            byte = next();
        T value;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

private:
    const uint8_t* at;
    size_t left;
};

VstTimeInfo record{};

VstIntPtr host(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float)
{
    return opcode == audioMasterGetTime ? reinterpret_cast<VstIntPtr>(&record) : 0;
}

void play(AEffect& effect, int frames)
{
    static float left[kMostFrames];
    static float right[kMostFrames];
    float* outputs[] = {left, right};
    effect.processReplacing(&effect, nullptr, outputs, frames);
    for (int i = 0; i < frames; ++i)
        if (!(std::abs(left[i]) < kLoudest && std::abs(right[i]) < kLoudest)) // nor no number
            std::abort();
    record.ppqPos += frames * record.tempo / (60.0 * 44100.0);
}

void send(AEffect& effect, Bytes& bytes)
{
    constexpr int kMostEvents = 4;
    VstMidiEvent events[kMostEvents]{};
    VstEventList<kMostEvents> list;
    list.numEvents = bytes.next() % (kMostEvents + 1);
    for (int i = 0; i < list.numEvents; ++i) {
        VstMidiEvent& event = events[i];
        event.type = bytes.next() % 16 ? kVstMidiType : kVstSysExType;
        event.byteSize = sizeof event;
        event.deltaFrames = bytes.take<int16_t>();
        for (int k = 0; k < 3; ++k)
            event.midiData[k] = bytes.next();
        list.events[i] = reinterpret_cast<VstEvent*>(&event);
    }
    effect.dispatcher(&effect, effProcessEvents, 0, 0, list.list(), 0);
}

void giveDamagedState(AEffect& effect, Bytes& bytes)
{
    void* state = nullptr;
    const VstIntPtr count = effect.dispatcher(&effect, effGetChunk, 0, 0, &state, 0);
    std::vector<char> copy(static_cast<char*>(state), static_cast<char*>(state) + count);
    for (int damages = bytes.next() % 4; damages >= 0; --damages)
        copy[bytes.take<uint16_t>() % copy.size()] = static_cast<char>(bytes.next());
    effect.dispatcher(&effect, effSetChunk, 0, count, copy.data(), 0);
    forgetMessage();
}

// The script interface, with files in a home of this program's own.
void knock(AEffect& effect, Bytes& bytes)
{
    const char* const names[] = {"", "/a.kwe", "/b.kws", "/c.kwm", "/no/folder/d.kwe", "/.."};
    std::string room = std::getenv("HOME");
    room += names[bytes.next() % std::size(names)];
    room.resize(8192); // as much as any answer takes
    effect.dispatcher(&effect, effVendorSpecific, KWUniClient::kUniqueId, bytes.next() % 16,
        room.data(), bytes.take<float>());
}

// Any opcode with any numbers; the pointer leads to as much room as any of them may fill or read.
void call(AEffect& effect, Bytes& bytes)
{
    alignas(16) static char room[65536];
    const VstInt32 opcode = bytes.next() % kMostOpcode;
    const auto index = bytes.next() % 2 ? bytes.take<int32_t>() : bytes.next();
    const auto value = static_cast<VstIntPtr>(
        bytes.next() % 2 ? bytes.take<int64_t>() : static_cast<int64_t>(bytes.next()));
    const auto opt = bytes.take<float>();
    for (int i = 0; i < 64; ++i)
        room[i] = static_cast<char>(bytes.next());
    void* ptr = bytes.next() % 4 ? room : nullptr;
    const bool wantsMore = opcode == effClose || opcode == effProcessEvents
        || opcode == effVendorSpecific || (opcode == effSetChunk && value > VstIntPtr{sizeof room});
    if (!wantsMore)
        effect.dispatcher(&effect, opcode, index, value, ptr, opt);
    forgetMessage();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Bytes bytes(data, size);
    AEffect& effect = *(new KWUniClient(host))->getAeffect();
    record = {};
    record.tempo = 120;
    record.flags = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid;
    int blocks = 0;
    while (!bytes.isEmpty() && blocks < 64) {
        switch (bytes.next() % 9) {
        case 0:
            send(effect, bytes);
            break;
        case 1:
            effect.setParameter(&effect, bytes.take<int16_t>() % 640, bytes.take<float>());
            break;
        case 2:
            record.tempo = bytes.take<double>();
            record.ppqPos = bytes.next() % 2 ? bytes.take<double>() : bytes.take<int16_t>() / 16.0;
            record.cycleStartPos = bytes.take<int16_t>() / 16.0;
            record.cycleEndPos = bytes.take<int16_t>() / 16.0;
            record.flags = bytes.take<int16_t>();
            break;
        case 3:
        case 4:
            call(effect, bytes);
            break;
        case 5:
            giveDamagedState(effect, bytes);
            break;
        case 6:
            knock(effect, bytes);
            break;
        default:
            play(effect, bytes.take<uint16_t>() % kMostFrames);
            ++blocks;
        }
    }
    effect.dispatcher(&effect, effClose, 0, 0, nullptr, 0);
    return 0;
}
