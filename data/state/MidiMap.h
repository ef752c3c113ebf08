// Which controller moves which parameter, and the learning of it.
#pragma once

#include "base/Crossing.h"
#include "base/ZeroedArray.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>
#include <span>

namespace ormund {

class ParameterSink;

// A parameter, or one step of a track, on a controller.
struct CcAssignment {
    int16_t tag = 0;
    int16_t step = 0; // of a track, else 0
    friend bool operator==(const CcAssignment&, const CcAssignment&) = default;
};

// Two words of a file as an assignment. What no parameter can have gives none: saved again, its tag
// could read as the mark at a list's end.
std::optional<CcAssignment> assignmentOfWords(int32_t tag, int32_t step);

// Lists of fixed room for the 128 controllers and one for channel pressure.
//
// Threads: the audio thread moves controllers and adds what is learned; any other thread may change
// the map and read it. A change of the map from outside raises `mapBusy` and waits until the
// message in flight is through; the audio thread drops a message that comes meanwhile, so it never
// waits. Reading a list needs neither: an entry is written before it is counted.
class MidiMap {
public:
    static constexpr int kControllers = 128;
    static constexpr int kPressure = kControllers; // the list behind the last controller
    static constexpr int kLists = kControllers + 1;
    static constexpr int kRoom = 64; // assignments a list; further ones are dropped

    MidiMap() = default;
    MidiMap(const MidiMap&) = delete;
    MidiMap& operator=(const MidiMap&) = delete;

    // --- audio thread ---
    // A controller message, value 0 to 1: binds a waiting learn target, then moves every parameter
    // of the list in its order, `remoteStep` set before each.
    void controllerMoved(
        int controller, float value, ParameterSink& sink, Crossing<int32_t>& remoteStep);
    void pressureMoved(float value, ParameterSink& sink, Crossing<int32_t>& remoteStep);

    // --- any other thread ---
    // `list` 0 to 127 or kPressure; others, and an assignment that is there already, are ignored.
    void addAssignment(int list, int tag, int step);
    void removeAssignment(int tag, int step); // everywhere, pressure included
    void removeParameter(int tag);            // every step of it, everywhere
    void clearMap();                          // the 128 controllers
    void clearPressure();

    // A copy of all lists in the form that is saved.
    struct Lists {
        std::array<std::array<CcAssignment, kRoom>, kLists> entries{};
        std::array<int32_t, kLists> counts{};
        void add(int list, CcAssignment entry); // as addAssignment
        std::span<const CcAssignment> of(int list) const;
        friend bool operator==(const Lists&, const Lists&);
    };
    void copyTo(Lists& copy) const;
    // Replaces what `controllers` and `pressure` name in one go. The audio thread calls it with
    // `fromAudio`: it then never waits, and gives false when somebody else is at the map.
    bool replace(const Lists& lists, bool controllers, bool pressure, bool fromAudio = false);

    int count(int list) const;
    CcAssignment at(int list, int index) const;
    bool isAssigned(int tag) const; // to any controller, at any step
    bool isAssigned(int tag, int step) const;

    // The parameter that the next controller or pressure message binds. A tag below 0: none.
    void setLearnTarget(int tag, int step);
    int learnTag() const; // -1 when nothing waits
    int learnStep() const;

    float controllerValue(int controller) const; // the last one seen, 0 to 1
    float pressure() const { return pressureValue; }

    OneWayFlag mapBusy; // messages and program changes are dropped while it is up

private:
    class Change;
    class Message;
    static constexpr int32_t kNoTarget = -1;

    void move(int list, float value, ParameterSink& sink, Crossing<int32_t>& remoteStep);
    void append(int list, CcAssignment entry);
    template <typename Drop>
    void removeIf(Drop drop);

    using Entries = std::array<Crossing<int32_t>, kRoom>; // packed
    Entries& entriesOf(int list) { return allEntries[static_cast<size_t>(list)]; }
    std::atomic<int32_t>& countOf(int list) { return counts[static_cast<size_t>(list)]; }

    ZeroedArray<Entries> allEntries{kLists}; // most lists stay empty
    std::array<std::atomic<int32_t>, kLists> counts{};
    OneWayFlag inMessage;
    Crossing<int32_t> learnTarget = kNoTarget; // packed, so that tag and step never part
    std::array<Crossing<float>, kControllers> ccValues{};
    Crossing<float> pressureValue = 0.0f;
};

} // namespace ormund
