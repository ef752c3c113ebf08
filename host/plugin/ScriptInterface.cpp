// The door for scripts: what the editor does with files, learning and settings, through the effect
// interface alone, so that tests and the offline renderer need no window.

#include "host/plugin/KWUniClient.h"

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

} // namespace

VstIntPtr KWUniClient::vendorSpecific(VstInt32 index, VstIntPtr value, void* ptr, float opt)
{
    if (index != kUniqueId)
        return 0;
    runDeferred();
    switch (value) {
    case kLearn: {
        if (!ptr)
            return 0;
        int32_t target[2];
        std::memcpy(target, ptr, sizeof target);
        if (target[0] >= 0 && !parameterEntry(target[0]))
            return 0;
        midiMap.setLearnTarget(target[0], std::clamp<int32_t>(target[1], 0, kTrackSteps - 1));
        return 1;
    }
    case kTakeMessage:
        return ptr ? takeMessage(ptr) : 0;
    case kClearParameter:
        if (!(opt >= 0.0f && opt < static_cast<float>(kTagCount)))
            return 0;
        midiMap.removeParameter(static_cast<int>(opt));
        return 1;
    case kLockButton:
        setLockButton(opt >= 0.5f);
        return 1;
    case kRenderOffline:
        setRendersOffline(opt >= 0.5f);
        return 1;
    case kReadParameter: {
        const bool isTag = opt >= 0.0f && opt < static_cast<float>(kTagCount);
        if (!ptr || !isTag || !parameterEntry(static_cast<int>(opt)))
            return 0;
        const float raw = parameters.raw(static_cast<int>(opt));
        std::memcpy(ptr, &raw, sizeof raw);
        return 1;
    }
    default:
        return ptr && scriptLoadOrSave(value, static_cast<const char*>(ptr)) ? 1 : 0;
    }
}

bool KWUniClient::scriptLoadOrSave(VstIntPtr code, const char* path)
{
    switch (code) {
    case kLoadGlobal:
        return loadPreset(PresetKind::Global, path) == LoadResult::Done;
    case kLoadSynth:
        return loadPreset(PresetKind::Synth, path) == LoadResult::Done;
    case kSaveGlobal:
        return savePreset(PresetKind::Global, path) == LoadResult::Done;
    case kSaveSynth:
        return savePreset(PresetKind::Synth, path) == LoadResult::Done;
    case kLoadMap:
        return presets.loadMap(path) == LoadResult::Done;
    case kSaveMap:
        return presets.saveMap(path) == LoadResult::Done;
    default:
        return false;
    }
}

} // namespace ormund
