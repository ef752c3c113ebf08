#include "editor/HintTexts.h"

#include "data/parameters/ChoiceLists.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

namespace ormund {

namespace {
constexpr size_t kRoom = 256;
}

void percentText(float value, char* text)
{
    std::snprintf(text, kRoom, "%d %%", int(std::lround(value * 100.0f)));
}

void hundredthsText(float value, char* text)
{
    std::snprintf(text, kRoom, "%d", int(std::lround(value * 100.0f)));
}

void panText(float value, char* text)
{
    const int side = int(std::lround((value - 0.5f) * 200.0f));
    if (side == 0)
        std::snprintf(text, kRoom, "centre");
    else
        std::snprintf(text, kRoom, "%d %s", std::abs(side), side < 0 ? "left" : "right");
}

void integerText(float value, char* text) { std::snprintf(text, kRoom, "%d", int(value)); }

void countText(float value, char* text) { integerText(value + 1.0f, text); }

void noteNameText(float value, char* text)
{
    const int note = std::clamp(int(value), 0, kMidiNotes - 1);
    std::snprintf(text, kRoom, "%s", std::string(kMidiNoteNames[size_t(note)]).c_str());
}

void gateMultipleText(float value, char* text)
{
    const int index = std::clamp(int(value), 0, kGateMultiples - 1);
    std::snprintf(text, kRoom, "%g", double(kGateMultiplyTable[size_t(index)]));
}

} // namespace ormund
