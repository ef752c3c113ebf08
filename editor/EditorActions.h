#pragma once

#include "data/state/StateParts.h"

namespace ormund {

class KWOptionMenu;

// What a control can ask of the editor itself, beside moving a value of the engine.
class EditorActions {
public:
    virtual ~EditorActions() = default;
    virtual void showAbout() = 0;
    virtual void askForMapToLoad() = 0;
    virtual void askForMapToSave() = 0;
    virtual void askForPresetToLoad(PresetKind kind) = 0;
    virtual void askForPresetToSave(PresetKind kind) = 0;
    virtual void loadPresetOfMenu(KWOptionMenu& menu, PresetKind kind) = 0;
    virtual void undo() = 0;
    virtual void redo() = 0;
    virtual void choosePanelScale(int index) = 0; // of kPanelScales
    virtual void redrawFrame() = 0;
};

} // namespace ormund
