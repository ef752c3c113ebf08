// The moves of an editor, on their way from the screen's thread to a host's block.
#pragma once

#include "base/Crossing.h"

#include <array>
#include <bit>
#include <cstdint>
#include <optional>

namespace ormund {

struct HostEdit {
    enum Kind : uint8_t { Begin, Value, End };
    Kind kind = Begin;
    uint8_t number = 0; // of the parameter, as formats list them
    float value = 0;
};

// One thread puts, one other takes. What finds no room is left out: a host that runs no block for
// so long asks for all values anyway.
class EditQueue {
public:
    void put(const HostEdit& edit)
    {
        const uint32_t at = written.load();
        if (at - read.load() == kMost)
            return;
        cells[at % kMost] = uint64_t{edit.kind} << 40 | uint64_t{edit.number} << 32
            | std::bit_cast<uint32_t>(edit.value);
        written.count();
    }
    std::optional<HostEdit> take()
    {
        const uint32_t at = read.load();
        if (at == written.load())
            return std::nullopt;
        const uint64_t cell = cells[at % kMost];
        read.count();
        return HostEdit{static_cast<HostEdit::Kind>(cell >> 40), static_cast<uint8_t>(cell >> 32),
            std::bit_cast<float>(static_cast<uint32_t>(cell))};
    }

private:
    static constexpr uint32_t kMost = 1024;
    std::array<Crossing<uint64_t>, kMost> cells{};
    ChangeCount written;
    ChangeCount read;
};

} // namespace ormund
