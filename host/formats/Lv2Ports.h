// The ports and names of the LV2 plug-in: what the module, its window and its description share.
#pragma once

#include "base/Product.h"
#include "host/formats/FormatParameters.h"

#include <cstdint>

namespace ormund::lv2 {

using product::kLv2UiUri;
using product::kLv2Uri;
constexpr char kChunkKey[] = "urn:distrho:chunk"; // in sessions from the start

constexpr uint32_t kLeft = 0;
constexpr uint32_t kRight = 1;
constexpr uint32_t kEventsIn = 2;
constexpr uint32_t kEventsOut = 3;
constexpr uint32_t kFirstControl = 4; // "enabled", the bypass the other way round
constexpr uint32_t kPorts = kFirstControl + kFormatParameters;
constexpr int kEventBytes = 8192; // room for some 300 messages in a block

constexpr bool isControl(uint32_t port) { return port >= kFirstControl && port < kPorts; }
constexpr int numberOf(uint32_t port) { return static_cast<int>(port - kFirstControl); }
constexpr uint32_t portOf(int number) { return kFirstControl + static_cast<uint32_t>(number); }
// The value of a port for a parameter's, and the other way.
constexpr float swapped(int number, float value)
{
    return number == kBypassNumber ? 1.0f - value : value;
}

} // namespace ormund::lv2
