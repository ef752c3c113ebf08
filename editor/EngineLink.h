#pragma once

#include "base/Crossing.h"
#include "controls/KWMouseArea.h"
#include "data/library/Presets.h"

#include <optional>
#include <string>
#include <vector>

namespace ormund {

class KWBtnLine;
class KWKeyState;
class KWListLine;
class KWTable;
class KWUniClient;
class KWZoneHandlerContainer;

// What the controls of a tag read and write in the engine. Everything that it gives stays where it
// is for the engine's life; null for a tag that has no such thing. Screen thread.
class EngineLink {
public:
    explicit EngineLink(KWUniClient& ownEngine) : engine(ownEngine) { }

    const Crossing<float>* raw(int tag) const;    // 0 to 1
    const Crossing<float>* mapped(int tag) const; // the engine's value
    float defaultRaw(int tag) const;

    KWTable* table(int tag) const;
    KWBtnLine* switchLine(int tag) const;
    KWListLine* listLine(int tag) const;
    KWZoneHandlerContainer* zone(int tag) const;
    KWKeyState* keyState() const;

    void setParameter(int tag, float value);
    void setParameterAutomated(int tag, float value); // and reports it to the host
    void beginEdit(int tag);                          // tags below 46 alone
    void endEdit(int tag);
    void setSetting(int tag, bool on); // 378 or 379; kept in the key store
    void copyLockArea(const KWMouseArea::State& state);

    void setLearnTarget(int tag, int step); // tag -1: nothing waits any more
    // What waits to be learned for it waits no more.
    void clearMapping(int tag); // all its steps
    void clearMapping(int tag, int step);
    void addAssignment(int controller, int tag, int step);
    int controllerOf(int tag) const; // the first that moves it, MidiMap::kPressure too; -1 for none
    int learnTag() const;            // -1: nothing waits

    std::optional<double> storedPanelScale() const; // as chosen last; empty at first
    void storePanelScale(double scale);
    bool rendersOffline() const;
    void setRendersOffline(bool on); // kept in the key store

    std::string presetFolder(PresetKind kind) const;
    std::string presetSaveFolder(PresetKind kind) const;
    std::string presetName(PresetKind kind) const;
    void loadPreset(PresetKind kind, const std::string& path);
    bool savePreset(PresetKind kind, const std::string& path);
    // Songs that a crash has left.
    std::string recoveryFolder() const;
    bool hasRecovered() const;
    std::string mapFolder() const;
    void loadMap(const std::string& path);
    void saveMap(const std::string& path);
    std::string manualPath() const;

private:
    KWUniClient& engine;
};

} // namespace ormund
