// The one interface through which the edit operations reach any track, whatever class holds it.
#pragma once

#include <memory>

namespace ormund {

class KWInitInterface {
public:
    virtual ~KWInitInterface() = default;

    virtual void init() = 0;     // for the tracks: clear the selected row
    virtual void clearAll() = 0; // every row
    // The clipboard that the global buttons use, found by `clipboardKey`. Steps from <= i < to.
    virtual void copy(int from, int to) = 0;
    virtual void paste(int from, int to) = 0;
    virtual void randomize() = 0;
    virtual void shiftBackward(int from, int to) = 0;
    virtual void shiftForward(int from, int to) = 0;
    virtual void mutate() = 0;
    virtual void setGroup(int newGroup) { group = newGroup; }
    // A new object with the same values, families and row, not registered with the owner.
    virtual std::unique_ptr<KWInitInterface> clone() const = 0;

    int group = 0;         // 1: the global operations reach it; 2: all but the random one
    int copyFamily = -1;   // tracks of one family share a clipboard entry
    int clipboardKey = -1; // the entry of this track alone
};

} // namespace ormund
