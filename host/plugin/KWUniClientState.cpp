// What is saved and loaded: chunks, presets, programs and settings.

#include "host/plugin/KWUniClient.h"

#include "platform/Messages.h"

#include <cstdio>
#include <cstring>
#include <pthread.h>

namespace ormund {

bool KWUniClient::isAudioThread() const
{
    return blockThread == static_cast<uintptr_t>(pthread_self());
}

void KWUniClient::startSettings()
{
    settings.startUp();
    for (int index = 0; index < Settings::kOptions; ++index)
        setSetting(index, settings.option(static_cast<Settings::Option>(index)), false);
    rendersOffline = settings.rendersOffline() ? 1 : 0;
    presets.startUp();
}

void KWUniClient::setSetting(int index, bool on, bool persist)
{
    if (index < 0 || index >= Settings::kOptions)
        return;
    if (persist)
        settings.setOption(static_cast<Settings::Option>(index), on);
    for (const ParameterEntry* entry : settingParameters())
        if (entry->settingIndex() == index)
            setParameter(entry->tag, on ? 1.0f : 0.0f);
}

void KWUniClient::setRendersOffline(bool on)
{
    settings.setRendersOffline(on);
    rendersOffline = on ? 1 : 0;
}

// --- the host's state -------------------------------------------------------------------------

VstInt32 KWUniClient::getChunk(void** data, bool /*isPreset*/)
{
    runDeferred();
    // One form for a bank and for a program: the present state.
    const KWChunk& chunk = presets.state();
    *data = const_cast<void*>(chunk.bytes());
    return static_cast<VstInt32>(chunk.byteCount());
}

VstInt32 KWUniClient::setChunk(void* data, VstInt32 byteSize, bool /*isPreset*/)
{
    if (!data || byteSize <= 0)
        return 0;
    const bool loaded = presets.loadState(data, static_cast<size_t>(byteSize)) == LoadResult::Done;
    if (loaded)
        tellPresetChanged(false);
    return loaded ? 1 : 0;
}

bool KWUniClient::restoreSnapshot()
{
    const bool restored = presets.restoreSnapshot();
    if (restored)
        tellPresetChanged(false);
    return restored;
}

// --- programs: places in the tree of presets ----------------------------------------------------

VstInt32 KWUniClient::getProgram() { return presets.program(); }

void KWUniClient::setProgram(VstInt32 program)
{
    presets.setProgram(program);
    tellPresetChanged(false);
}

void KWUniClient::setProgramName(char* name)
{
    if (!name)
        return;
    presets.setName(PresetKind::Global, {name, strnlen(name, kVstMaxProgNameLen)});
    tellPresetChanged(false);
}

void KWUniClient::getProgramName(char* name)
{
    copyEffectText(name, presets.name(PresetKind::Global).c_str(), kVstMaxProgNameLen);
}

bool KWUniClient::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text)
{
    const std::string name = presets.programName(index);
    copyEffectText(text, name.c_str(), kVstMaxProgNameLen);
    return !name.empty();
}

// --- presets ------------------------------------------------------------------------------------

void KWUniClient::tellPresetChanged(bool listToo)
{
    screen.presetNamesChanged.raise();
    if (listToo)
        screen.presetListRebuild.raise();
    updateDisplay();
}

LoadResult KWUniClient::loadPreset(PresetKind kind, const std::string& path)
{
    const LoadResult result = presets.load(kind, path);
    if (result == LoadResult::Done)
        tellPresetChanged(false);
    return result;
}

LoadResult KWUniClient::savePreset(PresetKind kind, const std::string& path)
{
    const LoadResult result = presets.save(kind, path);
    if (result == LoadResult::Done)
        tellPresetChanged(true);
    return result;
}

void KWUniClient::stepPreset(int tag)
{
    switch (tag) {
    case Tag::PreviousPreset:
        presets.stepProgram(-1);
        break;
    case Tag::NextPreset:
        presets.stepProgram(1);
        break;
    case Tag::PreviousSynthPreset:
        presets.step(PresetKind::Synth, -1);
        break;
    case Tag::NextSynthPreset:
        presets.step(PresetKind::Synth, 1);
        break;
    case Tag::RandomPreset:
        presets.random();
        break;
    default:
        return;
    }
    tellPresetChanged(false);
}

void KWUniClient::runDeferred()
{
    const int32_t tag = sequencer.presetRequest.take();
    if (tag != Mailbox::kEmpty)
        stepPreset(tag);
}

} // namespace ormund
