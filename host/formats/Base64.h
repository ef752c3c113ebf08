// Bytes as text, for hosts that keep a plug-in's state in text files.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ormund {

std::string toBase64(std::span<const uint8_t> bytes);
// White space is skipped, since hosts break long lines. Empty for anything else that is no base64.
std::optional<std::vector<uint8_t>> fromBase64(std::string_view text);

} // namespace ormund
