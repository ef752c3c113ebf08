#include "data/music/MidiFile.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {

// Positions beyond this are no music: 2^28 ticks are years even at a fine resolution.
constexpr uint64_t kMaxTick = 1u << 28;
constexpr double kMicrosecondsPerMinute = 60e6;

// Takes bytes off the front; after a short read everything is 0 and `failed` stays set.
class ByteReader {
public:
    explicit ByteReader(std::span<const uint8_t> bytes) : rest(bytes) { }
    bool failed() const { return bad; }
    bool atEnd() const { return rest.empty() || bad; }
    size_t left() const { return rest.size(); }

    uint8_t peek() const { return rest.empty() ? 0 : rest.front(); }
    std::span<const uint8_t> take(size_t count)
    {
        if (count > rest.size()) {
            bad = true;
            rest = {};
            return {};
        }
        const auto taken = rest.first(count);
        rest = rest.subspan(count);
        return taken;
    }
    uint32_t bigEndian(size_t count)
    {
        uint32_t value = 0;
        for (const uint8_t byte : take(count))
            value = value << 8 | byte;
        return value;
    }
    uint32_t variable()
    {
        uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const uint32_t byte = bigEndian(1);
            value = value << 7 | (byte & 0x7f);
            if ((byte & 0x80) == 0)
                return value;
        }
        bad = true;
        return 0;
    }

private:
    std::span<const uint8_t> rest;
    bool bad = false;
};

int dataBytesOf(uint8_t status)
{
    const int kind = status & 0xf0;
    return kind == 0xc0 || kind == 0xd0 ? 1 : 2;
}

constexpr uint32_t tag(char a, char b, char c, char d)
{
    return static_cast<uint32_t>(a) << 24 | static_cast<uint32_t>(b) << 16
        | static_cast<uint32_t>(c) << 8 | static_cast<uint32_t>(d);
}

void readMeta(ByteReader& reader, uint32_t tick, MidiFile& file, bool& trackEnded)
{
    const auto kind = static_cast<uint8_t>(reader.bigEndian(1));
    const auto content = reader.take(reader.variable());
    if (kind == 0x2f) {
        trackEnded = true;
        file.endTick = std::max(file.endTick, tick);
    } else if (kind == 0x03 && file.name.empty()) {
        file.name.assign(content.begin(), content.end());
    } else if (kind == 0x51 && content.size() == 3) {
        const int microseconds = content[0] << 16 | content[1] << 8 | content[2];
        if (microseconds > 0)
            file.tempos.push_back({tick, kMicrosecondsPerMinute / microseconds});
    } else if (kind == 0x58 && content.size() >= 2 && content[0] > 0 && content[0] <= 32
        && content[1] == 2 && tick == 0) {
        file.beatsPerBar = content[0];
    }
}

bool readTrack(ByteReader reader, MidiFile& file)
{
    uint64_t tick = 0;
    uint8_t running = 0;
    bool ended = false;
    while (!ended && !reader.atEnd()) {
        tick += reader.variable();
        if (tick > kMaxTick || reader.failed() || reader.atEnd())
            return false;
        const auto now = static_cast<uint32_t>(tick);
        if (const uint8_t first = reader.peek(); first >= 0x80) {
            reader.take(1);
            if (first == 0xff) {
                readMeta(reader, now, file, ended);
                continue;
            }
            if (first == 0xf0 || first == 0xf7) {
                reader.take(reader.variable());
                running = 0;
                continue;
            }
            if (first > 0xf0)
                return false; // other system messages have no place in a file
            running = first;
        }
        if (running == 0)
            return false;
        MidiFileEvent event{now, {running, 0, 0}, static_cast<uint8_t>(1 + dataBytesOf(running))};
        for (size_t i = 1; i < event.size; ++i)
            event.bytes[i] = static_cast<uint8_t>(reader.bigEndian(1));
        if (reader.failed() || event.bytes[1] > 127 || event.bytes[2] > 127)
            return false;
        file.events.push_back(event);
    }
    return !reader.failed();
}

MidiFile::ReadResult readAll(std::span<const uint8_t> data, MidiFile& file)
{
    using Result = MidiFile::ReadResult;
    ByteReader reader(data);
    if (reader.bigEndian(4) != tag('M', 'T', 'h', 'd'))
        return Result::NotMidi;
    const auto header = reader.take(reader.bigEndian(4));
    if (header.size() < 6)
        return Result::Damaged;
    const int form = header[0] << 8 | header[1];
    const int division = header[4] << 8 | header[5];
    if (form > 1 || division >= 0x8000)
        return Result::UnsupportedForm;
    if (division == 0)
        return Result::Damaged;
    file.ticksPerBeat = division;
    // The header's count of tracks is a promise; what counts is what is there.
    while (reader.left() >= 8) {
        const uint32_t kind = reader.bigEndian(4);
        const auto content = reader.take(reader.bigEndian(4));
        if (reader.failed())
            return Result::Damaged;
        if (kind == tag('M', 'T', 'r', 'k') && !readTrack(ByteReader(content), file))
            return Result::Damaged;
    }
    const auto earlier = [](const auto& a, const auto& b) { return a.tick < b.tick; };
    std::stable_sort(file.events.begin(), file.events.end(), earlier);
    std::stable_sort(file.tempos.begin(), file.tempos.end(), earlier);
    return Result::Ok;
}

