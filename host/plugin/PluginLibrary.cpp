#include "host/plugin/PluginLibrary.h"

#include "data/parameters/Tags.h"
#include "platform/KWFileio.h"

#include <memory>
#include <unistd.h>
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

std::string PluginLibrary::beginAutosave()
{
    const std::vector<std::string> left = settleRecovered(settings.recoveryFolder());
    autosave.begin(settings.recoveryFolder());
    return left.empty() ? std::string() : left.front();
}

void PluginLibrary::recover(const std::string& path)
{
    if (presets.recover(path) != LoadResult::Done)
        return;
    // It goes on as the present song, and is kept as that.
    if (autosave.look())
        KWFileio::remove(path);
    reportChange(true);
}

void PluginLibrary::newSong()
{
    const auto fresh = std::make_unique<Sequencer>();
    PluginLibrary library(*fresh, [] {});
    presets.comeBackTo(library.presets.moment());
    presets.settle();
    reportChange();
}

std::string PluginLibrary::ownSongPath()
{
    const std::string& path = presets.path(PresetKind::Global);
    const bool isOwn = !path.empty() && path.find("/Factory/") == std::string::npos
        && KWFileio::folderOf(path) != settings.recoveryFolder()
        && ::access(path.c_str(), W_OK) == 0;
    return isOwn ? path : std::string();
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
