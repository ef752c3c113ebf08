// The user's settings: what survives from one run to the next and is in no preset.
#pragma once

#include "data/state/StateParts.h"
#include "platform/SettingStore.h"
#include "platform/UserPlaces.h"

#include <string>

namespace ormund {

// A kind of preset, as folders and file dialogues name it.
struct PresetKindRow {
    PresetKind kind;
    const char* title;     // also the name of its folder
    const char* fileKind;  // in a file dialogue
    const char* extension; // without the dot
};
const PresetKindRow& presetKindRow(PresetKind kind);

// Every key of the store, for documentation and for the one place that spells them.
struct SettingKey {
    const char* key;  // with %d the number, with %s the title of a kind
    const char* type; // "string" or "int"
    const char* start;
    const char* meaning;
};
std::span<const SettingKey> settingKeys();

// Each call reads or writes the store at once; see SettingStore for one that is locked. The thread
// of the user interface.
class Settings {
public:
    // The two options that parameters mirror, by ParameterEntry::settingIndex().
    enum Option { kIgnoreProgramChange = 0, kKeepMidiMap = 1, kOptions = 2 };

    explicit Settings(UserPlaces userPlaces = UserPlaces::find());

    // Writes what a first run finds missing, makes the user's folders, and links the shipped
    // content into the content place where that has none.
    void startUp();

    bool option(Option index) const;
    void setOption(Option index, bool on) const;
    bool rendersOffline() const; // also at the host's offline process level
    void setRendersOffline(bool on) const;

    std::string contentPath() const; // empty when there is no place for it
    // The folder that a kind is browsed in, at first "Factory", and the one that it is saved in, at
    // first "User".
    std::string presetPath(PresetKind kind) const;
    std::string presetSavePath(PresetKind kind) const;
    void setPresetPath(PresetKind kind, const std::string& folder) const;
    void setPresetSavePath(PresetKind kind, const std::string& folder) const;
    // False when the store has no such key, where the folder above is only the usual one.
    bool hasPresetPath(PresetKind kind) const;

    std::string mapFolder() const; // of the last map of controllers
    void setMapFolder(const std::string& folder) const;
    std::string audioFolder() const;
    void setAudioFolder(const std::string& folder) const;

    const std::string& recoveryFolder() const { return places.recovery; }

    const SettingStore& store() const { return keys; }

private:
    std::string kindFolder(PresetKind kind, const char* below) const;
    void firstRun() const;
    void linkShipped(PresetKind kind) const;

    UserPlaces places;
    SettingStore keys;
};

} // namespace ormund
