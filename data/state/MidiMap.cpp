#include "data/state/MidiMap.h"

#include "data/parameters/ParameterSink.h"
#include "data/parameters/Tags.h"

#include <algorithm>
#include <thread>

namespace ormund {

namespace {

int32_t pack(CcAssignment entry)
{
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint16_t>(entry.tag)) << 16
        | static_cast<uint16_t>(entry.step));
}

CcAssignment unpack(int32_t packed)
{
    return {static_cast<int16_t>(static_cast<uint32_t>(packed) >> 16),
        static_cast<int16_t>(static_cast<uint32_t>(packed) & 0xFFFFu)};
}

CcAssignment assignment(int tag, int step)
{
    return {static_cast<int16_t>(tag), static_cast<int16_t>(step)};
}

bool isList(int list) { return list >= 0 && list < MidiMap::kLists; }

} // namespace

std::optional<CcAssignment> assignmentOfWords(int32_t tag, int32_t step)
{
    const int low = tag & 0xFFFF;
    if (low >= kTagCount)
        return {};
    return assignment(low, step & 0xFFFF);
}

// The right to change the map from outside the audio thread. Its holder only copies a few
// words, so the wait for another one is short.
class MidiMap::Change {
public:
    explicit Change(MidiMap& changed) : map(changed)
    {
        while (!map.mapBusy.tryRaise())
            std::this_thread::yield();
        while (map.inMessage.isRaised())
            std::this_thread::yield();
    }
    ~Change() { map.mapBusy.lower(); }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

private:
    MidiMap& map;
};

// The audio thread at a message. It shows itself first and looks then, so that of it and a change
// that begins at the same time at least one sees the other.
class MidiMap::Message {
public:
    explicit Message(MidiMap& used) : scope(used.inMessage), allowed(!used.mapBusy.isRaised()) { }
    explicit operator bool() const { return allowed; }

private:
    FlagScope scope;
    bool allowed;
};

void MidiMap::controllerMoved(
    int controller, float value, ParameterSink& sink, Crossing<int32_t>& remoteStep)
{
    if (controller < 0 || controller >= kControllers)
        return;
    const Message message(*this);
    if (!message)
        return;
    ccValues[static_cast<size_t>(controller)] = value;
    move(controller, value, sink, remoteStep);
}

void MidiMap::pressureMoved(float value, ParameterSink& sink, Crossing<int32_t>& remoteStep)
{
    const Message message(*this);
    if (!message)
        return;
    move(kPressure, value, sink, remoteStep);
    pressureValue = value;
}

void MidiMap::move(int list, float value, ParameterSink& sink, Crossing<int32_t>& remoteStep)
{
    const int32_t target = learnTarget.exchange(kNoTarget);
    if (target != kNoTarget)
        append(list, unpack(target));
    const int entries = count(list);
    for (int i = 0; i < entries; ++i) {
        const CcAssignment entry = at(list, i);
        remoteStep = entry.step;
        sink.setParameter(entry.tag, value);
    }
}

void MidiMap::append(int list, CcAssignment entry)
{
    Entries& entries = entriesOf(list);
    const int32_t used = countOf(list).load(std::memory_order_relaxed);
    for (int32_t i = 0; i < used; ++i)
        if (entries[static_cast<size_t>(i)] == pack(entry))
            return;
    if (used >= kRoom)
        return;
    entries[static_cast<size_t>(used)] = pack(entry);
    countOf(list).store(used + 1, std::memory_order_release);
}

void MidiMap::addAssignment(int list, int tag, int step)
{
    if (!isList(list))
        return;
    const Change change(*this);
    append(list, assignment(tag, step));
}

template <typename Drop>
void MidiMap::removeIf(Drop drop)
{
    const Change change(*this);
    for (int list = 0; list < kLists; ++list) {
        Entries& entries = entriesOf(list);
        const int32_t used = countOf(list).load(std::memory_order_relaxed);
        size_t kept = 0;
        for (size_t i = 0; i < static_cast<size_t>(used); ++i) {
            const int32_t packed = entries[i];
            if (!drop(unpack(packed)))
                entries[kept++] = packed;
        }
        countOf(list).store(static_cast<int32_t>(kept), std::memory_order_release);
    }
}

