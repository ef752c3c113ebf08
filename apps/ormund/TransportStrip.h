// The row above the plug-in's panel: transport, tempo, cycle, who leads, and what plays.
#pragma once

#include "apps/ormund/Player.h"
#include "apps/ormund/StripViews.h"
#include "controls/KWDisplay.h"
#include "controls/KWFrame.h"
#include "controls/KWOptionMenu.h"
#include "view/CBitmap.h"

#include <vector>

namespace ormund {

// The screen's thread.
class TransportStrip final : private CControlListener, private VSTGUIEditorInterface {
public:
    static constexpr int kWidth = 1001; // panel pixels, as wide as the plug-in's panel
    static constexpr int kHeight = 40;

    // Opens in `pane` at one of the frame's scales. The list of leaders lies over the panel
    // below, `panelHeight` panel pixels high.
    TransportStrip(Player& ownPlayer, void* pane, double scale, int panelHeight);
    ~TransportStrip() override;

    void idle();
    void setScale(double scale) { frame->setScale(scale); }
    double scale() const { return frame->getScale(); }
    // The parts of the pane that are used now, device pixels: the row, a list that is open, a hint.
    std::vector<CRect> shownParts() const;
    // True when the key is one of the program's own.
    bool takeKey(const CKeyEvent& key);

private:
    enum Tag : long { kToStart = 1, kPlay, kTempo, kCycle, kFirstBar, kLastBar, kSync, kSendClock };

    void valueChanged(CControl* control) override;
    bool frameKeyDown(const CKeyEvent& key) override { return takeKey(key); }
    void build();
    void addSync(const CRect& where);
    void addHint(KWControl* control, const char* text);
    template <typename View, typename... Arguments>
    View* add(Arguments&&... arguments);
    void cycleChanged();

    Player& player;
    KWFrame* frame; // ours
    CBitmap* arrow;
    CBitmap* check;
    IconButton* playButton = nullptr;
    IconButton* cycleButton = nullptr;
    StripText* place = nullptr;
    StripText* status = nullptr;
    NumberField* tempo = nullptr;
    NumberField* firstBar = nullptr;
    NumberField* lastBar = nullptr;
    KWOptionMenu* sync = nullptr;
    IconButton* sendButton = nullptr;
    StripText* leads = nullptr;
    std::vector<KWDisplay*> hints;
};

// Bar, beat and sixteenth from 1, as "12.3.1".
std::string placeText(double beat);

} // namespace ormund
