#include "data/library/StateDescription.h"

#include "data/library/PresetAbout.h"
#include "data/state/ChunkFormat.h"
#include "data/state/DetachedSong.h"
#include "data/state/KWChunk.h"
#include "data/state/StateReader.h"
#include "platform/KWFileio.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <nlohmann/json.hpp>

namespace ormund {

using Json = nlohmann::ordered_json;

namespace {

constexpr char kWordsEnd[] = "the words end here";
constexpr char kNoFile[] = "the magic number is another";

// JSON has no word for what is no number.
Json number(float value) { return std::isfinite(value) ? Json(value) : Json("no number"); }

// Texts of files are bytes of anybody's.
std::string printable(std::string text)
{
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) == 0x7F)
            c = '?';
    return text;
}

std::string dump(const Json& json, int indent)
{
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::string scalar(const Json& json)
{
    if (json.is_number_float()) {
        char text[32];
        std::snprintf(text, sizeof text, "%g", json.get<double>());
        return text;
    }
    return json.is_string() ? json.get<std::string>() : dump(json, -1);
}

// What is plain in an object makes one line, "name=value" each; its lists follow below it.
void writeFields(const Json& object, std::string& line)
{
    for (const auto& [key, value] : object.items())
        if (!value.is_array())
            line.append(line.empty() ? "" : " ").append(key).append("=").append(scalar(value));
}

void writeText(const Json& object, std::string& text, const std::string& indent)
{
    for (const auto& [key, value] : object.items()) {
        if (!value.is_array()) {
            std::string line;
            if (value.is_object())
                writeFields(value, line);
            text.append(indent).append(key).append(": ");
            text.append(value.is_object() ? line : scalar(value)).append("\n");
            continue;
        }
        text.append(indent).append(key).append(value.empty() ? ": none\n" : ":\n");
        for (const Json& item : value) {
            std::string line;
            if (item.is_object())
                writeFields(item, line);
            else if (item.is_array())
                for (const Json& number : item)
                    line.append(line.empty() ? "" : " ").append(scalar(number));
            else
                line = scalar(item);
            text.append(indent).append("  ").append(line).append("\n");
            if (!item.is_object())
                continue;
            for (const auto& [inner, list] : item.items())
                if (list.is_array() && !list.empty())
                    writeText(Json{{inner, list}}, text, indent + "    ");
        }
    }
}

struct Stop {
    std::string reason;
};

} // namespace

class StateDescription::Walk {
public:
    Walk(const std::vector<uint32_t>& file, StateDescription& description)
        : out(description), json(*description.root)
    {
        chunk.assign(file);
    }

    void run(const std::string& extension)
    {
        const size_t present = chunk.words().size();
        header();
        const int32_t fifth = integer("length of the header; in a kwm the revision");
        if (extension == "kwm" || (fifth != kHeaderWords && peek() == kFormatMagic)) {
            json["kind"] = "controllers (kwm)";
            json["revision"] = fifth;
            integer("second magic number");
            controllers(fifth);
        } else {
            state(extension);
        }
        if (static_cast<size_t>(total) > present)
            throw Stop{"the header promises " + std::to_string(total) + " words, there are "
                + std::to_string(present)};
    }

