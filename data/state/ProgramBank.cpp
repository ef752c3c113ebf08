#include "data/state/ProgramBank.h"

#include "data/state/DetachedSong.h"
#include "data/state/StateReader.h"

#include <algorithm>
#include <thread>

namespace ormund {

struct ProgramBank::Program {
    struct Track {
        int tag = -1;
        std::vector<float> values; // row by row, kTrackRows or 1
        int rows = 0;
        int steps = 0;
        float cleared = 0;
        float most = 1;
        float least = 0;
    };
    struct Loop {
        int tag = -1;
        std::array<LoopZone, kTrackRows> zones;
        int handlers = 0;
    };

    explicit Program(DetachedSong& song);
    void apply(StateParts& parts) const;

    std::vector<float> raw; // in the order of the list; tracks' places unused
    std::vector<Track> tracks;
    std::vector<Loop> loops;
    std::array<std::array<float, kPatternValues>, kPatterns> patterns{};
    MidiMap::Lists map;
};

struct ProgramBank::Bank {
    struct Place {
        Chosen chosen;
        std::unique_ptr<Program> program; // null when the file cannot be read
    };
    std::vector<Place> places;
};

ProgramBank::Program::Program(DetachedSong& song)
{
    const auto list = presetParameters();
    raw.resize(list.size());
    for (size_t i = 0; i < list.size(); ++i) {
        const int tag = list[i]->tag;
        if (list[i]->hasValue()) {
            raw[i] = song.parameters.raw(tag);
        } else if (KWZoneHandlerContainer* zones = song.tracks.zonesAt(tag)) {
            Loop loop{tag, {}, std::min(zones->handlers(), kTrackRows)};
            for (int r = 0; r < loop.handlers; ++r)
                loop.zones[static_cast<size_t>(r)] = zones->zone(r);
            loops.push_back(loop);
        } else if (const TrackRow* row = trackRow(tag)) {
            // A file may hold another shape; here it is the instrument's own.
            Track track{tag, {}, row->rows, row->steps, 0, 1, 0};
            const KWTableXY* table = song.tracks.tableAt(tag);
            const StepLine* line = song.tracks.lineAt(tag);
            if (table) {
                track.cleared = table->defaultValue();
                track.most = table->maxValue();
                track.least = table->minValue();
            }
            for (int r = 0; r < row->rows; ++r)
                for (int i2 = 0; i2 < row->steps; ++i2)
                    track.values.push_back(table ? table->getRowAtIndex(r, i2)
                            : line               ? line->stepAt(r, i2)
                                                 : 0.0f);
            tracks.push_back(std::move(track));
        }
    }
    for (int p = 0; p < kPatterns; ++p)
        for (int i = 0; i < kPatternValues; ++i)
            patterns[static_cast<size_t>(p)][static_cast<size_t>(i)] = song.patterns.at(p, i);
    song.midiMap.copyTo(map);
}

void ProgramBank::Program::apply(StateParts& parts) const
{
    const auto list = presetParameters();
    for (size_t i = 0; i < list.size(); ++i)
        if (list[i]->hasValue())
            parts.sink.setParameter(list[i]->tag, raw[i]);
    for (const Track& track : tracks) {
        KWTableXY* table = parts.tracks.tableAt(track.tag);
        StepLine* line = parts.tracks.lineAt(track.tag);
        // The shape is the instrument's own, whose memory was there from the start.
        if (table) {
            table->setRowCount(track.rows);
            table->setRange(track.least, track.most, track.cleared);
        } else if (line) {
            line->resize(track.steps, track.rows);
        }
        size_t at = 0;
        for (int r = 0; r < track.rows; ++r)
            for (int i = 0; i < track.steps; ++i, ++at) {
                if (table)
                    table->setRowValue(r, i, track.values[at]);
                else if (line)
                    line->setStepAt(r, i, track.values[at]);
            }
    }
    for (const Loop& loop : loops)
        if (KWZoneHandlerContainer* zones = parts.tracks.zonesAt(loop.tag)) {
            zones->setHandlers(loop.handlers);
            for (int r = 0; r < loop.handlers; ++r)
                zones->setZone(r, loop.zones[static_cast<size_t>(r)]);
        }
    if (parts.keepMap == 0)
        parts.midiMap.replace(map, true, true, true);
    for (int p = 0; p < kPatterns; ++p)
        for (int i = 0; i < kPatternValues; ++i)
            parts.patterns.setAt(p, i, patterns[static_cast<size_t>(p)][static_cast<size_t>(i)]);
    parts.patterns.replay(parts.sink);
}

ProgramBank::ProgramBank() = default;
ProgramBank::~ProgramBank() = default;

void ProgramBank::rebuild(
    size_t count, const std::function<bool(size_t program, KWChunk& chunk)>& read)
{
    auto bank = std::make_unique<Bank>();
    count = std::min(count, static_cast<size_t>(kPrograms));
    std::unique_ptr<DetachedSong> song;
    for (size_t i = 0; i < count; ++i) {
        Bank::Place place{{i, {}, {}}, nullptr};
        KWChunk chunk;
        if (read(i, chunk)) {
            if (!song)
                song = std::make_unique<DetachedSong>();
            std::string& synthName = song->position.names[static_cast<size_t>(PresetKind::Synth)];
            synthName.clear();
            if (StateReader(song->parts).load(chunk, {}) == LoadResult::Done) {
                place.program = std::make_unique<Program>(*song);
                place.chosen.synthName = synthName;
                place.chosen.kept = song->parts.kept[static_cast<size_t>(PresetKind::Global)];
            }
        }
        bank->places.push_back(std::move(place));
    }
    current = bank.get();
    // The audio thread shows itself before it takes the pointer: what it may still hold stays.
    while (inUse.isRaised())
        std::this_thread::yield();
    owned = std::move(bank);
}

std::optional<ProgramBank::Chosen> ProgramBank::takeChosen()
{
    const int32_t program = chosen.take();
    if (!owned || program < 0 || static_cast<size_t>(program) >= owned->places.size())
        return {};
    return owned->places[static_cast<size_t>(program)].chosen;
}

int ProgramBank::size() const { return owned ? static_cast<int>(owned->places.size()) : 0; }

bool ProgramBank::apply(int program, StateParts& parts)
{
    const FlagScope used(inUse);
    const Bank* bank = current.load();
    if (!bank || program < 0 || static_cast<size_t>(program) >= bank->places.size())
        return false;
    const Program* state = bank->places[static_cast<size_t>(program)].program.get();
    if (!state)
        return false;
    {
        const LoadMark mark(parts.interlock);
        state->apply(parts);
    }
    chosen.post(program);
    parts.interlock.stateLoaded(PresetKind::Global);
    return true;
}

} // namespace ormund
