// The parameters as LV2, VST3 and CLAP list them: the bypass, then the engine's.
#pragma once

#include "data/parameters/Parameters.h"

#include <optional>
#include <string>
#include <string_view>

namespace ormund {

constexpr int kBypassNumber = 0; // in the list
constexpr int kFirstNumber = 1;  // where the engine's begin
constexpr float kOnFrom = 0.5f;  // a switch is on from here
constexpr int kFormatParameters = kFirstNumber + kHostParameters;

constexpr int tagOfNumber(int number) { return number - kFirstNumber; }
constexpr bool isFormatParameter(int number) { return number >= 0 && number < kFormatParameters; }

std::string formatName(int number);
// Two states, 0 and 1.
bool isSwitch(int number);
// Whether the engine's chunk holds its value.
bool isInChunk(int number);
// The part of the panel that it belongs to; empty for the bypass.
std::string_view formatSection(int number);
float formatDefault(int number); // 0 to 1
// Its name in saved states: letters, digits and "_".
std::string formatSymbol(int number);
// As a user reads it, with its unit.
std::string formatText(int number, float value);
// What a user types: a choice, or a number with its unit or without. Empty for anything else.
std::optional<float> formatValue(int number, std::string_view text);

} // namespace ormund
