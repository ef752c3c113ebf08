// A text that grows and shrinks by keys, in UTF-8.
#pragma once

#include <string>

namespace ormund {

void dropLastCharacter(std::string& text);
void appendCharacter(std::string& text, char32_t character);

} // namespace ormund