void MidiMap::removeAssignment(int tag, int step)
{
    removeIf([wanted = assignment(tag, step)](CcAssignment entry) { return entry == wanted; });
}

void MidiMap::removeParameter(int tag)
{
    removeIf([tag](CcAssignment entry) { return entry.tag == tag; });
}

void MidiMap::clearMap() { replace(Lists{}, true, false); }

void MidiMap::clearPressure() { replace(Lists{}, false, true); }

bool MidiMap::replace(const Lists& source, bool controllers, bool pressure, bool fromAudio)
{
    const auto fill = [&] {
        for (int list = 0; list < kLists; ++list) {
            if (!(list == kPressure ? pressure : controllers))
                continue;
            Entries& target = entriesOf(list);
            const auto entries = source.of(list);
            for (size_t i = 0; i < entries.size(); ++i)
                target[i] = pack(entries[i]);
            countOf(list).store(static_cast<int32_t>(entries.size()), std::memory_order_release);
        }
    };
    if (!fromAudio) {
        const Change change(*this);
        fill();
        return true;
    }
    const Message message(*this);
    if (message)
        fill();
    return static_cast<bool>(message);
}

void MidiMap::copyTo(Lists& copy) const
{
    for (int list = 0; list < kLists; ++list) {
        const int entries = count(list);
        copy.counts[static_cast<size_t>(list)] = entries;
        for (int i = 0; i < entries; ++i)
            copy.entries[static_cast<size_t>(list)][static_cast<size_t>(i)] = at(list, i);
    }
}

int MidiMap::count(int list) const
{
    return isList(list) ? counts[static_cast<size_t>(list)].load(std::memory_order_acquire) : 0;
}

CcAssignment MidiMap::at(int list, int index) const
{
    if (index < 0 || index >= count(list))
        return {};
    return unpack(allEntries[static_cast<size_t>(list)][static_cast<size_t>(index)]);
}

bool MidiMap::isAssigned(int tag) const
{
    for (int list = 0; list < kLists; ++list)
        for (int i = 0; i < count(list); ++i)
            if (at(list, i).tag == tag)
                return true;
    return false;
}

bool MidiMap::isAssigned(int tag, int step) const
{
    for (int list = 0; list < kLists; ++list)
        for (int i = 0; i < count(list); ++i)
            if (at(list, i) == assignment(tag, step))
                return true;
    return false;
}

void MidiMap::setLearnTarget(int tag, int step)
{
    learnTarget = tag < 0 ? kNoTarget : pack(assignment(tag, step));
}

int MidiMap::learnTag() const
{
    const int32_t target = learnTarget;
    return target == kNoTarget ? -1 : unpack(target).tag;
}

int MidiMap::learnStep() const
{
    const int32_t target = learnTarget;
    return target == kNoTarget ? 0 : unpack(target).step;
}

float MidiMap::controllerValue(int controller) const
{
    if (controller < 0 || controller >= kControllers)
        return 0.0f;
    return ccValues[static_cast<size_t>(controller)];
}

void MidiMap::Lists::add(int list, CcAssignment entry)
{
    if (!isList(list))
        return;
    int32_t& used = counts[static_cast<size_t>(list)];
    const auto known = of(list);
    if (used >= kRoom || std::find(known.begin(), known.end(), entry) != known.end())
        return;
    entries[static_cast<size_t>(list)][static_cast<size_t>(used++)] = entry;
}

std::span<const CcAssignment> MidiMap::Lists::of(int list) const
{
    if (!isList(list))
        return {};
    return {entries[static_cast<size_t>(list)].data(),
        static_cast<size_t>(counts[static_cast<size_t>(list)])};
}

bool operator==(const MidiMap::Lists& a, const MidiMap::Lists& b)
{
    for (int list = 0; list < MidiMap::kLists; ++list)
        if (!std::ranges::equal(a.of(list), b.of(list)))
            return false;
    return true;
}

} // namespace ormund
