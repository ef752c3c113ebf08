#include "host/formats/Base64.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kSpace = " \t\r\n";
constexpr char kPad = '=';
} // namespace

std::string toBase64(std::span<const uint8_t> bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t count = std::min<size_t>(bytes.size() - i, 3);
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < count ? bytes[i + k] : 0u);
        for (size_t k = 0; k < 4; ++k)
            text += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : kPad;
    }
    return text;
}

std::optional<std::vector<uint8_t>> fromBase64(std::string_view text)
{
    std::vector<uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3);
    uint32_t group = 0;
    int digits = 0;
    int pads = 0;
    for (const char c : text) {
        if (kSpace.find(c) != std::string_view::npos)
            continue;
        if (c == kPad) {
            ++pads;
            continue;
        }
        const size_t digit = kDigits.find(c);
        if (digit == std::string_view::npos || pads > 0)
            return std::nullopt;
        group = group << 6 | static_cast<uint32_t>(digit);
        if (++digits % 4 == 0)
            for (int shift = 16; shift >= 0; shift -= 8)
                bytes.push_back(static_cast<uint8_t>(group >> shift));
    }
    const int rest = digits % 4;
    if (rest == 1 || (rest + pads) % 4 != 0 || pads > 2)
        return std::nullopt;
    if (rest >= 2)
        bytes.push_back(static_cast<uint8_t>(group >> (rest == 2 ? 4 : 10)));
    if (rest == 3)
        bytes.push_back(static_cast<uint8_t>(group >> 2));
    return bytes;
}

} // namespace ormund
