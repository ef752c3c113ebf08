#include "apps/ormund-tables/FormatTables.h"

#include "data/library/Settings.h"
#include "data/library/StateDescription.h"
#include "data/state/StateWriter.h"
#include "platform/KWFileio.h"
#include "presets/BankSource.h"

#include <bit>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace ormund {

namespace {

constexpr size_t kMostWordsShown = 4;

const char* blockText(const ParameterEntry& entry)
{
    switch (entry.backing) {
    case Backing::TableXY:
        return "table block";
    case Backing::BtnLine:
        return "line block, switches";
    case Backing::ListLine:
        return "line block, list";
    case Backing::Zones:
        return "loop block";
    case Backing::Value:
        break;
    }
    return "raw value";
}

std::string bytesOf(const std::vector<uint32_t>& words, const WordNote& note)
{
    std::string text;
    for (size_t i = 0; i < std::min(note.count, kMostWordsShown); ++i) {
        char word[16];
        const uint32_t w = words[note.word + i];
        std::snprintf(word, sizeof word, "%s%02x %02x %02x %02x", i == 0 ? "" : "  ", w & 0xFF,
            w >> 8 & 0xFF, w >> 16 & 0xFF, w >> 24);
        text += word;
    }
    return note.count > kMostWordsShown ? text + "  .." : text;
}

std::string valueOf(const std::vector<uint32_t>& words, const WordNote& note)
{
    char text[64];
    const uint32_t word = words[note.word];
    if (note.type == "i")
        std::snprintf(text, sizeof text, "%d", static_cast<int32_t>(word));
    else if (note.type == "f")
        std::snprintf(text, sizeof text, "%.6g%s", static_cast<double>(std::bit_cast<float>(word)),
            note.count > 1 ? " .." : "");
    else {
        std::string quoted(1, '"');
        quoted.append(reinterpret_cast<const char*>(&words[note.word + 1]), word);
        quoted.push_back('"');
        return quoted;
    }
    return text;
}

std::vector<uint32_t> built(const std::string& presets, const std::string& source, PresetKind kind)
{
    const auto song = std::make_unique<DetachedSong>();
    const char* folder = kind == PresetKind::Global ? "global/" : "synth/";
    std::string error;
    if (!readBankSource(presets + "/" + folder + source + ".txt", presets, *song, error))
        throw std::runtime_error(error);
    song->position.names[static_cast<size_t>(kind)] = KWFileio::nameOf(source);
    if (kind == PresetKind::Global)
        song->midiMap.addAssignment(74, Tag::FilterCutoff, 0);
    KWChunk chunk;
    writeState(chunk, song->parts, kind);
    return {chunk.words().begin(), chunk.words().end()};
}

class WalkTable {
public:
    WalkTable(const std::vector<uint32_t>& fileWords, const std::string& extension)
        : words(fileWords), description(words, extension)
    {
        if (description.isBroken())
            throw std::runtime_error("the walked file is broken");
    }
    void head() { text += "| byte | word | bytes | value | meaning |\n|---:|---:|---|---|---|\n"; }
    void show(size_t from, size_t count)
    {
        for (size_t i = from; i < std::min(from + count, description.notes().size()); ++i) {
            const WordNote& note = description.notes()[i];
            text += "| " + std::to_string(note.word * 4) + " | " + std::to_string(note.word)
                + " | `" + bytesOf(words, note) + "` | " + valueOf(words, note) + " | "
                + note.meaning + " |\n";
        }
    }
    void gap() { text += "| .. | .. | .. | .. | .. |\n"; }
    size_t find(const std::string& meaning, size_t from = 0) const
    {
        for (size_t i = from; i < description.notes().size(); ++i)
            if (description.notes()[i].meaning.find(meaning) != std::string::npos)
                return i;
        throw std::runtime_error("the walk has no " + meaning);
    }
    size_t size() const { return description.notes().size(); }
    std::string text;

private:
    std::vector<uint32_t> words;
    StateDescription description;
};

} // namespace

std::string fileKeyTable()
{
    std::string text =
        "| key | tag | name | holds | in | default |\n|---:|---:|---|---|---|---:|\n";
    for (int key = 0; key <= 1000; ++key) {
        const ParameterEntry* entry = parameterOfKey(key);
        if (!entry)
            continue;
        char start[32] = "";
        if (entry->backing != Backing::Zones)
            std::snprintf(start, sizeof start, "%.6g", static_cast<double>(entry->defaultRaw));
        text += "| " + std::to_string(key) + " | " + std::to_string(entry->tag) + " | `"
            + std::string(entry->name) + "` | " + blockText(*entry) + " | "
            + savedText(entry->saved) + " | " + start + " |\n";
    }
    return text;
}

std::string settingTable()
{
    std::string text = "| key | type | at first | meaning |\n|---|---|---|---|\n";
    for (const SettingKey& key : settingKeys())
        text += std::string("| `") + key.key + "` | " + key.type + " | " + key.start + " | "
            + key.meaning + " |\n";
    return text;
}

std::string synthWalk(const std::string& presets, const std::string& source)
{
    WalkTable walk(built(presets, source, PresetKind::Synth), "kws");
    walk.head();
    walk.show(0, 9 + 6); // the head and two records
    walk.gap();
    const size_t end = walk.find("end of the records", 15);
    walk.show(end - 3, 8);
    walk.gap();
    walk.show(walk.size() - 2, 2);
    return walk.text;
}

std::string globalWalk(const std::string& presets, const std::string& source)
{
    WalkTable walk(built(presets, source, PresetKind::Global), "kwe");
    walk.head();
    walk.show(0, 12);
    struct Block {
        const char* begin;
        size_t words;
    };
    for (const Block& block : {Block{"magic number of a table", 10}, {"magic number of loops", 13},
             {"magic number of a line", 10}}) {
        walk.gap();
        walk.show(walk.find(block.begin) - 2, block.words);
    }
    walk.gap();
    walk.show(walk.find("end of the records"), 1);
    const size_t names = walk.find("number of names");
    walk.show(names - 5, 15);
    walk.gap();
    walk.show(walk.size() - 2, 2);
    return walk.text;
}

} // namespace ormund
