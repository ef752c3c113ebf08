// Text from outside on its way to a terminal.
#pragma once

#include <string>

namespace ormund {

// Control characters could move the cursor or set the terminal's title, and a file may have them in
// its name: each is shown as a question mark. The codes from U+0080 to U+009F count too.
inline std::string terminalText(std::string text)
{
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isLate =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (isLate)
            text.erase(i, 1);
        if (isLate || byte < 0x20 || byte == 0x7F)
            text[i] = '?';
    }
    return text;
}

} // namespace ormund
