// What a control or a key can ask of the editor itself.

#include "editor/KWUniClientEditor.h"

#include "controls/KWFrame.h"
#include "controls/KWOptionMenu.h"
#include "editor/AboutBox.h"
#include "editor/FileSheet.h"
#include "editor/MidiExport.h"
#include "engine/KWUniClient.h"
#include "platform/KWFileio.h"
#include "platform/Messages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr const char* kMapTitle = "Ormund CC Map";

} // namespace

void KWUniClientEditor::showAbout() { static_cast<AboutBox*>(getControl(kAboutTag))->show(); }

void KWUniClientEditor::undo()
{
    recorder.undo();
    redrawFrame();
}

void KWUniClientEditor::redo()
{
    recorder.redo();
    redrawFrame();
}

void KWUniClientEditor::redrawFrame()
{
    if (frame)
        frame->invalidAll();
}

void KWUniClientEditor::togglePlay()
{
    link.setParameter(Tag::Play, engine.parameters.index(Tag::Play) != 0 ? 0.0f : 1.0f);
}

void KWUniClientEditor::stepScale(int steps)
{
    constexpr std::array kSizes = {1.0, 1.5, 2.0};
    const auto here = std::ranges::lower_bound(kSizes, getScale());
    const int next = std::clamp(int(here - kSizes.begin()) + steps, 0, int(kSizes.size()) - 1);
    chooseScale(kSizes[size_t(next)]);
}

void KWUniClientEditor::chooseScale(double wanted)
{
    setScale(wanted);
    link.storePanelScale(getScale());
    engine.sizeWindow(
        int(std::lround(kPanelWidth * getScale())), int(std::lround(kPanelHeight * getScale())));
}

// ---- files ----

void KWUniClientEditor::ask(const KWFileChooser::Request& request, KWFileChooser::Answer answer)
{
    if (chooser.isOpen() || fileSheet->isOpen())
        return;
    if (!KWFileChooser::isAvailable() || !chooser.open(request, answer))
        fileSheet->ask(request, std::move(answer));
}

void KWUniClientEditor::askForMapToLoad()
{
    ask({.kind = KWFileChooser::Kind::Load,
            .title = kMapTitle,
            .extension = "kwm",
            .extensionName = kMapTitle,
            .startFolder = link.mapFolder(),
            .fileName = {}},
        [this](const std::string& path) {
            if (path.empty())
                return;
            const EditGesture gesture(recorder, EditScope::Map);
            link.loadMap(path);
        });
}

void KWUniClientEditor::askForMapToSave()
{
    ask({.kind = KWFileChooser::Kind::Save,
            .title = kMapTitle,
            .extension = "kwm",
            .extensionName = kMapTitle,
            .startFolder = link.mapFolder(),
            .fileName = "map.kwm"},
        [this](const std::string& path) {
            if (!path.empty())
                link.saveMap(path);
        });
}

void KWUniClientEditor::askForPresetToLoad(PresetKind kind)
{
    ask({.kind = KWFileChooser::Kind::Load,
            .title = presetKindRow(kind).fileKind,
            .extension = presetKindRow(kind).extension,
            .extensionName = presetKindRow(kind).fileKind,
            .startFolder = link.presetFolder(kind),
            .fileName = {}},
        [this, kind](const std::string& path) {
            if (!path.empty())
                loadPreset(kind, path);
        });
}

void KWUniClientEditor::askForPresetToSave(PresetKind kind)
{
    ask({.kind = KWFileChooser::Kind::Save,
            .title = presetKindRow(kind).fileKind,
            .extension = presetKindRow(kind).extension,
            .extensionName = presetKindRow(kind).fileKind,
            .startFolder = link.presetSaveFolder(kind),
            .fileName = link.presetName(kind) + "." + presetKindRow(kind).extension},
        [this, kind](const std::string& path) {
            if (path.empty())
                return;
            link.savePreset(kind, path);
            engine.screen.presetListRebuild.raise();
        });
}

void KWUniClientEditor::loadPreset(PresetKind kind, const std::string& path)
{
    {
        const EditGesture gesture(recorder, EditScope::Load);
        link.loadPreset(kind, path);
    }
    engine.updateDisplay();
    redrawFrame();
}

void KWUniClientEditor::loadPresetOfMenu(KWOptionMenu& menu, PresetKind kind)
{
    std::string path;
    if (menu.getPresetPath(path, presetKindRow(kind).extension))
        loadPreset(kind, path);
}

// ---- the MIDI file ----

int KWUniClientEditor::midiBars() const { return engine.parameters.index(Tag::FileBars) + 1; }

void KWUniClientEditor::dragMidiFile()
{
    const std::vector<uint8_t> bytes = exportMidi(engine, midiBars());
    std::error_code ignored;
    // A folder of its own: the name that the other program shows is then a plain one.
    std::string folder = std::filesystem::temp_directory_path(ignored) / "ormund-XXXXXX";
    if (!::mkdtemp(folder.data()))
        return;
    const std::string path = folder + "/" + midiFileName();
    if (KWFileio::write(path, bytes.data(), bytes.size()))
        frame->dragFiles({path});
}

void KWUniClientEditor::askForMidiFile()
{
    ask({.kind = KWFileChooser::Kind::Save,
            .title = "Save MIDI file",
            .extension = "mid",
            .extensionName = "MIDI file",
            .startFolder = {},
            .fileName = midiFileName()},
        [this](const std::string& path) {
            if (path.empty())
                return;
            const std::vector<uint8_t> bytes = exportMidi(engine, midiBars());
            if (!KWFileio::write(path, bytes.data(), bytes.size()))
                showMessage("saving %s failed", path.c_str());
        });
}

std::string KWUniClientEditor::midiFileName() const
{
    const std::string preset = link.presetName(PresetKind::Global);
    return (preset.empty() ? "Ormund" : preset) + ".mid";
}
