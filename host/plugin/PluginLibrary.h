// The user's library beside a sequencer: settings, presets and programs.
#pragma once

#include "data/library/Presets.h"
#include "data/library/Settings.h"
#include "engine/Sequencer.h"
#include "host/plugin/Autosave.h"
#include "host/plugin/Document.h"

#include <functional>
#include <string>

namespace ormund {

// The thread of the user interface, except where a method says so. What goes wrong is shown by
// Presets; a failed load changes nothing.
class PluginLibrary {
public:
    // `changed` follows each change of a preset's name or place, for the host's display.
    PluginLibrary(Sequencer& owner, std::function<void()> changed);

    // --- presets and states ---
    LoadResult load(PresetKind kind, const std::string& path);
    LoadResult save(PresetKind kind, const std::string& path);
    bool loadState(const void* bytes, size_t byteCount);
    // The state that the host gave last; false when it gave none.
    bool restoreSnapshot();
    void setProgram(int number);
    void setName(const std::string& name); // of the global preset
    // Does what a learned controller has asked for and the audio thread may not do. The editor
    // calls it at idle; without a window it runs at the host's own idle and before a state is
    // given away.
    void runDeferred();

    // --- the song as a document ---
    // Keeps the song from now on. The newest song that a crash left since the last time; empty for
    // none.
    std::string beginAutosave();
    void recover(const std::string& path); // a song that a crash left
    void newSong();                        // as a new instance has it
    // The file of the song where it may be saved without a question: one of the user's that is
    // there. Empty for none.
    std::string ownSongPath();

    // --- settings ---
    // Settings::Option; `persist` writes it to the key store. The parameter that mirrors it
    // follows.
    void setSetting(int index, bool on, bool persist);
    void setRendersOffline(bool on);
    bool rendersOffline() const { return offlineSound != 0; } // any thread

private:
    Sequencer& sequencer;
    std::function<void()> presetChanged;
    Crossing<int32_t> offlineSound = 0;

public:
    Settings settings;
    Presets presets{settings, sequencer.state()};
    Autosave autosave{presets};
    Document document; // what the editor and the stand-alone program say to each other

private:
    bool stepPreset(int tag);
    void reportChange(bool listToo = false);
};

} // namespace ormund