    KWChunk chunk;

private:
    int32_t peek()
    {
        if (chunk.remaining() == 0)
            return 0;
        const int32_t value = chunk.readInt();
        chunk.unread();
        return value;
    }
    void note(size_t word, std::string type, std::string meaning)
    {
        if (chunk.isBroken())
            throw Stop{kWordsEnd};
        out.words.push_back({word, chunk.cursor() - word, std::move(type), std::move(meaning)});
    }
    int32_t integer(std::string meaning)
    {
        const size_t word = chunk.cursor();
        const int32_t value = chunk.readInt();
        note(word, "i", std::move(meaning));
        return value;
    }
    float real(std::string meaning)
    {
        const size_t word = chunk.cursor();
        const float value = chunk.readFloat();
        note(word, "f", std::move(meaning));
        return value;
    }
    std::string string(std::string meaning)
    {
        const size_t word = chunk.cursor();
        std::string value = chunk.readString();
        note(word, "s", std::move(meaning));
        return printable(std::move(value));
    }
    // Adds the values one by one, so that a cut row is shown as far as it goes.
    void reals(Json& values, int count, std::string meaning)
    {
        const size_t word = chunk.cursor();
        const auto present = std::min(static_cast<size_t>(count), chunk.remaining());
        for (size_t i = 0; i < present; ++i)
            values.push_back(number(chunk.readFloat()));
        if (present > 0)
            note(word, "f", std::move(meaning));
        if (present < static_cast<size_t>(count)) {
            chunk.failAt(chunk.cursor());
            throw Stop{kWordsEnd};
        }
    }
    [[noreturn]] void fail(const char* why)
    {
        chunk.fail();
        throw Stop{why};
    }

    void header()
    {
        total = integer("number of words");
        Json& head = json["header"];
        head["words"] = total;
        head["version"] = integer("version of the program that wrote it");
        head["tempo"] = number(real("tempo, beats per minute"));
        head["sample rate"] = number(real("sample rate, Hz"));
        if (integer("magic number") != kChunkMagic)
            fail(kNoFile);
        if (total < kHeaderWords)
            fail("the number of words is too small");
    }

    // A preset of either kind says the same in its head; only the rest differs.
    bool isGlobal(const std::string& extension)
    {
        DetachedSong song;
        KWChunk copy;
        copy.assign({chunk.words().begin(), chunk.words().end()});
        StateReader::Options options;
        for (const PresetKind kind : {PresetKind::Global, PresetKind::Synth}) {
            options.kind = kind;
            if (StateReader(song.parts).check(copy, options) == LoadResult::Done)
                return kind == PresetKind::Global;
        }
        return extension != "kws";
    }

    void state(const std::string& extension)
    {
        const bool global = isGlobal(extension);
        json["kind"] = global ? "global preset (kwe)" : "synth preset (kws)";
        if (integer("kind of chunk") != kChunkKind)
            fail("the kind of chunk is another");
        revision = integer("revision of the format");
        json["revision"] = revision;
        if (revision < 1)
            fail("the revision is below 1");
        if (revision > 1 && integer("second magic number") != kFormatMagic)
            fail("the second magic number is another");
        records();
        if (global)
            map();
        names(global);
        tail(global);
    }

    void records()
    {
        Json& parameters = json["parameters"] = Json::array();
        for (;;) {
            const int32_t key = integer("file key, or the end of the records");
            if (key == kEndOfRecords)
                return;
            const ParameterEntry* entry = parameterOfKey(key);
            const char* name = entry ? entry->name.data() : aboutName(key);
            out.words.back().meaning =
                "file key " + (name ? std::to_string(key) + ", " + name : std::string("unknown"));
            const int32_t size = integer("words of the record");
            // A file that was cut is shown up to the cut; in a whole one this number is wrong.
            const bool isCut = static_cast<size_t>(total) > chunk.words().size();
            const bool isLonger = size < 0 || static_cast<size_t>(size) > chunk.remaining();
            if (isLonger && (size < 0 || !isCut))
                fail("a record is longer than the file");
            if (isLonger) {
                record(parameters, key, entry, size);
                chunk.failAt(chunk.words().size());
                throw Stop{kWordsEnd};
            }
            const ChunkLimit limit(chunk, static_cast<size_t>(size));
            record(parameters, key, entry, size);
        }
    }

