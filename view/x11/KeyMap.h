// What the keys of the keyboard mean: key codes and modifier states to characters and key names.
#pragma once

#include "view/Events.h"

#include <cstdint>
#include <vector>
#include <xcb/xcb.h>

namespace ormund {

class KeyMap {
public:
    // Asks the server; again whenever the keyboard changes.
    void load(xcb_connection_t* connection);
    bool isLoaded() const { return !symbols.empty(); }
    CKeyEvent translate(xcb_keycode_t code, uint16_t state) const;
    // In the order in which they come.
    CKeyEvent take(const xcb_key_press_event_t& event, bool isPress);
    static int modifiers(uint16_t state);

private:
    uint32_t symbolAt(xcb_keycode_t code, int column) const;
    uint32_t symbolFor(xcb_keycode_t code, uint16_t state) const;

    std::vector<uint32_t> symbols;
    int perKey = 0;
    int firstCode = 8;
    xcb_keycode_t releasedCode = 0; // the last release
    xcb_timestamp_t releasedTime = 0;
};

} // namespace ormund
