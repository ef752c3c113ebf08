// The song as a document of the stand-alone program: its keys, and the questions before it goes.

#include "controls/KWFrame.h"
#include "data/library/Recovery.h"
#include "editor/FileSheet.h"
#include "editor/KWUniClientEditor.h"
#include "editor/QuestionLine.h"
#include "host/plugin/KWUniClient.h"
#include "platform/KWFileio.h"

#include <utility>

namespace ormund {

namespace {
constexpr char kNameless[] = "New song";
constexpr size_t kLongestName = 24; // bytes that surely fit into the line

std::string shortened(const std::string& name)
{
    if (name.size() <= kLongestName)
        return name;
    std::string start = name.substr(0, kLongestName);
    while (!start.empty() && (static_cast<unsigned char>(name[start.size()]) & 0xC0) == 0x80)
        start.pop_back(); // no part of a letter
    return start + "…";
}
} // namespace

std::string KWUniClientEditor::songName() const
{
    std::string name = link.presetName(PresetKind::Global);
    if (name.empty())
        name = kNameless;
    return shortened(name);
}

// In a host these keys are the host's.
bool KWUniClientEditor::documentKey(const CKeyEvent& event)
{
    if (!engine.library.document.isProgram || !(event.modifiers & kControl) || event.isRepeat)
        return false;
    const bool shift = (event.modifiers & kShift) != 0;
    switch (event.character | 0x20) {
    case U's':
        shift ? saveSongAs({}) : saveSong({});
        return true;
    case U'o':
        leaveSong("another opens", [this] { askForPresetToLoad(PresetKind::Global); }, {});
        return true;
    case U'n':
        leaveSong("a new one begins", [this] { newSong(); }, {});
        return true;
    default:
        return false;
    }
}

void KWUniClientEditor::saveSong(const std::function<void()>& then)
{
    const std::string path = engine.library.ownSongPath();
    if (path.empty()) {
        saveSongAs(then);
        return;
    }
    if (link.savePreset(PresetKind::Global, path) && then)
        then();
}

void KWUniClientEditor::saveSongAs(const std::function<void()>& then)
{
    constexpr PresetKind kind = PresetKind::Global;
    ask({.kind = KWFileChooser::Kind::Save,
            .title = "Save song",
            .extension = presetKindRow(kind).extension,
            .extensionName = presetKindRow(kind).fileKind,
            .startFolder = link.presetSaveFolder(kind),
            .fileName = newPresetName(kind)},
        [this, then](const std::string& path) {
            if (path.empty() || !link.savePreset(kind, path))
                return;
            engine.screen.presetListRebuild.raise();
            if (then)
                then();
        });
}

void KWUniClientEditor::newSong()
{
    {
        const EditGesture gesture(recorder, EditScope::Load);
        engine.library.newSong();
    }
    redrawFrame();
}

void KWUniClientEditor::leaveSong(
    const std::string& verb, const std::function<void()>& go, const std::function<void()>& stay)
{
    recorder.watch();
    if (!recorder.isChanged()) {
        go();
        return;
    }
    questionLine->ask("Save “" + songName() + "” before " + verb + "?",
        {{"SAVE", [this, go] { saveSong(go); }}, {"DON’T SAVE", go}, {"CANCEL", stay}});
}

void KWUniClientEditor::refreshDocument()
{
    Document& document = engine.library.document;
    document.isChanged = recorder.isChanged();
    const bool isAsked = document.close == Document::Close::Asked;
    if (questionLine->isAsking()) {
        if (isAsked)
            document.close = Document::Close::Stay;
        return;
    }
    if (isAsked) {
        if (fileSheet->isOpen() || chooser.isOpen())
            return;                             // the name is being asked for
        document.close = Document::Close::Stay; // until an answer says otherwise
        leaveSong("it closes", [this] { engine.library.document.close = Document::Close::Go; }, {});
    } else if (!document.offered.empty()) {
        const std::string path = std::exchange(document.offered, {});
        questionLine->ask(
            "“" + shortened(recoveredName(path)) + "” was not saved (" + recoveredDate(path) + ").",
            {{"OPEN", [this, path] { loadPreset(PresetKind::Global, path); }},
                {"DELETE",
                    [this, path] {
                        KWFileio::remove(path);
                        engine.screen.presetListRebuild.raise();
                    }},
                {"LATER", {}}});
    }
}

} // namespace ormund
