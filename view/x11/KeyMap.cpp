#include "view/x11/KeyMap.h"

#include <cstdlib>

namespace ormund {

namespace {

struct NamedKey {
    uint32_t symbol;
    CKey key;
    char32_t character;
};

constexpr NamedKey kNamedKeys[] = {
    {0xFF08, CKey::Backspace, 0},
    {0xFF09, CKey::Tab, 0},
    {0xFE20, CKey::Tab, 0}, // Shift and Tab
    {0xFF0B, CKey::Clear, 0},
    {0xFF0D, CKey::Return, 0},
    {0xFF13, CKey::Pause, 0},
    {0xFF1B, CKey::Escape, 0},
    {0x0020, CKey::Space, U' '},
    {0xFF56, CKey::PageDown, 0},
    {0xFF55, CKey::PageUp, 0},
    {0xFF57, CKey::End, 0},
    {0xFF50, CKey::Home, 0},
    {0xFF51, CKey::Left, 0},
    {0xFF52, CKey::Up, 0},
    {0xFF53, CKey::Right, 0},
    {0xFF54, CKey::Down, 0},
    {0xFF60, CKey::Select, 0},
    {0xFF61, CKey::Print, 0},
    {0xFF8D, CKey::Enter, 0},
    {0xFF63, CKey::Insert, 0},
    {0xFFFF, CKey::Delete, 0},
    {0xFF6A, CKey::Help, 0},
    {0xFF7F, CKey::NumLock, 0},
    {0xFF14, CKey::Scroll, 0},
    {0xFFE1, CKey::Shift, 0},
    {0xFFE2, CKey::Shift, 0},
    {0xFFE3, CKey::Control, 0},
    {0xFFE4, CKey::Control, 0},
    {0xFFE9, CKey::Alt, 0},
    {0xFFEA, CKey::Alt, 0},
    {0xFF95, CKey::Home, 0},
    {0xFF96, CKey::Left, 0},
    {0xFF97, CKey::Up, 0},
    {0xFF98, CKey::Right, 0},
    {0xFF99, CKey::Down, 0},
    {0xFF9A, CKey::PageUp, 0},
    {0xFF9B, CKey::PageDown, 0},
    {0xFF9C, CKey::End, 0},
    {0xFF9E, CKey::Insert, 0},
    {0xFF9F, CKey::Delete, 0},
    {0xFFAA, CKey::NumpadMultiply, U'*'},
    {0xFFAB, CKey::NumpadAdd, U'+'},
    {0xFFAC, CKey::NumpadSeparator, U','},
    {0xFFAD, CKey::NumpadSubtract, U'-'},
    {0xFFAE, CKey::NumpadDecimal, U'.'},
    {0xFFAF, CKey::NumpadDivide, U'/'},
    {0xFFBD, CKey::Equals, U'='},
};

constexpr uint32_t kNumpad0Symbol = 0xFFB0;
constexpr uint32_t kF1Symbol = 0xFFBE;
constexpr uint32_t kUnicodeSymbols = 0x01000000;

bool isLowerCase(uint32_t symbol)
{
    return (symbol >= 'a' && symbol <= 'z') || (symbol >= 0xE0 && symbol <= 0xFE && symbol != 0xF7);
}

CKey offsetKey(CKey first, uint32_t count)
{
    return static_cast<CKey>(static_cast<uint32_t>(first) + count);
}

} // namespace

void KeyMap::load(xcb_connection_t* connection)
{
    const xcb_setup_t* setup = xcb_get_setup(connection);
    firstCode = setup->min_keycode;
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    xcb_get_keyboard_mapping_reply_t* reply = xcb_get_keyboard_mapping_reply(
        connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, count), nullptr);
    if (!reply)
        return;
    perKey = reply->keysyms_per_keycode;
    const xcb_keysym_t* list = xcb_get_keyboard_mapping_keysyms(reply);
    symbols.assign(list, list + xcb_get_keyboard_mapping_keysyms_length(reply));
    std::free(reply);
}

uint32_t KeyMap::symbolAt(xcb_keycode_t code, int column) const
{
    const int index = (code - firstCode) * perKey + column;
    const bool isKnown = code >= firstCode && column < perKey && index >= 0
        && index < static_cast<int>(symbols.size());
    return isKnown ? symbols[static_cast<size_t>(index)] : 0;
}

uint32_t KeyMap::symbolFor(xcb_keycode_t code, uint16_t state) const
{
    // The columns are two layouts of two levels each, then the third level of the first layout.
    const int layout = (state >> 13 & 3) == 1 && symbolAt(code, 2) ? 2 : 0;
    const bool isThird = (state & XCB_MOD_MASK_5) && layout == 0 && symbolAt(code, 4);
    const int base = isThird ? 4 : layout;
    const uint32_t plain = symbolAt(code, base);
    const uint32_t shifted = symbolAt(code, base + 1);
    const bool isPad = shifted >= 0xFFAA && shifted <= 0xFFBD;
    bool isUpper = (state & XCB_MOD_MASK_SHIFT) != 0;
    if (isPad)
        isUpper = isUpper != ((state & XCB_MOD_MASK_2) != 0);
    else if ((state & XCB_MOD_MASK_LOCK) && isLowerCase(plain))
        isUpper = !isUpper;
    if (!isUpper)
        return plain;
    if (!shifted && isLowerCase(plain))
        return plain - 0x20;
    return shifted ? shifted : plain;
}

CKeyEvent KeyMap::translate(xcb_keycode_t code, uint16_t state) const
{
    CKeyEvent event;
    event.modifiers = modifiers(state);
    const uint32_t symbol = symbolFor(code, state);
    for (const NamedKey& named : kNamedKeys) {
        if (named.symbol == symbol) {
            event.key = named.key;
            event.character = named.character;
            return event;
        }
    }
    if (symbol >= kNumpad0Symbol && symbol < kNumpad0Symbol + 10) {
        event.key = offsetKey(CKey::Numpad0, symbol - kNumpad0Symbol);
        event.character = U'0' + (symbol - kNumpad0Symbol);
    } else if (symbol >= kF1Symbol && symbol < kF1Symbol + 12) {
        event.key = offsetKey(CKey::F1, symbol - kF1Symbol);
    } else if ((symbol > 0x20 && symbol < 0x7F) || (symbol >= 0xA0 && symbol <= 0xFF)) {
        event.character = symbol;
    } else if (symbol > kUnicodeSymbols && symbol <= kUnicodeSymbols + 0x10FFFF) {
        event.character = symbol - kUnicodeSymbols;
    }
    return event;
}

int KeyMap::modifiers(uint16_t state)
{
    int found = 0;
    if (state & XCB_MOD_MASK_SHIFT)
        found |= kShift;
    if (state & XCB_MOD_MASK_CONTROL)
        found |= kControl;
    if (state & XCB_MOD_MASK_1)
        found |= kAlt;
    if (state & XCB_MOD_MASK_4)
        found |= kApple;
    return found;
}

// The server repeats a key that is held by a release and a press of one moment.
CKeyEvent KeyMap::take(const xcb_key_press_event_t& event, bool isPress)
{
    CKeyEvent key = translate(event.detail, event.state);
    if (isPress) {
        key.isRepeat = event.detail == releasedCode && event.time == releasedTime;
    } else {
        releasedCode = event.detail;
        releasedTime = event.time;
    }
    return key;
}

} // namespace ormund
