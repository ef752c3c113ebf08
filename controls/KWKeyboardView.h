// A piano that shows which notes are on, takes clicks as key presses, and can pick a note instead.
#pragma once

#include "controls/KWControl.h"
#include "data/music/KWKeyState.h"

#include <array>

namespace ormund {

class KWKeyListener {
public:
    virtual ~KWKeyListener() = default;
    virtual void keyClicked(int note, int velocity, bool right) = 0;
};

// Screen thread. A press goes to the engine through the key state's one-slot mailboxes: a press
// overwrites a slot, a drag waits until both are taken.
class KWKeyboardView : public KWControl, public CControlListener {
public:
    enum ButtonTag { kOctaveUp = 10055, kOctaveDown = 10056 };

    KWKeyboardView(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame);

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    void updateControl(void* context) override;
    void valueChanged(CControl* sender) override;
    bool takesKeys() const override { return false; }

    // The note at a point, -1 for none.
    int noteAt(const CPoint& where) const;

    // Of one octave, from its corner: C#, D#, F#, G#, A#.
    std::array<CRect, 5> blackKeyRects;
    KWKeyState* keyState = nullptr;
    KWKeyListener* keyListener = nullptr;
    CBitmap* whiteLeft = nullptr;   // C and F
    CBitmap* whiteMiddle = nullptr; // D, G and A
    CBitmap* whiteRight = nullptr;  // E and B
    CBitmap* blackKey = nullptr;
    CBitmap* firstWhite = nullptr; // stands in for the very first key
    Crossing<float>* baseNote = nullptr;
    int octaves = 4;
    bool chainWhite = false; // a lit white key beside a lit one uses a third frame
    bool pickMode = false;   // reports a note as its value and touches no state
    bool hidden = false;

private:
    int keyWidth() const;
    float base() const;
    std::array<uint8_t, KWKeyState::kNotes> classes() const;
    void drawWhiteKeys(CDrawContext* context);
    void drawBlackKeys(CDrawContext* context);
    void press(int note, int velocity, bool holds);
    void pick(int note);

    std::array<uint32_t, 4> lastKeys{};
    std::array<uint8_t, KWKeyState::kNotes> lastClasses{};
    float lastBaseNote = -1.0f;
    int currentNote = -1;
    bool mouseDown = false;
};

} // namespace ormund