    void record(Json& parameters, int32_t key, const ParameterEntry* entry, int32_t size)
    {
        Json& entryJson = parameters.emplace_back(Json::object());
        entryJson["key"] = key;
        if (const char* name = aboutName(key)) {
            entryJson["name"] = name;
            entryJson["value"] = key == kTempoKey ? number(real(name)) : Json(string(name));
            return;
        }
        if (!entry) {
            entryJson["words"] = size;
            entryJson["unknown"] = true;
            return;
        }
        entryJson["tag"] = entry->tag;
        entryJson["name"] = entry->name;
        if (const TrackRow* track = trackRow(entry->tag))
            entryJson["what"] = track->word;
        if (entry->hasValue()) {
            if (size > 0) {
                const float raw = real("raw value");
                entryJson["raw"] = number(raw);
                std::array<char, 64> text{};
                parameterText(entry->tag, sanitisedRaw(raw), text);
                entryJson["shown as"] = printable(text.data());
            }
        } else if (entry->backing == Backing::TableXY) {
            table(entryJson, size);
        } else if (entry->backing == Backing::Zones) {
            zones(entryJson);
        } else {
            line(entryJson);
        }
    }

    void rows(Json& entryJson, int rowCount, int steps)
    {
        if (rowCount < 1 || rowCount > kMaxFileRows || steps < 1 || steps > kMaxFileSteps)
            fail("a track has no such size");
        Json& all = entryJson["rows"] = Json::array();
        for (int r = 0; r < rowCount; ++r)
            reals(all.emplace_back(Json::array()), steps,
                "row " + std::to_string(r) + ", a value a step");
    }

    void table(Json& entryJson, int32_t size)
    {
        if (peek() != kTableMagic) {
            entryJson["older form, words"] = size;
            return;
        }
        integer("magic number of a table");
        const int32_t tableRevision = integer("revision of the table");
        entryJson["revision"] = tableRevision;
        entryJson["default"] = number(real("default of a step"));
        entryJson["most"] = number(real("greatest value"));
        entryJson["least"] = number(real("smallest value"));
        const int32_t steps = integer("steps");
        rows(entryJson, integer("rows"), steps);
        if (tableRevision >= kTableWithLabel)
            entryJson["label"] = string("label");
    }

    void line(Json& entryJson)
    {
        integer("magic number of a line");
        integer("revision of the line");
        const int32_t rowCount = integer("rows");
        const int32_t steps = integer("steps");
        integer("selected row");
        entryJson["range"] = integer("range");
        rows(entryJson, rowCount, steps);
    }

    void zones(Json& entryJson)
    {
        integer("magic number of loops");
        integer("revision of the loops");
        const int32_t handlers = integer("handlers, one a row");
        integer("not used");
        if (handlers < 1 || handlers > kMaxFileHandlers)
            fail("there are no so many loops");
        Json& loops = entryJson["loops"] = Json::array();
        for (int r = 0; r < handlers; ++r) {
            if (integer("a handler follows") > 0
                && integer("magic number of a handler") != kZoneHandlerMagic)
                fail("the magic number of a loop is another");
            const int32_t count = integer("zones");
            if (count < 0 || count > kMaxFileZones)
                fail("a loop has no so many zones");
            for (int z = 0; z < count; ++z) {
                integer("identifier");
                integer("not used");
                const int32_t start = integer("first step");
                loops.push_back(
                    std::to_string(start) + ".." + std::to_string(integer("last step")));
            }
        }
    }

    Json assignment(bool pairs)
    {
        Json entry;
        const auto tag = static_cast<int16_t>(integer("tag"));
        entry["tag"] = tag;
        if (const ParameterEntry* known = parameterEntry(tag))
            entry["name"] = known->name;
        entry["step"] = pairs ? integer("step") : 0;
        return entry;
    }

    void map()
    {
        Json& controllerEntries = json["controllers"] = Json::array();
        for (;;) {
            const int32_t controller = integer("controller, or the end of the map");
            if (controller == kEndOfMap)
                return;
            if (controller < 0 || controller >= MidiMap::kControllers)
                fail("there is no such controller");
            Json entryJson;
            entryJson["controller"] = controller;
            Json& moves = entryJson["moves"] = Json::array();
            while (peek() != kEndOfController)
                moves.push_back(assignment(revision >= kWordPairRevision));
            integer("end of the controller");
            controllerEntries.push_back(std::move(entryJson));
        }
    }

