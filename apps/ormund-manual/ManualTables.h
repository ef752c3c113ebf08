// What the manual says of numbers and names, from the program's own tables, as HTML.
#pragma once

#include <string>
#include <string_view>

namespace ormund {

// By its name; throws std::runtime_error for any other.
std::string manualTable(std::string_view name);
// A count by its name, such as "patterns".
int manualNumber(std::string_view name);
// "C4" of 60.
std::string keyName(int note);
// "C2 to D#3" of a zone of the keyboard: pattern, transpose, action; `keyboardMode` 0 or 1.
std::string zoneName(std::string_view zone, int keyboardMode);

std::string escaped(std::string_view text);
// The words of a control's hint, without the blanks at its ends; empty when it has none.
std::string hintOfControl(int tag);

} // namespace ormund
