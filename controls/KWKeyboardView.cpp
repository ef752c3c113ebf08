#include "controls/KWKeyboardView.h"

#include "data/music/KWKeyState.h"
#include "platform/Messages.h"
#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <cstddef>

namespace ormund {

namespace {
constexpr int kKeyboardKind = 9;
constexpr int kWhitesOfOctave = 7;
constexpr int kPlainKeyWidth = 12;
constexpr int kNoNote = -1;
constexpr int kLeastVelocity = 27;
constexpr int kMostVelocity = 127;
constexpr int kVelocitySpan = 100;
} // namespace

KWKeyboardView::KWKeyboardView(
    const CRect& viewSize, CControlListener* controlListener, long controlTag, KWFrame* ownFrame)
    : KWControl(viewSize, controlListener, controlTag, ownFrame)
{
    controlKind = kKeyboardKind;
}

int KWKeyboardView::keyWidth() const { return whiteLeft ? whiteLeft->getWidth() : kPlainKeyWidth; }

float KWKeyboardView::base() const { return baseNote ? baseNote->load() : 0.0f; }

int KWKeyboardView::noteAt(const CPoint& where) const
{
    if (size.isEmpty())
        return kNoNote;
    const int white = static_cast<int>(static_cast<float>(where.x - size.left)
        / static_cast<float>(size.width()) * static_cast<float>(octaves * kWhitesOfOctave));
    const int octave = white / kWhitesOfOctave;
    const int keyW = keyWidth();
    const int originX = size.left + keyW * octave * kWhitesOfOctave;
    int semitone = kNoNote;
    for (int i = 0; i < static_cast<int>(blackKeyRects.size()) && semitone < 0; ++i) {
        CRect key = blackKeyRects[static_cast<size_t>(i)];
        if (key.offset(originX, size.top).pointInside(where))
            semitone = 2 * i + (i >= 2 ? 2 : 1);
    }
    for (int i = 0; i < kWhitesOfOctave && semitone < 0; ++i) {
        const CRect key(originX + i * keyW, size.top, originX + (i + 1) * keyW, size.bottom);
        if (octave < octaves && key.pointInside(where))
            semitone = 2 * i - (i >= 3 ? 1 : 0);
    }
    if (semitone < 0)
        return kNoNote;
    return static_cast<int>(static_cast<float>(semitone + octave * 12) + base());
}

void KWKeyboardView::draw(CDrawContext* context)
{
    if (!isLive() || hidden || !keyState || !whiteLeft || !blackKey)
        return;
    lastKeys = keyState->words();
    lastClasses = classes();
    lastBaseNote = base();
    drawWhiteKeys(context);
    drawBlackKeys(context);
    KWControl::draw(context);
}

void KWKeyboardView::drawWhiteKeys(CDrawContext* context)
{
    const int keyW = keyWidth();
    const int h = size.height();
    int note = static_cast<int>(base());
    bool litBefore = false;
    for (int i = 0; i < octaves * kWhitesOfOctave; ++i) {
        const int degree = i % kWhitesOfOctave;
        CBitmap* bitmap = degree == 0 || degree == 3 ? whiteLeft
            : degree == 2 || degree == 6             ? whiteRight
                                                     : whiteMiddle;
        if (i == 0 && firstWhite)
            bitmap = firstWhite;
        const bool lit = keyState->hasNote(note);
        const int state = lit ? (litBefore ? 2 : 1) : 0;
        litBefore = lit && chainWhite;
        if (bitmap) {
            const int x = size.left + i * keyW;
            drawFrameOf(context, bitmap, {x, size.top, x + keyW, size.bottom},
                (keyState->classOf(note) + state) * h);
        }
        note += degree == 2 || degree == 6 ? 1 : 2;
    }
}

void KWKeyboardView::drawBlackKeys(CDrawContext* context)
{
    const int keyHeight = blackKeyRects[0].height();
    for (int octave = 0; octave < octaves; ++octave) {
        int note = static_cast<int>(base()) + 1 + 12 * octave;
        const int originX = size.left + octave * keyWidth() * kWhitesOfOctave;
        for (size_t j = 0; j < blackKeyRects.size(); ++j) {
            CRect key = blackKeyRects[j];
            const int picture = keyState->classOf(note) + (keyState->hasNote(note) ? 1 : 0);
            drawFrameOf(context, blackKey, key.offset(originX, size.top), picture * keyHeight);
            note += j == 1 ? 3 : 2;
        }
    }
}

CMouseEventResult KWKeyboardView::onMouseDown(const CPoint& where, int buttons)
{
    if (!isLive() || !size.pointInside(where) || !(whiteLeft || pickMode))
        return kMouseEventNotHandled;
    const int note = noteAt(where);
    if (note == kNoNote)
        return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
    // Low on a key is loud.
    const float depth =
        static_cast<float>(where.y - size.top) / static_cast<float>(std::max(size.height(), 1));
    const int velocity = std::clamp(
        static_cast<int>(depth * kVelocitySpan + kLeastVelocity), kLeastVelocity, kMostVelocity);
    if (buttons & kLButton) {
        if (pickMode)
            pick(note);
        else if (keyState)
            press(note, velocity, true);
        if (keyListener)
            keyListener->keyClicked(note, velocity, false);
    }
    if ((buttons & kRButton) && keyState) {
        // Not held by the mouse, so it stays on after the release.
        press(note, velocity, false);
        if (keyListener)
            keyListener->keyClicked(note, velocity, true);
    }
    mouseDown = true;
    setDirty(true);
    return kMouseEventHandled;
}

void KWKeyboardView::press(int note, int velocity, bool holds)
{
    if (keyState->hasNote(note)) {
        keyState->noteOffVelocity = velocity;
        keyState->noteOff.post(note);
    } else if (!holds || currentNote == kNoNote) {
        keyState->noteOnVelocity = velocity;
        keyState->noteOn.post(note);
        if (holds)
            currentNote = note;
    }
}

void KWKeyboardView::pick(int note)
{
    setValue(static_cast<float>(note));
    currentNote = note;
    tellListener();
}

CMouseEventResult KWKeyboardView::onMouseMoved(const CPoint& where, int buttons)
{
    if (!mouseDown || !size.pointInside(where))
        return kMouseEventNotHandled;
    const int note = buttons & kLButton ? noteAt(where) : kNoNote;
    if (note != kNoNote && note != currentNote) {
        if (pickMode) {
            pick(note);
        } else if (keyState && keyState->noteOn.isEmpty() && keyState->noteOff.isEmpty()) {
            // One slot at a time: a glissando goes as fast as the engine takes them.
            if (!keyState->hasNote(currentNote)) {
                keyState->noteOn.post(note);
                currentNote = note;
            } else {
                keyState->noteOff.post(currentNote);
            }
        }
    }
    setDirty(true);
    return kMouseEventHandled;
}

CMouseEventResult KWKeyboardView::onMouseUp(const CPoint&, int)
{
    mouseDown = false;
    if (currentNote >= 0) {
        if (pickMode) {
            setValue(static_cast<float>(kNoNote));
            tellListener();
        } else if (keyState) {
            // A note that was not taken yet never sounds.
            if (keyState->noteOn.peek() == currentNote)
                keyState->noteOn.clear();
            keyState->noteOff.post(currentNote);
        }
    }
    currentNote = kNoNote;
    setDirty(true);
    return kMouseEventHandled;
}

std::array<uint8_t, KWKeyState::kNotes> KWKeyboardView::classes() const
{
    std::array<uint8_t, KWKeyState::kNotes> all{};
    for (int note = 0; note < KWKeyState::kNotes; ++note)
        all[static_cast<size_t>(note)] = static_cast<uint8_t>(keyState->classOf(note));
    return all;
}

void KWKeyboardView::updateControl(void* context)
{
    if (hidden)
        return;
    if (keyState && isLive()) {
        const bool notesMoved = keyState->words() != lastKeys;
        // The zones change with the keyboard mode, and the engine may name them after the first
        // paint.
        if (base() != lastBaseNote || classes() != lastClasses)
            setDirty(true);
        if (notesMoved || isDirty()) {
            if (context) {
                setDirty(false);
                draw(static_cast<CDrawContext*>(context));
            } else {
                setDirty(true);
            }
        }
    }
    KWControl::updateControl(context);
}

void KWKeyboardView::valueChanged(CControl* sender)
{
    if (!sender)
        return;
    if (sender == this) {
        tellListener();
        setDirty(true);
        return;
    }
    const bool pressed = sender->getValue() != 0;
    switch (sender->getTag()) {
    case kOctaveUp:
        if (baseNote && pressed && base() + 12 + static_cast<float>(octaves * 12) < 128)
            *baseNote = base() + 12;
        break;
    case kOctaveDown:
        // Deliberate: above 0, so a base that has risen never comes back to 0.
        if (baseNote && pressed && base() - 12 > 0)
            *baseNote = base() - 12;
        break;
    default:
        showMessage("unknown value in KWKeyboardView::valueChanged : val:%ld", sender->getTag());
        break;
    }
    setDirty(true);
}

} // namespace ormund
