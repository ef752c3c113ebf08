// A host that has lost its mind: MIDI bytes, parameters of any value, opcodes, states and blocks of
// any size, all through the C interface. Sound stays finite and bounded.
#include "engine/KWUniClient.h"
#include "platform/Messages.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

constexpr int kMostFrames = 512;

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

void play(KWUniClient& engine, int frames)
{
    static float left[kMostFrames];
    static float right[kMostFrames];
    float* outputs[] = {left, right};
    engine.processReplacing(nullptr, outputs, frames);
    for (int i = 0; i < frames; ++i)
        if (!std::isfinite(left[i]) || std::abs(left[i]) > 64.0f || !std::isfinite(right[i]))
            std::abort();
    record.ppqPos += frames * record.tempo / (60.0 * 44100.0);
}

void send(KWUniClient& engine, Bytes& bytes)
{
    VstMidiEvent event{};
    event.type = kVstMidiType;
    event.byteSize = sizeof event;
    event.deltaFrames = bytes.take<int16_t>();
    for (int i = 0; i < 3; ++i)
        event.midiData[i] = bytes.next();
    VstEvents list{};
    list.numEvents = 1;
    list.events[0] = reinterpret_cast<VstEvent*>(&event);
    engine.processEvents(&list);
}

// The script door's files, windows and the closing of the effect are left out.
bool isHarmless(VstInt32 opcode)
{
    return opcode != effClose && opcode != effVendorSpecific && opcode != effEditOpen
        && opcode != effGetChunk && opcode != effSetChunk && opcode != effProcessEvents;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Bytes bytes(data, size);
    const auto engine = std::make_unique<KWUniClient>(host);
    record = {};
    record.tempo = 120;
    record.flags = kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid;
    int blocks = 0;
    while (!bytes.isEmpty() && blocks < 64) {
        switch (bytes.next() % 7) {
        case 0:
            send(*engine, bytes);
            break;
        case 1:
            engine->setParameter(bytes.take<int16_t>() % 640, bytes.take<float>());
            break;
        case 2:
            record.tempo = static_cast<double>(bytes.take<float>());
            record.ppqPos = static_cast<double>(bytes.take<int16_t>()) / 16.0;
            record.flags = bytes.take<int16_t>();
            if (!std::isfinite(record.tempo) || std::abs(record.tempo) > 1e6)
                record.tempo = 120;
            break;
        case 3: {
            static char room[65536];
            const auto opcode = static_cast<VstInt32>(bytes.next());
            const auto index = static_cast<VstInt32>(bytes.take<int16_t>());
            const auto value = static_cast<VstIntPtr>(bytes.take<int16_t>());
            if (isHarmless(opcode))
                engine->dispatcher(opcode, index, value, room, bytes.take<float>());
            break;
        }
        case 4: {
            void* state = nullptr;
            const VstInt32 count = engine->getChunk(&state, false);
            std::vector<char> copy(static_cast<char*>(state), static_cast<char*>(state) + count);
            copy[bytes.take<uint16_t>() % copy.size()] = static_cast<char>(bytes.next());
            engine->setChunk(copy.data(), count, false);
            forgetMessage();
            break;
        }
        default:
            play(*engine, bytes.take<uint16_t>() % kMostFrames);
            ++blocks;
        }
    }
    return 0;
}