class ByteWriter {
public:
    void bigEndian(uint32_t value, int count)
    {
        for (int i = count - 1; i >= 0; --i)
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    void variable(uint32_t value)
    {
        for (int shift = 21; shift > 0; shift -= 7)
            if (value >> shift)
                bytes.push_back(static_cast<uint8_t>(0x80 | (value >> shift & 0x7f)));
        bytes.push_back(static_cast<uint8_t>(value & 0x7f));
    }
    void meta(uint32_t delta, uint8_t kind, std::span<const uint8_t> content)
    {
        variable(delta);
        bytes.push_back(0xff);
        bytes.push_back(kind);
        variable(static_cast<uint32_t>(content.size()));
        bytes.insert(bytes.end(), content.begin(), content.end());
    }
    std::vector<uint8_t> bytes;
};

} // namespace

MidiFile::ReadResult MidiFile::read(std::span<const uint8_t> data)
{
    *this = {};
    const ReadResult result = readAll(data, *this);
    if (result != ReadResult::Ok)
        *this = {};
    return result;
}

std::string_view MidiFile::messageOf(ReadResult result)
{
    switch (result) {
    case ReadResult::Ok:
        return "read";
    case ReadResult::NotMidi:
        return "is no standard MIDI file";
    case ReadResult::UnsupportedForm:
        return "holds independent songs or counts time code, which is not supported";
    case ReadResult::Damaged:
        return "is damaged";
    }
    return "";
}

std::vector<uint8_t> MidiFile::write() const
{
    ByteWriter track;
    track.meta(0, 0x03, {reinterpret_cast<const uint8_t*>(name.data()), name.size()});
    const uint8_t signature[] = {static_cast<uint8_t>(beatsPerBar), 2, 24, 8};
    track.meta(0, 0x58, signature);

    uint32_t now = 0;
    auto nextTempo = tempos.begin();
    const auto tempoUntil = [&](uint32_t tick) {
        for (; nextTempo != tempos.end() && nextTempo->tick <= tick; ++nextTempo) {
            const double beat = kMicrosecondsPerMinute / std::max(4.0, nextTempo->beatsPerMinute);
            const auto microseconds = static_cast<uint32_t>(std::lround(beat));
            const uint8_t content[] = {static_cast<uint8_t>(microseconds >> 16),
                static_cast<uint8_t>(microseconds >> 8), static_cast<uint8_t>(microseconds)};
            track.meta(nextTempo->tick - now, 0x51, content);
            now = nextTempo->tick;
        }
    };
    for (const MidiFileEvent& event : events) {
        tempoUntil(event.tick);
        track.variable(event.tick - now);
        track.bytes.insert(
            track.bytes.end(), event.bytes.begin(), event.bytes.begin() + event.size);
        now = event.tick;
    }
    tempoUntil(endTick);
    track.meta(std::max(endTick, now) - now, 0x2f, {});

    ByteWriter file;
    file.bigEndian(tag('M', 'T', 'h', 'd'), 4);
    file.bigEndian(6, 4);
    file.bigEndian(0, 2); // type 0
    file.bigEndian(1, 2); // one track
    file.bigEndian(static_cast<uint32_t>(ticksPerBeat), 2);
    file.bigEndian(tag('M', 'T', 'r', 'k'), 4);
    file.bigEndian(static_cast<uint32_t>(track.bytes.size()), 4);
    file.bytes.insert(file.bytes.end(), track.bytes.begin(), track.bytes.end());
    return file.bytes;
}

uint32_t MidiFile::tickOf(double beat) const
{
    const double tick = std::round(beat * ticksPerBeat);
    return static_cast<uint32_t>(std::clamp(tick, 0.0, static_cast<double>(kMaxTick)));
}

double MidiFile::tempoAt(double beat) const
{
    double tempo = 120.0;
    for (const MidiFileTempo& change : tempos) {
        if (beatOf(change.tick) > beat + 1e-9)
            break;
        tempo = change.beatsPerMinute;
    }
    return tempo;
}

uint32_t MidiFile::lastTick() const
{
    return std::max(endTick, events.empty() ? 0 : events.back().tick);
}

} // namespace ormund
