// What a control or a key can ask of the editor itself.

#include "editor/KWUniClientEditor.h"

#include "base/Product.h"
#include "controls/KWFrame.h"
#include "controls/KWOptionMenu.h"
#include "editor/AboutBox.h"
#include "editor/FileSheet.h"
#include "editor/MidiExport.h"
#include "editor/PanelScale.h"
#include "host/plugin/KWUniClient.h"
#include "platform/KWFileio.h"
#include "platform/Messages.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace ormund {

namespace {

constexpr const char* kMapTitle = "Ormund CC Map";

} // namespace

void KWUniClientEditor::showAbout() { aboutBox->show(); }

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

// ---- the panel's size ----

// Before the window opens: as chosen last, else as the desktop shows its other programs, and never
// larger than the screen. The desktop is asked once, and not at all for an instance without a
// window.
void KWUniClientEditor::chooseFirstScale()
{
    if (desktopAsked || isOpenNow)
        return;
    desktopAsked = true;
    desktop = askDesktop();
    setScale(fittingPanelScale(link.storedPanelScale().value_or(desktop.scale), desktop));
}

// What a user drags a host's window to is a choice too.
bool KWUniClientEditor::fitInto(int& fittedWidth, int& fittedHeight, bool takes)
{
    const double room =
        std::min(double(fittedWidth) / kPanelWidth, double(fittedHeight) / kPanelHeight);
    const double fitted = kPanelScales[size_t(panelScaleIndex(room))];
    if (takes && fitted != getScale()) {
        desktopAsked = true;
        link.storePanelScale(fitted);
        setScale(fitted);
    }
    fittedWidth = int(std::lround(kPanelWidth * fitted));
    fittedHeight = int(std::lround(kPanelHeight * fitted));
    return true;
}

void KWUniClientEditor::stepScale(int steps)
{
    const int index = panelScaleIndex(getScale()) + steps;
    choosePanelScale(std::clamp(index, 0, int(kPanelScales.size()) - 1));
}

void KWUniClientEditor::choosePanelScale(int index)
{
    const double before = getScale();
    const double wanted = fittingPanelScale(kPanelScales[size_t(index)], desktop);
    link.storePanelScale(wanted);
    if (wanted == before)
        return;
    setScale(wanted);
    const bool followed = engine.sizeWindow(
        int(std::lround(kPanelWidth * wanted)), int(std::lround(kPanelHeight * wanted)));
    if (!followed && engine.hasHost()) {
        // The host's window cannot change, so a larger panel would be cut off.
        setScale(before);
        showMessage("This host keeps the size of an open window. The panel will have %d %% when "
                    "it is opened again.",
            int(wanted * 100));
        desktopAsked = false;
    }
}

// ---- files ----

void KWUniClientEditor::ask(const KWFileChooser::Request& request, KWFileChooser::Answer answer)
{
    if (fileSheet->isOpen())
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
            .fileName = newPresetName(kind)},
        [this, kind](const std::string& path) {
            if (path.empty())
                return;
            link.savePreset(kind, path);
            engine.screen.presetListRebuild.raise();
        });
}

std::string KWUniClientEditor::newPresetName(PresetKind kind) const
{
    const std::string present = link.presetName(kind);
    return (present.empty() ? "New preset" : present) + "." + presetKindRow(kind).extension;
}

void KWUniClientEditor::loadPreset(PresetKind kind, const std::string& path)
{
    {
        const EditGesture gesture(recorder, EditScope::Load);
        link.loadPreset(kind, path);
    }
    engine.screen.presetNamesChanged.raise(); // a file that could not be loaded names nothing
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
    return (preset.empty() ? product::kName : preset) + ".mid";
}

} // namespace ormund
