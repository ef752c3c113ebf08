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
    kBeDocument = 13, // the song is a document of the program's; `opt` 1: offers what a crash left
    kIsChanged = 14,  // since the last load or save
    kAskClose = 15,   // `opt` 1 asks the user; answers 0 until there is an answer, 1 go, 2 stay
    kKeepSong = 16,   // at once where it is in no file; `opt` 1: the next start offers it
    kSongPath = 17,   // into `ptr`; empty where it lies in no file
    kSaveSong = 18,   // to its file; 0 where it lies in none of the user's
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

VstIntPtr runDocument(PluginLibrary& library, VstIntPtr code, void* ptr, float opt)
{
    Document& document = library.document;
    switch (code) {
    case kBeDocument: {
        document.isProgram = true;
        const std::string left = library.beginAutosave();
        if (opt >= 0.5f)
            document.offered = left;
        return 1;
    }
    case kIsChanged:
        return document.isChanged ? 1 : 0;
    case kAskClose:
        if (opt >= 0.5f)
            document.close = Document::Close::Asked;
        return document.close == Document::Close::Go  ? 1
            : document.close == Document::Close::Stay ? 2
                                                      : 0;
    case kKeepSong:
        return (opt >= 0.5f ? library.autosave.keepForNextStart() : library.autosave.look()) ? 1
                                                                                             : 0;
    case kSongPath: {
        const std::string path = library.ownSongPath();
        if (!ptr || path.size() >= static_cast<size_t>(kMessageBytes))
            return 0;
        std::memcpy(ptr, path.c_str(), path.size() + 1);
        return 1;
    }
    case kSaveSong: {
        const std::string path = library.ownSongPath();
        return !path.empty() && library.save(PresetKind::Global, path) == LoadResult::Done ? 1 : 0;
    }
    default:
        return 0;
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
    case kBeDocument:
    case kIsChanged:
    case kAskClose:
    case kKeepSong:
    case kSongPath:
    case kSaveSong:
        return runDocument(library, code, ptr, opt);
    default:
        return ptr && loadOrSave(library, code, static_cast<const char*>(ptr)) ? 1 : 0;
    }
}

} // namespace ormund
