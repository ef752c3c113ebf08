#include "data/library/PresetAbout.h"

#include "data/library/ChunkFile.h"
#include "data/parameters/Parameters.h"
#include "data/parameters/Tags.h"
#include "data/state/ChunkFormat.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace ormund {

namespace {

struct TextRow {
    int32_t key;
    std::string PresetAbout::*text;
    size_t most; // bytes
};
constexpr TextRow kAboutTexts[] = {
    {kAuthorKey, &PresetAbout::author, 100},
    {kTagsKey, &PresetAbout::tags, 400},
    {kDescriptionKey, &PresetAbout::description, 1000},
};
constexpr float kLowestTempo = 20;
constexpr float kHighestTempo = 999;
constexpr int kWordsBeforeSteps = 5; // of a table's block

// A text of a file is bytes of anybody's: one line, cut between characters.
std::string cleaned(std::string text, size_t most)
{
    if (text.size() > most) {
        while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80)
            --most;
        text.resize(most);
    }
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = ' ';
    return text;
}

// The first record of a key counts.
void take(PresetAbout& about, int32_t key, KWChunk& words)
{
    for (const TextRow& row : kAboutTexts)
        if (row.key == key && (about.*row.text).empty())
            about.*row.text = cleaned(words.readString(), row.most);
    if (key == kTempoKey && about.tempo == 0) {
        const float tempo = words.readFloat();
        about.tempo = tempo >= kLowestTempo && tempo <= kHighestTempo ? tempo : 0;
    }
}

std::vector<uint32_t> wordsOf(const std::string& text)
{
    KWChunk chunk;
    chunk.beginMeasure();
    chunk.writeString(text);
    chunk.beginFill();
    chunk.writeString(text);
    return {chunk.words().begin(), chunk.words().end()};
}

// Steps of the first pattern's row, at their scale.
void readSteps(KWChunk& chunk, std::array<float, PresetSummary::kSketchSteps>& steps)
{
    if (chunk.readInt() != kTableMagic)
        return;
    chunk.skipWords(kWordsBeforeSteps - 1);
    const int32_t count = chunk.readInt();
    chunk.readInt(); // rows
    for (size_t i = 0; i < steps.size() && static_cast<int32_t>(i) < count; ++i)
        steps[i] = chunk.readFloat();
}

} // namespace

const char* aboutName(int32_t key)
{
    switch (key) {
    case kAuthorKey:
        return "author";
    case kTagsKey:
        return "tags";
    case kDescriptionKey:
        return "description";
    case kTempoKey:
        return "tempo of the preset";
    default:
        return nullptr;
    }
}

PresetAbout aboutOf(const KeptRecords& kept)
{
    PresetAbout about;
    for (const KeptRecords::Record& record : kept.all()) {
        if (!aboutName(record.key))
            continue;
        KWChunk words;
        words.assign(record.words);
        take(about, record.key, words);
    }
    return about;
}

bool setAbout(KeptRecords& kept, const PresetAbout& about)
{
    KeptRecords wanted;
    bool isRoom = true;
    for (const TextRow& row : kAboutTexts)
        if (const std::string text = cleaned(about.*row.text, row.most); !text.empty())
            isRoom = isRoom && wanted.add(row.key, wordsOf(text));
    if (about.tempo > 0)
        isRoom = isRoom && wanted.add(kTempoKey, {std::bit_cast<uint32_t>(about.tempo)});
    for (const KeptRecords::Record& record : kept.all())
        if (!aboutName(record.key))
            isRoom = isRoom && wanted.add(record.key, record.words);
    if (isRoom)
        kept = std::move(wanted);
    return isRoom;
}

PresetSummary summaryOf(KWChunk& chunk)
{
    PresetSummary summary;
    if (!chunk.readHeader())
        return summary;
    chunk.readInt(); // length of the header
    if (chunk.readInt() != kChunkKind || chunk.readInt() < 2 || chunk.readInt() != kFormatMagic)
        return summary;
    std::array<float, PresetSummary::kSketchSteps> velocity{};
    while (!chunk.isBroken()) {
        const int32_t key = chunk.readInt();
        if (key == kEndOfRecords)
            break;
        const int32_t size = chunk.readInt();
        if (size < 0 || static_cast<size_t>(size) > chunk.remaining())
            return summary;
        const ChunkLimit record(chunk, static_cast<size_t>(size));
        if (key == parameterEntry(Tag::Pitch)->fileKey)
            readSteps(chunk, summary.sketch);
        else if (key == parameterEntry(Tag::Velocity)->fileKey)
            readSteps(chunk, velocity);
        else
            take(summary.about, key, chunk);
    }
    summary.isReadable = !chunk.isBroken();
    const auto [least, most] = std::minmax_element(summary.sketch.begin(), summary.sketch.end());
    const float lowest = *least;
    const float span = std::max(*most - lowest, 1.0f);
    for (size_t i = 0; i < velocity.size(); ++i) {
        const float height = (summary.sketch[i] - lowest) / span;
        summary.sketch[i] = velocity[i] > 0 && std::isfinite(height) ? height : -1;
    }
    return summary;
}

PresetSummary summaryOfFile(const std::string& path)
{
    KWChunk chunk;
    if (readChunkFile(path, chunk, LoadResult::NewerVersion) != LoadResult::Done)
        return {};
    chunk.setCursor(0);
    return summaryOf(chunk);
}

} // namespace ormund
