#include "host/plugin/ScriptInterface.h"

#include "platform/Messages.h"

#include <algorithm>
#include <cstring>

namespace ormund {

namespace {

enum ScriptCode : VstIntPtr {
    kLoadGlobal = 1,
    kLoadSynth = 2,
    kSaveGlobal = 3,
    kSaveSynth = 4,
    kLoadMap = 5,
    kSaveMap = 6,
    kLearn = 7,
    kTakeMessage = 8,
    kClearParameter = 9,
    kLockButton = 10,
    kRenderOffline = 11,
    kReadParameter = 12, // a host's own call reads the host's parameters alone
};

// The text and a zero; answers the text's bytes.
VstIntPtr takeMessage(void* ptr)
{
    const std::string text = currentMessage();
    if (text.empty())
        return 0;
    const size_t length = std::min(text.size(), static_cast<size_t>(kMessageBytes - 1));
    std::memcpy(ptr, text.data(), length);
    static_cast<char*>(ptr)[length] = 0;
    forgetMessage();
    return static_cast<VstIntPtr>(length);
}

bool loadOrSave(PluginLibrary& library, VstIntPtr code, const char* path)
{
    switch (code) {
    case kLoadGlobal:
        return library.load(PresetKind::Global, path) == LoadResult::Done;
    case kLoadSynth:
        return library.load(PresetKind::Synth, path) == LoadResult::Done;
    case kSaveGlobal:
        return library.save(PresetKind::Global, path) == LoadResult::Done;
    case kSaveSynth:
        return library.save(PresetKind::Synth, path) == LoadResult::Done;
    case kLoadMap:
        return library.presets.loadMap(path) == LoadResult::Done;
    case kSaveMap:
        return library.presets.saveMap(path) == LoadResult::Done;
    default:
        return false;
    }
}

} // namespace

VstIntPtr runScript(
    Sequencer& sequencer, PluginLibrary& library, VstIntPtr code, void* ptr, float opt)
{
    library.runDeferred();
    switch (code) {
    case kLearn: {
        if (!ptr)
            return 0;
        int32_t target[2];
        std::memcpy(target, ptr, sizeof target);
        if (target[0] >= 0 && !parameterEntry(target[0]))
            return 0;
        sequencer.midiMap.setLearnTarget(
            target[0], std::clamp<int32_t>(target[1], 0, kTrackSteps - 1));
        return 1;
    }
    case kTakeMessage:
        return ptr ? takeMessage(ptr) : 0;
    case kClearParameter:
        if (!(opt >= 0.0f && opt < static_cast<float>(kTagCount)))
            return 0;
        sequencer.midiMap.removeParameter(static_cast<int>(opt));
        return 1;
    case kLockButton:
        sequencer.setLockButton(opt >= 0.5f);
        return 1;
    case kRenderOffline:
        library.setRendersOffline(opt >= 0.5f);
        return 1;
    case kReadParameter: {
        const bool isTag = opt >= 0.0f && opt < static_cast<float>(kTagCount);
        if (!ptr || !isTag || !parameterEntry(static_cast<int>(opt)))
            return 0;
        const float raw = sequencer.parameters.raw(static_cast<int>(opt));
        std::memcpy(ptr, &raw, sizeof raw);
        return 1;
    }
    default:
        return ptr && loadOrSave(library, code, static_cast<const char*>(ptr)) ? 1 : 0;
    }
}

} // namespace ormund
