#pragma once

#include "controls/KWMouseArea.h"
#include "data/state/StateParts.h"
#include "panel/ControlCatalogue.h"

#include <optional>

namespace ormund {

class CControl;
class EditorActions;
class EngineLink;
class KWOptionMenu;

// Turns what a control reports into a call on the engine, by the control's row in the catalogue.
// Screen thread.
class ValueDispatch {
public:
    ValueDispatch(EngineLink& ownEngine, EditorActions& ownActions)
        : engine(ownEngine), actions(ownActions)
    {
    }

    void valueChanged(CControl& control);

    // The parameter's value for a control's. A menu's item comes back as its own index once the
    // parameter truncates it: the scales are rounded up for that.
    static float parameterValue(const ControlRow& row, float value) { return value * row.scale; }

private:
    // What the roll area plays with.
    struct Looping {
        float steps;
        float looper;
    };
    void setParameter(const ControlRow& row, float value);
    void learn(KWOptionMenu& menu, float value);
    void learnOfSubMenu(KWOptionMenu& menu, float value);
    void roll(const KWMouseArea::State& state);
    void preset(KWOptionMenu& menu, float value, PresetKind kind);

    EngineLink& engine;
    EditorActions& actions;
    std::optional<Looping> beforeRoll; // while it is held
};

} // namespace ormund
