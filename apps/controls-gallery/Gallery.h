// Every control class in its modes, on one sheet that needs no engine: for trying by hand, for
// pictures and for measuring what painting costs.
#pragma once

#include "controls/KWBitSet128.h"
#include "controls/KWFrame.h"
#include "controls/KWKeyboardView.h"
#include "controls/KWPolyObjectView.h"
#include "data/music/KWKeyState.h"
#include "data/music/KWSystemInfo.h"
#include "data/tracks/KWBtnLine.h"
#include "data/tracks/KWListLine.h"
#include "data/tracks/KWTable.h"
#include "data/tracks/KWZoneHandlerContainer.h"
#include "skin/SkinProvider.h"
#include "view/CFontDesc.h"

#include <memory>
#include <string>
#include <vector>

namespace ormund {

class KWDisplay;
class KWImage;
class KWKnob;
class KWOptionMenu;
class KWTableView;

class Gallery : public CControlListener, public KWKeyListener {
public:
    static constexpr int kWidth = 960;
    static constexpr int kHeight = 640;
    static constexpr int kPageSwitch = 900; // tag of the button that changes the gated page

    // A null parent shows in memory.
    explicit Gallery(void* parentWindow);
    ~Gallery() override;

    KWFrame& frame() { return *panel; }
    // A step of the pretended song, then the frame's idle.
    void idle();
    // The song stands still: nothing on the sheet changes by itself.
    bool isPlaying = true;
    // What happened last, as it stands on the sheet.
    const std::string& lastEvent() const { return eventText; }
    KWTable& pitchTable() { return pitch; }

    void valueChanged(CControl* control) override;
    void controlBeginEdit(CControl* control) override;
    void controlEndEdit(CControl* control) override;
    void keyClicked(int note, int velocity, bool right) override;

private:
    static CRect at(int x, int y, int width, int height) { return {x, y, x + width, y + height}; }
    CBitmap* bitmap(long id);
    template <typename Control>
    Control* add(Control* control);
    void caption(int x, int y, const char* text);
    void hint(KWControl* control, const char* text);
    void tell(const std::string& text);

    // GalleryControls.cpp
    void addKnobs();
    void addButtons();
    void addDisplays();
    void addPictures();
    void addMenus();
    // GallerySteps.cpp
    void addTables();
    void addLines();
    void addKeyboard();
    // GalleryPlain.cpp
    void addPlainTables();
    void addPlainSteps();
    void addPlainControls();

    SkinProvider skin;
    CFontDesc* font;
    std::vector<CBitmap*> bitmaps;

    // What the controls show.
    KWSystemInfo info;
    KWTable pitch{&info, 32};
    KWTable velocity{&info, 32};
    KWTable curve{&info, 32};
    KWTable connected{&info, 32};
    KWTable centred{&info, 16};
    KWTable toggles{&info, 16};
    KWBtnLine locks{&info, 32, 1};
    KWBtnLine choice{&info, 16, 1};
    KWListLine octaves{&info, 32, 1};
    KWListLine chords{&info, 32, 1};
    KWListLine bends{&info, 16, 1};
    KWBtnLine mutes{&info, 16, 1};
    KWZoneHandlerContainer loop{32, 1};
    KWZoneHandlerContainer plainLoop{16, 1};
    KWKeyState keys;
    KWKeyState pickedKeys;
    KWPolyObjectSet shapes;
    KWBitSet128 pages;
    Crossing<float> baseNote = 36.0f;
    Crossing<float> markerX = 0.0f;
    Crossing<float> modulated = 0.0f;
    Crossing<float> opacity = 128.0f; // of the faded picture
    float scroll = 0;
    float scrollShare = 0.4f;
    int songTick = 0;
    std::string eventText;
    int openEdits = 0;

    std::unique_ptr<KWFrame> panel;
    KWDisplay* eventLine = nullptr;
    KWControl* rightClickMenu = nullptr;
};

template <typename Control>
Control* Gallery::add(Control* control)
{
    control->setListener(this);
    panel->addView(control);
    return control;
}

} // namespace ormund
