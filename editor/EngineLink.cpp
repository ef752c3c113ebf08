#include "editor/EngineLink.h"

#include "data/library/PanelScaleKey.h"
#include "host/plugin/KWUniClient.h"
#include "platform/KWFileio.h"
#include "platform/UserPlaces.h"

#include <cmath>

namespace ormund {

namespace {

const ParameterValue* valueOf(const KWUniClient& engine, int tag)
{
    const ParameterEntry* entry = parameterEntry(tag);
    return entry && entry->hasValue() ? &engine.parameters.value(tag) : nullptr;
}

} // namespace

const Crossing<float>* EngineLink::raw(int tag) const
{
    const ParameterValue* value = valueOf(engine, tag);
    return value ? &value->raw : nullptr;
}

const Crossing<float>* EngineLink::mapped(int tag) const
{
    const ParameterValue* value = valueOf(engine, tag);
    return value ? &value->mapped : nullptr;
}

float EngineLink::defaultRaw(int tag) const
{
    const ParameterEntry* entry = parameterEntry(tag);
    return entry ? entry->defaultRaw : 0.0f;
}

KWTable* EngineLink::table(int tag) const { return engine.tracks.tableAt(tag); }
KWBtnLine* EngineLink::switchLine(int tag) const { return engine.tracks.btnLineAt(tag); }
KWListLine* EngineLink::listLine(int tag) const { return engine.tracks.listLineAt(tag); }
KWZoneHandlerContainer* EngineLink::zone(int tag) const { return engine.tracks.zonesAt(tag); }
KWKeyState* EngineLink::keyState() const { return &engine.keyState; }

void EngineLink::setParameter(int tag, float value) { engine.setParameter(tag, value); }

void EngineLink::setParameterAutomated(int tag, float value)
{
    engine.setParameterAutomated(tag, value);
}

void EngineLink::beginEdit(int tag)
{
    if (tag < kHostParameters)
        engine.beginEdit(tag);
}

void EngineLink::endEdit(int tag)
{
    if (tag < kHostParameters)
        engine.endEdit(tag);
}

void EngineLink::copyLockArea(const KWMouseArea::State& state)
{
    engine.sequencer.setLockButton(state.leftButton > 0.0f);
}

void EngineLink::setLearnTarget(int tag, int step) { engine.midiMap.setLearnTarget(tag, step); }

void EngineLink::clearMapping(int tag)
{
    engine.midiMap.removeParameter(tag);
    if (learnTag() == tag)
        setLearnTarget(-1, 0);
}

void EngineLink::clearMapping(int tag, int step)
{
    engine.midiMap.removeAssignment(tag, step);
    if (learnTag() == tag && engine.midiMap.learnStep() == step)
        setLearnTarget(-1, 0);
}

void EngineLink::addAssignment(int controller, int tag, int step)
{
    engine.midiMap.addAssignment(controller, tag, step);
}

int EngineLink::controllerOf(int tag) const
{
    const MidiMap& map = engine.midiMap;
    for (int list = 0; list < MidiMap::kLists; ++list)
        for (int i = 0; i < map.count(list); ++i)
            if (map.at(list, i).tag == tag)
                return list;
    return -1;
}

int EngineLink::learnTag() const { return engine.midiMap.learnTag(); }

std::optional<double> EngineLink::storedPanelScale() const
{
    int32_t percent = 0;
    engine.settings.store().readInt(kPanelScaleKey, percent);
    return percent > 0 ? std::optional(percent / 100.0) : std::nullopt;
}

void EngineLink::storePanelScale(double scale)
{
    engine.settings.store().writeInt(kPanelScaleKey, int32_t(std::lround(scale * 100)));
}

bool EngineLink::rendersOffline() const { return engine.settings.rendersOffline(); }
void EngineLink::setRendersOffline(bool on) { engine.library.setRendersOffline(on); }

std::string EngineLink::manualPath() const
{
    return KWFileio::join(UserPlaces::find().installed, "Manual.htm");
}

// The folder that holds the kind's "Factory" and "User".
std::string EngineLink::presetFolder(PresetKind kind) const
{
    return KWFileio::folderOf(engine.settings.presetPath(kind));
}

std::string EngineLink::presetSaveFolder(PresetKind kind) const
{
    return engine.settings.presetSavePath(kind);
}

std::string EngineLink::presetName(PresetKind kind) const { return engine.presets.name(kind); }

void EngineLink::loadPreset(PresetKind kind, const std::string& path)
{
    if (KWFileio::folderOf(path) == recoveryFolder())
        engine.library.recover(path);
    else
        engine.library.load(kind, path);
}

bool EngineLink::savePreset(PresetKind kind, const std::string& path)
{
    return engine.library.save(kind, path) == LoadResult::Done;
}

std::string EngineLink::recoveryFolder() const { return engine.settings.recoveryFolder(); }

bool EngineLink::hasRecovered() const
{
    constexpr size_t kMostNames = 1000;
    size_t most = kMostNames;
    for (const KWFileio::Entry& entry : KWFileio::list(recoveryFolder(), most))
        if (!entry.isFolder && entry.name.ends_with(".kwe"))
            return true;
    return false;
}

std::string EngineLink::mapFolder() const { return engine.settings.mapFolder(); }

void EngineLink::loadMap(const std::string& path) { engine.presets.loadMap(path); }
void EngineLink::saveMap(const std::string& path) { engine.presets.saveMap(path); }

void EngineLink::setSetting(int tag, bool on)
{
    engine.library.setSetting(parameterEntry(tag)->settingIndex(), on, true);
}

} // namespace ormund
