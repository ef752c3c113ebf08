#pragma once

#include "controls/KWPolyObjectView.h"
#include "panel/ControlCatalogue.h"

#include <memory>
#include <string>
#include <vector>

namespace ormund {

class CBitmap;
class CControlListener;
class EngineLink;
class KWBitSet128;
class KWControl;
class KWFrame;
class KWOptionMenu;
enum class PresetKind : uint8_t;
struct ScreenState;

// Makes controls from catalogue rows, bound to the engine and to the page gate. It keeps what the
// controls only point to, so it lives as long as they do. Screen thread.
class ControlFactory {
public:
    ControlFactory(KWFrame& frame, CControlListener& listener, EngineLink& engine,
        const ScreenState& screen, const KWBitSet128& gate);
    ~ControlFactory();

    // Null for a row that is part of another control (the target sub-menus).
    KWControl* make(const ControlRow& row);

    // Fills a preset menu again from its folders.
    void fillPresetMenu(KWOptionMenu& menu, PresetKind kind);

    // The keys count as so many semitones higher from now on: their marks move down.
    void shiftKeyZones(int semitones);

private:
    KWControl* makeKnob(const ControlRow&);
    KWControl* makeButton(const ControlRow&);
    KWControl* makeMenu(const ControlRow&);
    KWControl* makeTable(const ControlRow&);
    KWControl* makeSwitches(const ControlRow&);
    KWControl* makeList(const ControlRow&);
    KWControl* makeZone(const ControlRow&);
    KWControl* makeHint(const ControlRow&);
    KWControl* makeDisplay(const ControlRow&);
    KWControl* makeImage(const ControlRow&);
    KWControl* makeOverlay(const ControlRow&);
    KWControl* makeKeyboard(const ControlRow&);
    KWControl* makeMouseArea(const ControlRow&);
    KWControl* makeLink(const ControlRow&);
    KWControl* makeAbout(const ControlRow&);
    void dress(KWOptionMenu& menu) const;

    KWFrame& frame;
    CControlListener& listener;
    EngineLink& engine;
    const ScreenState& screen;
    const KWBitSet128& gate;
    struct KeyZones {
        KWPolyObjectView* view;
        std::unique_ptr<KWPolyObjectSet> marks;
        int keyMode;
    };
    std::vector<KeyZones> keyZones;
    int keyShift = 0;
};

} // namespace ormund