    void controllers(int32_t mapRevision)
    {
        Json& entryJson = json["controllers"] = Json::array();
        for (int controller = 0; controller < MidiMap::kControllers; ++controller) {
            const int32_t count =
                integer("assignments of controller " + std::to_string(controller));
            if (count < 0 || static_cast<size_t>(count) > chunk.remaining())
                fail("a count says more than there is");
            if (count == 0)
                continue;
            Json entry;
            entry["controller"] = controller;
            Json& moves = entry["moves"] = Json::array();
            for (int32_t i = 0; i < count; ++i)
                moves.push_back(assignment(mapRevision >= kMapRevision));
            entryJson.push_back(std::move(entry));
        }
    }

    void names(bool global)
    {
        const int32_t count = global ? integer("number of names") : 1;
        Json& entryJson = json["names"] = Json::array();
        for (int32_t i = 0; i < std::min(count, 2); ++i)
            entryJson.push_back(string(
                global && i == 0 ? "name of the global preset" : "name of the synth preset"));
    }

    void tail(bool global)
    {
        const int32_t tailRevision = integer("revision of the tail");
        json["tail revision"] = tailRevision;
        if (global && tailRevision >= kTailWithProgram)
            json["program"] = integer("program in its folder");
        if (global && tailRevision >= kTailWithFolder)
            json["folder"] = integer("folder in the tree");
        if (global && tailRevision >= kTailWithPressure) {
            integer("number of pressure assignments");
            Json& entryJson = json["pressure"] = Json::array();
            while (peek() != kEndOfPressure)
                entryJson.push_back(assignment(true));
            integer("end of the pressure list");
        }
        if (tailRevision >= kTailWithPatterns) {
            const int32_t patterns = integer("patterns");
            const int32_t places = integer("places of a pattern");
            if (patterns < 0 || patterns > 1024 || places < 0 || places > 1024)
                fail("there are no so many patterns");
            Json& entryJson = json["patterns"] = Json::array();
            for (int32_t p = 0; p < patterns; ++p)
                reals(entryJson.emplace_back(Json::array()), places,
                    "raw values of pattern " + std::to_string(p));
        }
        if (tailRevision >= kTailWithHost)
            json["mark"] = string("mark");
    }

    StateDescription& out;
    Json& json;
    int32_t total = 0;
    int32_t revision = 0;
};

StateDescription::StateDescription(
    const std::vector<uint32_t>& fileWords, const std::string& extension)
    : root(new Json(Json::object()))
{
    Walk walk(fileWords, *this);
    try {
        walk.run(extension);
    } catch (const Stop& stop) {
        reason = stop.reason;
        broken = walk.chunk.isBroken() ? walk.chunk.brokenWord() : walk.chunk.words().size();
        (*root)["broken"] = {{"word", broken}, {"reason", reason}};
    }
}

StateDescription::~StateDescription() { delete root; }

StateDescription::StateDescription(StateDescription&& other) noexcept
    : root(std::exchange(other.root, nullptr))
    , words(std::move(other.words))
    , reason(std::move(other.reason))
    , broken(other.broken)
{
}

std::string StateDescription::json() const { return dump(*root, 2) + "\n"; }

std::string StateDescription::problem() const
{
    if (!isBroken())
        return {};
    const std::string where = " at word " + std::to_string(broken);
    return reason == kNoFile ? "no file of Ormund's" + where
                             : "damaged" + where + " (" + reason + ")";
}

std::string StateDescription::text() const
{
    std::string entryJson;
    writeText(*root, entryJson, "");
    return entryJson;
}

bool readWords(const std::string& path, std::vector<uint32_t>& words, std::string& problem)
{
    const long long bytes = KWFileio::size(path);
    if (bytes < 0 || bytes > kMostFileBytes) {
        problem = path + (bytes < 0 ? " cannot be read" : " is too large");
        return false;
    }
    words.assign(static_cast<size_t>(bytes) / sizeof(uint32_t), 0);
    if (!KWFileio::read(path, words.data(), words.size() * sizeof(uint32_t))) {
        problem = path + " cannot be read";
        return false;
    }
    return true;
}

} // namespace ormund
