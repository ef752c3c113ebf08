// What a host of CLAP or VST3 keeps for us: a row of texts with a zero behind each.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ormund {

class KWFormatWrapper;

struct SavedState {
    // Nothing that we write comes near it; a stream that goes on and on is no state of ours.
    static constexpr size_t kMostBytes = size_t{64} << 20;

    std::string chunk; // base64
    // What the chunk does not hold: the bypass, and the buttons of the performance.
    std::map<std::string, float, std::less<>> values; // by the parameter's symbol

    // All of it, from and to a plug-in.
    static SavedState of(KWFormatWrapper& wrapper);
    // False, and all is as it was, where the chunk is none.
    bool restore(KWFormatWrapper& wrapper) const;

    std::string pack() const;
    // Empty for anything that has no chunk or no end.
    static std::optional<SavedState> unpack(std::string_view bytes);
};

} // namespace ormund
