#include "apps/ormund/LiveHost.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr uint8_t kNoteOff = 0x80;
constexpr uint8_t kNoteOn = 0x90;
constexpr uint8_t kProgram = 0xC0;
constexpr uint8_t kPressure = 0xD0;

int sizeOf(uint8_t status)
{
    const int kind = status & 0xF0;
    return kind == kProgram || kind == kPressure ? 2 : 3;
}
} // namespace

double foldIntoCycle(double beat, double start, double end)
{
    if (!(end > start) || beat < end)
        return beat;
    return start + std::fmod(beat - start, end - start);
}

bool LiveHost::start(Entry entry, double tempo)
{
    wantedTempo = std::clamp(tempo, kLowestTempo, kHighestTempo);
    shownTempo = wantedTempo;
    transport.setUp(static_cast<double>(rate), wantedTempo, kBeatsPerBar);
    songSync.setSampleRate(static_cast<double>(rate));
    return open(entry, rate, block);
}

void LiveHost::setFormat(float sampleRate, int largestBlock)
{
    block = largestBlock;
    dispatch(effSetBlockSize, 0, block);
    if (sampleRate == rate)
        return;
    transport.setSampleRate(static_cast<double>(sampleRate));
    songSync.setSampleRate(static_cast<double>(sampleRate));
    changeSampleRate(sampleRate);
}

void LiveHost::setTempo(double beatsPerMinute)
{
    commands.push({Command::Tempo, std::clamp(beatsPerMinute, kLowestTempo, kHighestTempo), 0});
}

void LiveHost::setCycle(double startBeat, double endBeat)
{
    commands.push({Command::Cycle, startBeat, endBeat});
}

void LiveHost::send(const uint8_t* bytes, size_t size, int frame)
{
    constexpr uint8_t kFirstStatus = 0x80;
    constexpr uint8_t kFirstSystem = 0xF0;
    if (size >= 1 && bytes[0] >= kFirstSystem)
        songSync.hear(bytes, size, frame);
    if (size < 2 || size > 3 || bytes[0] < kFirstStatus || bytes[0] >= kFirstSystem)
        return;
    incoming.add({bytes[0], bytes[1], size > 2 ? bytes[2] : uint8_t{0}}, frame);
}

void LiveHost::takeCommands()
{
    Command command;
    while (commands.take(command)) {
        switch (command.kind) {
        case Command::Play:
            transport.start();
            songSync.play(true);
            break;
        case Command::Stop:
            transport.stop();
            songSync.play(false);
            break;
        case Command::Locate:
            transport.locate(command.first);
            songSync.locate(command.first);
            break;
        case Command::Tempo:
            wantedTempo = command.first;
            break;
        case Command::Cycle:
            cycleStart = command.first;
            cycleEnd = command.second;
            break;
        }
    }
}

void LiveHost::follow(const SharedPlace& place)
{
    if (place.playing)
        transport.start();
    else
        transport.stop();
    transport.setTempo(place.tempo);
    transport.locate(foldIntoCycle(place.beat, cycleStart, cycleEnd));
}

void LiveHost::run(float* left, float* right, int frames, MidiOut& out, const SharedPlace* place)
{
    takeCommands();
    const double tempoBefore = transport.time.tempo;
    transport.setTempo(wantedTempo);
    if (cycleEnd > cycleStart)
        transport.setCycle(cycleStart, cycleEnd);
    else
        transport.clearCycle();
    const SharedPlace current{transport.isPlaying(), transport.position(), tempoBefore};
    if (const SharedPlace* led = songSync.lead(current, place, frames))
        follow(*led);
    else if (songSync.takeHandedBack())
        transport.setTempo(wantedTempo = current.tempo);

    transport.beginBlock();
    shownBeat = transport.position();
    shownTempo = transport.time.tempo;
    shownPlaying = transport.isPlaying() ? 1 : 0;
    if (ending != 0) {
        stopNotes(out);
        std::fill_n(left, frames, 0.0f);
        std::fill_n(right, frames, 0.0f);
        ended = 1;
        return;
    }
    if (VstEvents* list = incoming.list())
        dispatch(effProcessEvents, 0, 0, list);
    incoming.clear();
    float* inputs[2] = {nullptr, nullptr}; // an instrument reads none
    float* outputs[2] = {left, right};
    sink = &out;
    clocks = songSync.clocks({transport.isPlaying(), transport.position(), transport.time.tempo},
        transport.beatsPerFrame(), frames);
    effect()->processReplacing(effect(), inputs, outputs, frames);
    passClocks(frames);
    sink = nullptr;
    transport.endBlock(frames);
    shownBlocks.add(1);
}

void LiveHost::pass(const VstEvents& list)
{
    for (VstInt32 i = 0; i < list.numEvents; ++i) {
        const VstEvent* event = eventAt(list, i);
        if (!event || event->type != kVstMidiType)
            continue;
        const auto& midi = *reinterpret_cast<const VstMidiEvent*>(event);
        Message message;
        std::copy_n(midi.midiData, message.bytes.size(), message.bytes.begin());
        message.size = sizeOf(message.bytes[0]);
        noteSounding(message);
        passClocks(event->deltaFrames);
        sink->midiOut(event->deltaFrames, message);
    }
}

// A clock goes before what the plug-in plays at it.
void LiveHost::passClocks(int lastFrame)
{
    for (; !clocks.empty() && clocks.front().frame <= lastFrame; clocks = clocks.subspan(1))
        sink->midiOut(clocks.front().frame, {clocks.front().bytes, clocks.front().size});
}

void LiveHost::noteSounding(const Message& message)
{
    const auto& bytes = message.bytes;
    const int kind = bytes[0] & 0xF0;
    uint8_t& count = sounding[static_cast<size_t>((bytes[0] & 0x0F) * 128 + (bytes[1] & 0x7F))];
    if (kind == kNoteOn && bytes[2] > 0)
        ++count;
    else if ((kind == kNoteOn || kind == kNoteOff) && count > 0)
        --count;
}

void LiveHost::stopNotes(MidiOut& out)
{
    for (size_t place = 0; place < sounding.size(); ++place)
        for (; sounding[place] > 0; --sounding[place])
            out.midiOut(0,
                {{static_cast<uint8_t>(kNoteOff | place / 128), static_cast<uint8_t>(place % 128),
                     0},
                    3});
}

VstIntPtr LiveHost::answer(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    switch (opcode) {
    case audioMasterGetTime:
        return reinterpret_cast<VstIntPtr>(&transport.time);
    case audioMasterProcessEvents:
        if (ptr && sink)
            pass(*static_cast<const VstEvents*>(ptr));
        return 1;
    case audioMasterSizeWindow:
        if (!sizeWindow)
            return 0;
        sizeWindow(index, static_cast<int>(value));
        return 1;
    default:
        return HostedEffect::answer(opcode, index, value, ptr, opt);
    }
}

} // namespace ormund
