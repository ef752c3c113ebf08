// Preset files: finding, loading, saving and moving through them.
#pragma once

#include "data/library/PresetTree.h"
#include "data/library/Settings.h"
#include "data/state/PackedChunk.h"
#include "data/state/ProgramBank.h"
#include "data/state/StateReader.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace ormund {

// The thread of the user interface. What goes wrong reaches showMessage here, in one place; a
// failed load changes nothing.
class Presets {
public:
    Presets(Settings& userSettings, StateParts& stateParts);

    // Loads "default.kwe" of the global presets if there is one, and scans the folders.
    void startUp();
    void scan();
    // The folder in which a kind is browsed from now on.
    void chooseFolder(PresetKind kind, const std::string& folder);
    const PresetTree& tree(PresetKind kind) const { return trees[static_cast<size_t>(kind)]; }

    // --- files ---
    LoadResult load(PresetKind kind, const std::string& path, bool quiet = false);
    // Adds the kind's ending where it is missing; the saved file becomes the current one.
    LoadResult save(PresetKind kind, std::string path);
    LoadResult loadMap(const std::string& path);
    LoadResult saveMap(std::string path);
    // A host's state: everything is taken over, and kept for restoreSnapshot().
    LoadResult loadState(const void* bytes, size_t byteCount);
    // The host's form of the present state. Valid until the next call.
    const KWChunk& state();
    bool restoreSnapshot(); // false while no host has given a state
    // Counts each load twice: odd while it is put in place. And the host's states among them.
    uint32_t loads() const { return parts.interlock.loads; }
    uint32_t hostStates() const { return hostStateCount; }

    // --- taking loads back ---
    // All that a load can replace: the state, the place in the presets, and the map.
    struct Moment {
        std::vector<uint32_t> words;
        PresetPosition position;
        std::array<std::string, kPresetKinds> paths;
        friend bool operator==(const Moment&, const Moment&) = default;
    };
    Moment moment();
    void comeBackTo(const Moment& moment);

    // --- keeping ---
    struct Song {
        std::vector<uint32_t> words;
        std::string name;
        uint64_t hash = 0;        // of the words
        uint64_t settledHash = 0; // of the song as it lies in a file or with the host
    };
    // Any thread but the audio thread.
    Song song();
    // Counts how often the song came to lie in a file or with the host, or came from there.
    uint32_t settlements() const { return settlementCount; }
    // The present song counts as one that lies in a file; from then on loads and saves set it.
    void settle();
    // A song that was kept after a crash. It lies in no file of the user's.
    LoadResult recover(const std::string& path);

    // --- moving ---
    // A number in the current folder of global presets; past its ends the neighbouring folder
    // follows, and the tree is a ring.
    void setProgram(int number);
    // The neighbour of the current program. Where no preset is current yet, forwards begins with
    // the first one.
    void stepProgram(int direction);
    int program() const { return position.program; }
    int folder() const { return position.folder; }
    // The neighbour in the folder of the kind's current preset, a ring.
    void step(PresetKind kind, int direction);
    void random(); // any global preset

    // --- names ---
    // Of the current preset; a program that MIDI has chosen since counts.
    const std::string& name(PresetKind kind);
    void setName(PresetKind kind, const std::string& text);
    const std::string& path(PresetKind kind);
    std::string folderName(PresetKind kind);
    // Of the preset that setProgram(number) brings; empty where there are no presets. A host that
    // is given no name may go and ask for it by setProgram, and loses its state that way.
    std::string programName(int number) const;

    // What MIDI program changes choose from, kept up to date by scan().
    ProgramBank& programs() { return midiPrograms; }

private:
    LoadResult report(LoadResult result, const std::string& path, bool quiet) const;
    void becomeCurrent(PresetKind kind, const std::string& path);
    struct Place {
        int folder = 0;
        int program = 0;
    };
    Place placeOf(int number) const; // past a folder's ends in the neighbouring one
    void goTo(Place place);
    void takeMidiProgram();
    void writeWhole(KWChunk& chunk);
    void rebuildPaths();
    void settleAgain();
    std::string currentFolder(PresetKind kind);
    static size_t at(PresetKind kind) { return static_cast<size_t>(kind); }

    // Some hosts ask for a state on another thread than that which sets one.
    std::recursive_mutex lock;
    Settings& settings;
    StateParts& parts;
    PresetPosition& position;
    std::array<PresetTree, kPresetKinds> trees;
    std::array<std::string, kPresetKinds> paths;
    ProgramBank midiPrograms;
    std::vector<PresetFile> midiFiles; // of its programs
    KWChunk stateChunk;
    PackedChunk savedState; // what the host gave last
    uint32_t hostStateCount = 0;
    uint32_t settlementCount = 0;
    std::optional<uint64_t> settledHash; // empty while nobody keeps the song
};

} // namespace ormund
