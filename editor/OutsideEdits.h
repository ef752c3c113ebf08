#pragma once

#include "editor/EditCells.h"

#include <map>
#include <optional>

namespace ormund {

class KWUniClient;

// Finds the steps that something else than the panel has written: a take that is recorded, a
// learned controller, the host's automation. What it writes until it pauses is one edit, and a take
// is one edit from its start to its end. Screen thread.
class OutsideEdits {
public:
    struct Edit {
        EditCells::Changes changes;
        bool isTake = false;
    };

    OutsideEdits(KWUniClient& ownEngine, const EditCells& allCells);

    // Once an idle, outside a gesture. The edit that has come to its end.
    std::optional<Edit> look();
    // Ends an edit under way.
    std::optional<Edit> finish();
    bool isUnderWay() const { return !pending.empty(); }
    // These came from the panel.
    void take(const EditCells::Changes& changes, bool back = false);
    // Another song is there: all that stands now is known.
    void restart();

private:
    bool readNew();

    KWUniClient& engine;
    const EditCells& cells;
    std::vector<EditCells::Range> ranges; // tracks and loops, one after the other
    std::vector<float> known;
    uint32_t changeCount = 0;
    std::map<uint32_t, EditCells::Change> pending; // by cell
    bool wasTake = false;
    int quietIdles = 0;
};

} // namespace ormund
