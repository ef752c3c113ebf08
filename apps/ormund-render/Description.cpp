#include "apps/ormund-render/Description.h"

#include "apps/ormund-render/Rendering.h"
#include "data/ChunkFormat.h"
#include "data/ControllerNames.h"
#include "data/DetachedSong.h"
#include "data/KWChunk.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

constexpr int kMostPatternSide = 1024; // more is damage

enum class FileKind { Global, Synth, Map };

FileKind kindOf(const std::string& path)
{
    return path.ends_with(".kws") ? FileKind::Synth
        : path.ends_with(".kwm")  ? FileKind::Map
                                  : FileKind::Global;
}

Json assignment(int32_t tag, int32_t step)
{
    Json json{{"tag", tag}};
    if (const ParameterEntry* entry = parameterEntry(tag)) {
        json["name"] = entry->name;
        if (!entry->hasValue())
            json["step"] = step;
    }
    return json;
}

// Walks the words once and puts down what each of them means. It stops where the chunk breaks, so
// what stands in `json` by then was read whole.
class Describer {
public:
    Describer(KWChunk& described, FileKind fileKind)
        : chunk(described), kind(fileKind), song(std::make_unique<DetachedSong>())
    {
    }

    Json describe()
    {
        if (readHead() && kind == FileKind::Map)
            readMapFile();
        else if (!json.contains("problem"))
            readState();
        if (chunk.isBroken()) {
            json["problem"] = "damaged";
            json["broken at word"] = chunk.brokenWord();
        }
        return std::move(json);
    }

private:
    bool refuse(const char* why)
    {
        json["problem"] = why;
        json["broken at word"] = chunk.cursor() - 1;
        return false;
    }

    bool readHead()
    {
        static constexpr const char* kKinds[] = {"global preset", "synth preset", "controller map"};
        json["kind"] = kKinds[static_cast<int>(kind)];
        json["words in the file"] = chunk.words().size();
        if (!chunk.readHeader())
            return chunk.isBroken() || refuse("no file of Ormund's");
        json["words"] = chunk.totalWords;
        json["program version"] = chunk.version;
        json["tempo"] = chunk.tempo;
        json["sample rate"] = chunk.sampleRate;
        if (kind == FileKind::Map) {
            json["revision"] = chunk.readInt();
            return chunk.readInt() == kFormatMagic || chunk.isBroken() || refuse("another kind");
        }
        chunk.readInt(); // length of the header
        if (chunk.readInt() != kChunkKind)
            return chunk.isBroken() || refuse("another kind");
        revision = chunk.readInt();
        json["revision"] = revision;
        return revision < 2 || chunk.readInt() == kFormatMagic || chunk.isBroken()
            || refuse("another kind");
    }

    void readState()
    {
        readRecords();
        if (kind == FileKind::Global)
            readMap();
        readNames();
        const int tail = readTail();
        if (tail >= kTailWithPatterns)
            readPatterns();
        if (tail >= kTailWithHost && !chunk.isBroken())
            json["host"] = chunk.readString();
    }

    void readRecords()
    {
        json["parameters"] = Json::array();
        if (kind == FileKind::Global)
            json["tracks"] = Json::array();
        while (!chunk.isBroken()) {
            const int32_t key = chunk.readInt();
            if (key == kEndOfRecords || chunk.isBroken())
                return;
            const int32_t size = chunk.readInt();
            if (size < 0)
                chunk.fail();
            if (chunk.isBroken())
                return;
            const ChunkLimit record(chunk, static_cast<size_t>(size));
            readRecord(key, size);
        }
    }

    void readRecord(int32_t key, int32_t size)
    {
        const ParameterEntry* entry = parameterOfKey(key);
        if (!entry) {
            json["unknown records"].push_back({{"key", key}, {"words", size}});
        } else if (entry->hasValue()) {
            const float raw = chunk.readFloat();
            if (!chunk.isBroken())
                json["parameters"].push_back(valueOf(*entry, raw));
        } else if (KWChunkableClass* track = song->tracks.chunkableAt(entry->tag)) {
            track->readChunk(chunk, false);
            if (!chunk.isBroken())
                json["tracks"].push_back(trackOf(*entry));
        }
    }

    static Json valueOf(const ParameterEntry& entry, float raw)
    {
        char text[128] = {};
        parameterText(entry.tag, sanitisedRaw(raw), text);
        return {{"key", entry.fileKey}, {"tag", entry.tag}, {"name", entry.name}, {"raw", raw},
            {"text", text}};
    }

    Json trackOf(const ParameterEntry& entry)
    {
        Json track{{"key", entry.fileKey}, {"tag", entry.tag}, {"name", entry.name}};
        if (const TrackRow* row = trackRow(entry.tag))
            track["what"] = row->word;
        Json rows = Json::array();
        if (const KWTableXY* table = song->tracks.tableAt(entry.tag)) {
            track["class"] = "table";
            for (int r = 0; r < table->rowCount(); ++r) {
                Json steps = Json::array();
                for (int i = 0; i < table->size(); ++i)
                    steps.push_back(table->rowTable(r).ownStep(i));
                rows.push_back(std::move(steps));
            }
        } else if (const StepLine* line = song->tracks.lineAt(entry.tag)) {
            track["class"] = "line";
            for (int r = 0; r < line->rows(); ++r) {
                Json steps = Json::array();
                for (int i = 0; i < line->steps(); ++i)
                    steps.push_back(line->stepAt(r, i));
                rows.push_back(std::move(steps));
            }
        } else if (const KWZoneHandlerContainer* zones = song->tracks.zonesAt(entry.tag)) {
            track["class"] = "loop";
            for (int r = 0; r < zones->handlers(); ++r)
                rows.push_back({zones->start(r), zones->end(r)});
        }
        track["rows"] = std::move(rows);
        return track;
    }

