#include "editor/PassiveControls.h"

namespace ormund {

namespace {

// clang-format off
constexpr PassiveControl kControls[] = {
    {46, "Holds the number of the shown track; the selector 80 moves it, and nothing opens this menu."},
    {81, "A hint without words, which no control shows."},
    {102, "Shows the value that its track sends."},
    {124, "Shows the value that its track sends."},
    {146, "Shows the value that its track sends."},
    {168, "Shows the value that its track sends."},
    {190, "Shows the value that its track sends."},
    {212, "Shows the value that its track sends."},
    {234, "Shows the value that its track sends."},
    {256, "Shows the value that its track sends."},
    {258, "Shows the values of the bars above it."},
    {261, "Marks the running step of its track."},
    {266, "Marks the running step of its track."},
    {271, "Marks the running step of its track."},
    {276, "Marks the running step of its track."},
    {281, "Marks the running step of its track."},
    {286, "Marks the running step of its track."},
    {291, "Marks the running step of its track."},
    {296, "Marks the running step of its track."},
    {344, "Holds the number of a page that has one face."},
    {350, "Marks the running step of its track."},
    {359, "Shows the patterns; the area 358 below it takes the mouse."},
    {362, "Marks the running step of its track."},
    {371, "A hint without words, which no control shows."},
    {372, "A hint without words, which no control shows."},
    {373, "The modulation has one source, so there is nothing to choose and nothing opens the menu."},
    {380, "Names what a learning control waits for."},
    {382, "Shows the notes of the bars above it."},
    {428, "Shows the lengths of the bars above it."},
    {489, "Tints and labels the keys; the keyboard 551 below it takes the mouse."},
    {492, "A hint without words, which no control shows."},
    {497, "A hint without words, which no control shows."},
    {498, "Marks the running step of its track."},
    {503, "Marks the running step of its track."},
    {508, "Marks the running step of its track."},
    {516, "The ground of the synth page."},
    {518, "Holds the number of the page; the button 517 turns it, and nothing opens this menu."},
    {546, "A hint without words, which no control shows."},
    {563, "Its two entries stand in the right-click menu of every control, and nothing opens this one."},
    {577, "As 489, for the second keyboard mode."},
    {578, "Lies below 585, its second control, which takes the mouse."},
    {179873360, "The sheet of the about box; its switch and its cross are its own."},
};

constexpr PassiveControl kParameters[] = {
    {336, "A table that no control shows; it is kept so that its number stays taken."},
    {344, "See the control."},
    {373, "See the control."},
    {374, "Opens a dialogue, which the window does and a learned controller cannot."},
    {375, "Opens a dialogue, which the window does and a learned controller cannot."},
    {462, "A table that no control shows; it is kept so that its number stays taken."},
    {547, "Opens the about box, which the window does."},
    {548, "The roll area moves the looper, 9 and 10, instead."},
    {563, "See the control."},
    {565, "Opens the about box, which the window does."},
    {581, "Is read when a MIDI file is made."},
};
// clang-format on

} // namespace

std::span<const PassiveControl> passiveControls() { return kControls; }
std::span<const PassiveControl> passiveParameters() { return kParameters; }

} // namespace ormund
