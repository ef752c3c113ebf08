#include "host/plugin/PluginLibrary.h"

#include "data/parameters/Tags.h"

#include <utility>

namespace ormund {

PluginLibrary::PluginLibrary(Sequencer& owner, std::function<void()> changed)
    : sequencer(owner), presetChanged(std::move(changed))
{
    settings.startUp();
    for (int index = 0; index < Settings::kOptions; ++index)
        setSetting(index, settings.option(static_cast<Settings::Option>(index)), false);
    offlineSound = settings.rendersOffline() ? 1 : 0;
    presets.startUp();
    sequencer.setPrograms(&presets.programs());
}

void PluginLibrary::setSetting(int index, bool on, bool persist)
{
    if (index < 0 || index >= Settings::kOptions)
        return;
    if (persist)
        settings.setOption(static_cast<Settings::Option>(index), on);
    for (const ParameterEntry* entry : settingParameters())
        if (entry->settingIndex() == index)
            sequencer.setParameter(entry->tag, on ? 1.0f : 0.0f);
}

void PluginLibrary::setRendersOffline(bool on)
{
    settings.setRendersOffline(on);
    offlineSound = on ? 1 : 0;
}

void PluginLibrary::reportChange(bool listToo)
{
    sequencer.screen.presetNamesChanged.raise();
    if (listToo)
        sequencer.screen.presetListRebuild.raise();
    presetChanged();
}

LoadResult PluginLibrary::load(PresetKind kind, const std::string& path)
{
    const LoadResult result = presets.load(kind, path);
    if (result == LoadResult::Done)
        reportChange();
    return result;
}

LoadResult PluginLibrary::save(PresetKind kind, const std::string& path)
{
    const LoadResult result = presets.save(kind, path);
    if (result == LoadResult::Done)
        reportChange(true);
    return result;
}

bool PluginLibrary::loadState(const void* bytes, size_t byteCount)
{
    const bool loaded = presets.loadState(bytes, byteCount) == LoadResult::Done;
    if (loaded)
        reportChange();
    return loaded;
}

bool PluginLibrary::restoreSnapshot()
{
    const bool restored = presets.restoreSnapshot();
    if (restored)
        reportChange();
    return restored;
}

void PluginLibrary::setProgram(int number)
{
    presets.setProgram(number);
    reportChange();
}

void PluginLibrary::setName(const std::string& name)
{
    presets.setName(PresetKind::Global, name);
    reportChange();
}

bool PluginLibrary::stepPreset(int tag)
{
    switch (tag) {
    case Tag::PreviousPreset:
        presets.stepProgram(-1);
        return true;
    case Tag::NextPreset:
        presets.stepProgram(1);
        return true;
    case Tag::PreviousSynthPreset:
        presets.step(PresetKind::Synth, -1);
        return true;
    case Tag::NextSynthPreset:
        presets.step(PresetKind::Synth, 1);
        return true;
    case Tag::RandomPreset:
        presets.random();
        return true;
    default:
        return false;
    }
}

void PluginLibrary::runDeferred()
{
    const int32_t tag = sequencer.presetRequest.take();
    if (tag != Mailbox::kEmpty && stepPreset(tag))
        reportChange();
}

} // namespace ormund