    void readAssignments(Json& list, int32_t end, bool pairs)
    {
        while (!chunk.isBroken()) {
            const int32_t tag = chunk.readInt();
            if (tag == end)
                return;
            const int32_t step = pairs ? chunk.readInt() : 0;
            if (!chunk.isBroken())
                list.push_back(assignment(pairs ? tag : tag & 0xffff, step));
        }
    }

    static Json controller(int number)
    {
        return {{"controller", number}, {"name", controllerName(number)},
            {"assignments", Json::array()}};
    }

    void readMap()
    {
        Json map = Json::array();
        while (!chunk.isBroken()) {
            const int32_t number = chunk.readInt();
            if (number == kEndOfMap || chunk.isBroken())
                break;
            if (number < 0 || number >= MidiMap::kControllers) {
                chunk.fail();
                break;
            }
            map.push_back(controller(number));
            readAssignments(
                map.back()["assignments"], kEndOfController, revision >= kWordPairRevision);
        }
        json["controllers"] = std::move(map);
    }

    void readMapFile()
    {
        const bool pairs = json["revision"].get<int>() >= kMapRevision;
        Json map = Json::array();
        for (int number = 0; number < MidiMap::kControllers && !chunk.isBroken(); ++number) {
            const int32_t count = chunk.readInt();
            if (count < 0 || static_cast<size_t>(count) > chunk.remaining())
                chunk.fail();
            Json one = controller(number);
            for (int32_t i = 0; i < count && !chunk.isBroken(); ++i) {
                const int32_t tag = chunk.readInt();
                const int32_t step = pairs ? chunk.readInt() : 0;
                if (!chunk.isBroken())
                    one["assignments"].push_back(assignment(tag, step));
            }
            if (!one["assignments"].empty())
                map.push_back(std::move(one));
        }
        json["controllers"] = std::move(map);
    }

    void readNames()
    {
        if (chunk.isBroken())
            return;
        Json names = Json::array();
        const int32_t count = kind == FileKind::Global ? std::min(chunk.readInt(), 2) : 1;
        for (int32_t i = 0; i < count && !chunk.isBroken(); ++i)
            names.push_back(chunk.readString());
        json["names"] = std::move(names);
    }

    int readTail()
    {
        if (chunk.isBroken())
            return 0;
        const int tail = chunk.readInt();
        json["tail revision"] = tail;
        if (kind == FileKind::Synth)
            return std::min(tail, kTailRevision);
        if (tail >= kTailWithProgram)
            json["program"] = chunk.readInt();
        if (tail >= kTailWithFolder)
            json["folder"] = chunk.readInt();
        if (tail >= kTailWithPressure) {
            chunk.readInt(); // the count; the list has an end of its own
            Json list = Json::array();
            readAssignments(list, kEndOfPressure, true);
            json["pressure"] = std::move(list);
        }
        return std::min(tail, kTailRevision);
    }

    void readPatterns()
    {
        const int32_t rows = chunk.readInt();
        const int32_t columns = chunk.readInt();
        if (rows < 0 || rows > kMostPatternSide || columns < 0 || columns > kMostPatternSide
            || static_cast<uint64_t>(rows) * static_cast<uint64_t>(columns) > chunk.remaining())
            chunk.fail();
        Json patterns = Json::array();
        for (int r = 0; r < rows && !chunk.isBroken(); ++r) {
            Json values = Json::array();
            for (int c = 0; c < columns; ++c)
                values.push_back(chunk.readFloat());
            patterns.push_back(std::move(values));
        }
        json["patterns"] = std::move(patterns);
    }

    KWChunk& chunk;
    FileKind kind;
    int32_t revision = 0;
    std::unique_ptr<DetachedSong> song; // takes the tracks' blocks in
    Json json;
};

std::string wordOf(const Json& value)
{
    if (value.is_number_float()) {
        char text[32];
        std::snprintf(text, sizeof text, "%g", value.get<double>());
        return text;
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

// A line for each plain value; a list of records becomes a line each, rows of numbers likewise.
void printText(const Json& json, int indent)
{
    const std::string margin(static_cast<size_t>(indent), ' ');
    for (const auto& [name, value] : json.items()) {
        if (!value.is_array()) {
            std::printf("%s%s: %s\n", margin.c_str(), name.c_str(), wordOf(value).c_str());
            continue;
        }
        std::printf("%s%s:%s\n", margin.c_str(), name.c_str(), value.empty() ? " none" : "");
        for (const Json& item : value) {
            std::string line = margin + " ";
            if (item.is_object()) {
                for (const auto& [key, field] : item.items())
                    if (!field.is_array())
                        line.append(" ").append(key).append("=").append(wordOf(field));
            } else if (item.is_array()) {
                for (const Json& number : item)
                    line.append(" ").append(wordOf(number));
            } else {
                line.append(" ").append(wordOf(item));
            }
            std::puts(line.c_str());
            if (item.is_object())
                for (const auto& [key, field] : item.items())
                    if (field.is_array() && !field.empty())
                        printText(Json{{key, field}}, indent + 4);
        }
    }
}

} // namespace

std::string describeFile(const std::string& path, bool asJson)
{
    std::vector<uint8_t> bytes;
    if (std::string problem = readFile(path, bytes); !problem.empty())
        return problem;
    KWChunk chunk;
    chunk.assign(bytes.data(), bytes.size());
    const Json json = Describer(chunk, kindOf(path)).describe();
    if (asJson)
        std::puts(json.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    else
        printText(json, 0);
    if (!json.contains("problem"))
        return {};
    return path + ": " + json["problem"].get<std::string>() + " at word "
        + std::to_string(json["broken at word"].get<size_t>());
}
