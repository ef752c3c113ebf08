#include "data/library/Presets.h"

#include "data/library/ChunkFile.h"
#include "data/state/MidiMapFile.h"
#include "data/state/StateWriter.h"
#include "platform/KWFileio.h"
#include "platform/Messages.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <thread>

namespace ormund {

namespace {

constexpr char kDefaultPreset[] = "default.kwe";
constexpr char kMidiFolder[] = "Midi Programs";
constexpr char kMapExtension[] = "kwm";
constexpr char kNoChoice[] = "EMPTY"; // what a file dialogue answers when nothing was chosen
constexpr std::array<PresetKind, kPresetKinds> kAllKinds = {PresetKind::Global, PresetKind::Synth};

std::string withExtension(const std::string& path, const std::string& extension)
{
    return path.ends_with('.' + extension) ? path : path + '.' + extension;
}

unsigned randomDraw()
{
    static const bool seeded = [] {
        std::srand(static_cast<unsigned>(std::time(nullptr)));
        return true;
    }();
    return seeded ? static_cast<unsigned>(std::rand()) : 0u;
}

} // namespace

Presets::Presets(Settings& userSettings, StateParts& stateParts)
    : settings(userSettings), parts(stateParts), position(stateParts.position)
{
}

void Presets::startUp()
{
    scan();
    if (!settings.hasPresetPath(PresetKind::Global))
        return;
    // The shipped folder may be read-only, so the user's own counts as well.
    for (const std::string& folder :
        {settings.presetPath(PresetKind::Global), settings.presetSavePath(PresetKind::Global)})
        if (load(PresetKind::Global, KWFileio::join(folder, kDefaultPreset), true)
            == LoadResult::Done)
            return;
}

void Presets::scan()
{
    const std::lock_guard guard(lock);
    for (const PresetKind kind : kAllKinds)
        trees[at(kind)].scan({settings.presetPath(kind), settings.presetSavePath(kind)},
            presetKindRow(kind).extension);
    const PresetTree& global = trees[at(PresetKind::Global)];
    const int midi = global.folderNamed(kMidiFolder);
    takeMidiProgram(); // as long as the files are those it was chosen from
    midiFiles.clear();
    for (int i = 0; i < std::min(global.fileCount(midi), ProgramBank::kPrograms); ++i)
        midiFiles.push_back(*global.fileAt(midi, i));
    midiPrograms.rebuild(midiFiles.size(), [this](size_t program, KWChunk& chunk) {
        return readChunkFile(midiFiles[program].path, chunk, LoadResult::NewerVersion)
            == LoadResult::Done;
    });
}

LoadResult Presets::report(LoadResult result, const std::string& path, bool quiet) const
{
    const std::string text = loadMessage(result, path);
    if (!quiet && !text.empty())
        showMessage("%s", text.c_str());
    return result;
}

LoadResult Presets::load(PresetKind kind, const std::string& path, bool quiet)
{
    const std::lock_guard guard(lock);
    if (path.empty() || path == kNoChoice)
        return LoadResult::NoFile;
    KWChunk chunk;
    LoadResult result = readChunkFile(path, chunk, LoadResult::NewerVersion);
    if (result == LoadResult::Done) {
        StateReader::Options options;
        options.kind = kind;
        result = StateReader(parts).load(chunk, options);
    }
    if (result == LoadResult::Done) {
        // A global preset names the synth preset that it was made with.
        rebuildPaths();
        becomeCurrent(kind, path);
        if (kind == PresetKind::Global)
            settleAgain();
    }
    return report(result, path, quiet);
}

void Presets::becomeCurrent(PresetKind kind, const std::string& path)
{
    takeMidiProgram();
    paths[at(kind)] = path;
    position.names[at(kind)] = plainName(KWFileio::nameOf(path));
    // A file that the tree does not have leaves the place as it is.
    if (kind == PresetKind::Global)
        trees[at(kind)].find(path, position.folder, position.program);
}

void Presets::chooseFolder(PresetKind kind, const std::string& folder)
{
    if (folder.empty() || folder == kNoChoice)
        return;
    settings.setPresetPath(kind, folder);
    scan();
}

LoadResult Presets::save(PresetKind kind, std::string path)
{
    const std::lock_guard guard(lock);
    if (path.empty() || path == kNoChoice)
        return LoadResult::NoFile;
    path = withExtension(std::move(path), presetKindRow(kind).extension);
    takeMidiProgram();
    // The name inside is that of the file, so that a host shows it after loading the same bytes.
    const std::string before = position.names[at(kind)];
    position.names[at(kind)] = plainName(KWFileio::nameOf(path));
    KWChunk chunk;
    writeState(chunk, parts, kind);
    if (!writeChunkFile(path, chunk)) {
        position.names[at(kind)] = before;
        return report(LoadResult::NotSaved, path, false);
    }
    scan();
    becomeCurrent(kind, path);
    if (kind == PresetKind::Global)
        settleAgain();
    return LoadResult::Done;
}

LoadResult Presets::loadMap(const std::string& path)
{
    const std::lock_guard guard(lock);
    if (path.empty() || path == kNoChoice)
        return LoadResult::NoFile;
    KWChunk chunk;
    LoadResult result = readChunkFile(path, chunk, LoadResult::NewerMap);
    if (result == LoadResult::Done)
        result = readMidiMap(chunk, parts.midiMap);
    if (result == LoadResult::Done)
        settings.setMapFolder(KWFileio::folderOf(path));
    return report(result, path, false);
}

LoadResult Presets::saveMap(std::string path)
{
    if (path.empty() || path == kNoChoice)
        return LoadResult::NoFile;
    path = withExtension(std::move(path), kMapExtension);
    KWChunk chunk;
    writeMidiMap(chunk, parts.midiMap);
    if (!writeChunkFile(path, chunk))
        return report(LoadResult::MapNotSaved, path, false);
    settings.setMapFolder(KWFileio::folderOf(path));
    return LoadResult::Done;
}

LoadResult Presets::loadState(const void* bytes, size_t byteCount)
{
    const std::lock_guard guard(lock);
    KWChunk chunk;
    chunk.assign(bytes, byteCount);
    StateReader::Options options;
    options.force = true;
    const LoadResult result = StateReader(parts).load(chunk, options);
    if (result == LoadResult::Done) {
        takeMidiProgram();
        rebuildPaths();
        savedState = PackedChunk(chunk);
        ++hostStateCount;
        settleAgain();
    }
    return report(result, {}, false);
}

const KWChunk& Presets::state()
{
    const std::lock_guard guard(lock);
    takeMidiProgram();
    writeWhole(stateChunk);
    return stateChunk;
}

// A program that MIDI chooses comes on the audio thread, which takes no lock: what was written
// beside it may be of two songs, and is written again.
void Presets::writeWhole(KWChunk& chunk)
{
    constexpr int kMostTries = 100;
    for (int i = 0; i < kMostTries; ++i) {
        const uint32_t before = parts.interlock.loads;
        if (before % 2 == 0) {
            writeState(chunk, parts, PresetKind::Global);
            if (parts.interlock.loads == before)
                return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    writeState(chunk, parts, PresetKind::Global);
}

bool Presets::restoreSnapshot()
{
    const std::lock_guard guard(lock);
    if (savedState.isEmpty())
        return false;
    KWChunk chunk = savedState.unpacked();
    const bool loaded = StateReader(parts).load(chunk, {}) == LoadResult::Done;
    if (loaded)
        rebuildPaths();
    return loaded;
}

Presets::Moment Presets::moment()
{
    const std::lock_guard guard(lock);
    takeMidiProgram();
    // Not the host's chunk: a pointer into that one may still be in use.
    KWChunk chunk;
    writeWhole(chunk);
    return {{chunk.words().begin(), chunk.words().end()}, position, paths};
}

void Presets::comeBackTo(const Moment& moment)
{
    const std::lock_guard guard(lock);
    KWChunk chunk;
    chunk.assign(moment.words);
    StateReader::Options options;
    options.force = true; // the map too
    if (StateReader(parts).load(chunk, options) != LoadResult::Done)
        return;
    takeMidiProgram();
    position = moment.position;
    paths = moment.paths;
}

Presets::Song Presets::song()
{
    constexpr uint64_t kStart = 0xCBF29CE484222325u;
    constexpr uint64_t kPrime = 0x100000001B3u;
    const std::lock_guard guard(lock);
    KWChunk chunk;
    writeWhole(chunk);
    Song song{{chunk.words().begin(), chunk.words().end()}, position.names[at(PresetKind::Global)],
        kStart, settledHash.value_or(0)};
    for (const uint32_t word : song.words)
        song.hash = (song.hash ^ word) * kPrime;
    return song;
}

void Presets::settle()
{
    const std::lock_guard guard(lock);
    settledHash = song().hash;
    ++settlementCount;
}

void Presets::settleAgain()
{
    if (settledHash)
        settle();
    else
        ++settlementCount;
}

LoadResult Presets::recover(const std::string& path)
{
    const std::lock_guard guard(lock);
    KWChunk chunk;
    LoadResult result = readChunkFile(path, chunk, LoadResult::NewerVersion);
    if (result == LoadResult::Done) {
        StateReader::Options options;
        options.force = true; // the map too
        result = StateReader(parts).load(chunk, options);
    }
    if (result == LoadResult::Done) {
        takeMidiProgram();
        rebuildPaths();
    }
    return report(result, path, false);
}

// A state names its presets; where they lie is the matter of this user.
void Presets::rebuildPaths()
{
    for (const PresetKind kind : kAllKinds) {
        const std::string& name = position.names[at(kind)];
        std::string& path = paths[at(kind)];
        if (name.empty()) {
            path.clear();
            continue;
        }
        if (KWFileio::nameOf(path) == name)
            continue;
        path = KWFileio::join(
            settings.presetPath(kind), withExtension(name, presetKindRow(kind).extension));
    }
}

Presets::Place Presets::placeOf(int number) const
{
    const PresetTree& files = tree(PresetKind::Global);
    Place place{position.folder, number};
    const bool isFile = files.fileAt(place.folder, number) != nullptr;
    if (!isFile && number < 0) {
        place.folder = place.folder > 0 ? place.folder - 1 : files.folderCount() - 1;
        place.folder = std::clamp(place.folder, 0, std::max(files.folderCount() - 1, 0));
        place.program = files.fileCount(place.folder) - 1;
    } else if (!isFile) {
        place.folder = files.fileCount(place.folder + 1) > 0 ? place.folder + 1 : 0;
        place.program = 0;
    }
    place.program = std::max(place.program, 0);
    return place;
}

void Presets::setProgram(int number)
{
    const std::lock_guard guard(lock);
    if (number != position.program)
        goTo(placeOf(number));
}

void Presets::stepProgram(int direction)
{
    const std::lock_guard guard(lock);
    const bool begins = direction > 0 && path(PresetKind::Global).empty();
    goTo(begins ? Place{} : placeOf(position.program + direction));
}

void Presets::goTo(Place place)
{
    position.folder = place.folder;
    position.program = place.program;
    if (const PresetFile* file = tree(PresetKind::Global).fileAt(position.folder, position.program))
        load(PresetKind::Global, std::string(file->path));
}

std::string Presets::currentFolder(PresetKind kind)
{
    const std::string& current = path(kind);
    if (!current.empty() && KWFileio::isFolder(KWFileio::folderOf(current)))
        return KWFileio::folderOf(current);
    return tree(kind).folderCount() > 0 ? tree(kind).folderPath(0) : settings.presetPath(kind);
}

void Presets::step(PresetKind kind, int direction)
{
    const std::lock_guard guard(lock);
    size_t most = PresetTree::kMostNames;
    const std::vector<PresetFile> files =
        PresetTree::list(currentFolder(kind), presetKindRow(kind).extension, most).files;
    if (files.empty())
        return;
    const auto count = static_cast<int>(files.size());
    const auto found = std::find_if(files.begin(), files.end(),
        [&](const PresetFile& file) { return file.name == name(kind); });
    int place = direction > 0 ? 0 : count - 1;
    if (found != files.end())
        place = (static_cast<int>(found - files.begin()) + direction + count) % count;
    load(kind, files[static_cast<size_t>(place)].path);
}

void Presets::random()
{
    const std::lock_guard guard(lock);
    const PresetTree& files = tree(PresetKind::Global);
    if (files.folderCount() == 0)
        return;
    const auto folder = static_cast<int>(randomDraw() % static_cast<unsigned>(files.folderCount()));
    const auto index =
        static_cast<int>(randomDraw() % static_cast<unsigned>(files.fileCount(folder)));
    load(PresetKind::Global, std::string(files.fileAt(folder, index)->path));
}

void Presets::takeMidiProgram()
{
    const auto chosen = midiPrograms.takeChosen();
    if (!chosen)
        return;
    position.names[at(PresetKind::Synth)] = chosen->synthName;
    parts.kept = {};
    parts.kept[at(PresetKind::Global)] = chosen->kept;
    rebuildPaths();
    const PresetFile& file = midiFiles[chosen->program];
    paths[at(PresetKind::Global)] = file.path;
    position.names[at(PresetKind::Global)] = plainName(file.name);
}

const std::string& Presets::name(PresetKind kind)
{
    const std::lock_guard guard(lock);
    takeMidiProgram();
    return position.names[at(kind)];
}

void Presets::setName(PresetKind kind, const std::string& text)
{
    const std::lock_guard guard(lock);
    takeMidiProgram();
    position.names[at(kind)] = plainName(text);
}

const std::string& Presets::path(PresetKind kind)
{
    const std::lock_guard guard(lock);
    takeMidiProgram();
    return paths[at(kind)];
}

std::string Presets::folderName(PresetKind kind)
{
    const std::string folder = KWFileio::folderOf(path(kind));
    return path(kind).empty() ? std::string() : folder.substr(folder.rfind('/') + 1);
}

std::string Presets::programName(int number) const
{
    const Place place = placeOf(number);
    const PresetFile* file = tree(PresetKind::Global).fileAt(place.folder, place.program);
    return file ? file->name : std::string();
}

} // namespace ormund
