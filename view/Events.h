// What the mouse and the keyboard report to a view.
#pragma once

#include <cstdint>

namespace ormund {

// Buttons and modifiers of a mouse or wheel call, or-ed. In a press the buttons hold all that are
// down now; in a release those that are still down after it.
enum CButton : int {
    kLButton = 2,
    kMButton = 4,
    kRButton = 8,
    kShift = 16,
    kControl = 32,
    kAlt = 64,
    kApple = 128,
    kButton4 = 256,
    kButton5 = 512,
    kDoubleClick = 1024, // the second press of a double click
};
inline constexpr int kMouseButtons = kLButton | kMButton | kRButton | kButton4 | kButton5;
inline constexpr int kModifiers = kShift | kControl | kAlt | kApple;

enum CMouseEventResult : int {
    kMouseEventNotImplemented = 0,
    kMouseEventHandled = 1,
    kMouseEventNotHandled = 2,
    kMouseDownEventHandledButDontNeedMovedOrUpEvents = 3,
};

enum CMouseWheelAxis : int { kMouseWheelAxisX = 0, kMouseWheelAxisY = 1 };

// Codes of keys that have no character, numbered as the effect interface numbers them.
enum class CKey : uint8_t {
    None = 0,
    Backspace = 1,
    Tab,
    Clear,
    Return,
    Pause,
    Escape,
    Space,
    Next,
    End,
    Home,
    Left,
    Up,
    Right,
    Down,
    PageUp,
    PageDown,
    Select,
    Print,
    Enter,
    Snapshot,
    Insert,
    Delete,
    Help,
    Numpad0,
    NumpadMultiply = 34,
    NumpadAdd,
    NumpadSeparator,
    NumpadSubtract,
    NumpadDecimal,
    NumpadDivide,
    F1 = 40,
    NumLock = 52,
    Scroll,
    Shift,
    Control,
    Alt,
    Equals,
};

struct CKeyEvent {
    char32_t character = 0; // 0 for a key without one
    CKey key = CKey::None;
    int modifiers = 0;     // of kShift, kControl, kAlt, kApple
    bool isRepeat = false; // a press that the keyboard made of a key that is held
};

enum class CCursor : uint8_t { Arrow, Hand, ResizeHorizontal, ResizeVertical, Cross, Move, Wait };

} // namespace ormund
