#pragma once

#include "editor/EditScope.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ormund {

class KWUniClient;

// The song as one long row of numbered cells: parameters, tracks, loops, the patterns' stored
// values. Screen thread.
class EditCells {
public:
    struct Range {
        uint32_t first, end;
    };
    struct Change {
        uint32_t cell;
        float before, after;
    };
    using Changes = std::vector<Change>;

    explicit EditCells(KWUniClient& ownEngine);

    // The cells that a gesture within the scope can reach.
    std::vector<Range> rangesOf(EditScope scope, int tag) const;
    std::vector<float> read(std::span<const Range> ranges) const;
    // What has become different of the values that read() gave before.
    Changes changesSince(std::span<const Range> ranges, std::span<const float> before) const;
    // The tags of the changed steps, one a cell.
    std::vector<int> stepTags(std::span<const Change> changes) const;
    // Gives every cell its value before, or after.
    void apply(std::span<const Change> changes, bool back);

private:
    // A run of cells of one kind.
    struct Section {
        enum Kind : uint8_t { Parameter, Table, Line, Zone, Stored } kind;
        int tag; // Stored: the place of the value in its pattern
        uint32_t first, end;
        int width; // cells a row
    };

    void addSection(Section::Kind kind, int tag, int rows, int width);
    const Section& sectionOf(uint32_t cell) const;
    float valueOf(const Section& section, uint32_t cell) const;
    void write(const Section& section, uint32_t cell, float value);
    void setParameter(int tag, float value);
    void setStored(int pattern, int place, float value);

    KWUniClient& engine;
    std::vector<Section> sections;
    uint32_t cells = 0;
};

} // namespace ormund
