#include "engine/KWNoteSchedule.h"

#include "engine/EventQueues.h"
#include "synth/KWSimpleMidiManager.h"

namespace ormund {

namespace {
constexpr uint8_t kNoteOnStatus = 0x90;
constexpr int kNodesPerNote = 3; // the end of the old note, the start and the end of the new one
} // namespace

KWNoteSchedule::KWNoteSchedule() = default;

int16_t KWNoteSchedule::allocate(const Message& message)
{
    int16_t place = kNone;
    do {
        place = static_cast<int16_t>(counter++ % kPool);
    } while (at(place).waits); // the caller has made sure of a free one
    at(place) = message;
    ++used;
    return place;
}

void KWNoteSchedule::unlinkAfter(int16_t before, bool passOn)
{
    int16_t& link = linkAfter(before);
    Message& message = at(link);
    if (passOn && message.next != kNone)
        at(message.next).delay += message.delay;
    link = message.next;
    message.waits = false;
    --used;
}

bool KWNoteSchedule::removeNote(int status, int note, bool& toSynth)
{
    bool isFirst = true;
    bool sounds = false;
    int16_t before = kNone;
    for (int16_t place = head; place != kNone;) {
        const Message& message = at(place);
        const int16_t after = message.next;
        if (message.isOf(status, note)) {
            const bool isOff = message.velocity == 0;
            if (isFirst) {
                sounds = isOff;
                toSynth = message.toSynth;
            }
            // Deliberate: a start that has not happened takes its own wait with it.
            unlinkAfter(before, !isFirst || isOff);
            isFirst = false;
        } else {
            before = place;
        }
        place = after;
    }
    return sounds;
}

void KWNoteSchedule::insertAfter(int16_t before, int16_t place, uint32_t delay)
{
    int16_t& link = linkAfter(before);
    at(place).delay = delay;
    at(place).next = link;
    link = place;
}

void KWNoteSchedule::addNote(
    uint32_t delay, int note, int velocity, uint32_t duration, int channel, bool toSynth)
{
    if (used + kNodesPerNote > kPool)
        return;
    const int status = kNoteOnStatus | (channel & 15);
    bool endsVoice = true;
    const bool sounds = removeNote(status, note, endsVoice);

    int16_t before = kNone;
    uint32_t remaining = delay;
    const auto walk = [&] {
        for (int16_t place = linkAfter(before); place != kNone; place = at(place).next) {
            if (at(place).delay > remaining) {
                at(place).delay -= remaining;
                return;
            }
            remaining -= at(place).delay;
            before = place;
        }
    };
    const auto put = [&](int putVelocity, uint32_t putDelay, bool voice) {
        const int16_t place = allocate({static_cast<uint8_t>(status), static_cast<uint8_t>(note),
            static_cast<uint8_t>(putVelocity), true, voice, 0, kNone});
        insertAfter(before, place, putDelay);
        before = place;
    };

    walk();
    if (sounds) {
        put(0, remaining, endsVoice);
        remaining = 0;
    }
    put(velocity, remaining, toSynth);
    remaining = duration;
    walk();
    put(0, remaining, toSynth);
}

void KWNoteSchedule::endNote(int note, int channel)
{
    const int status = kNoteOnStatus | (channel & 15);
    bool toSynth = true;
    if (!removeNote(status, note, toSynth))
        return;
    const int16_t place = allocate(
        {static_cast<uint8_t>(status), static_cast<uint8_t>(note), 0, true, toSynth, 0, kNone});
    insertAfter(kNone, place, 0);
}

bool KWNoteSchedule::soundsElsewhere(const Message& ended) const
{
    uint32_t seen = 1u << (ended.status & 15); // channels
    for (int16_t place = head; place != kNone; place = at(place).next) {
        const Message& message = at(place);
        const uint32_t channel = 1u << (message.status & 15);
        if (message.note != ended.note || (seen & channel) != 0)
            continue;
        seen |= channel;
        if (message.velocity == 0 && message.toSynth)
            return true;
    }
    return false;
}

void KWNoteSchedule::drain(OutgoingList& outgoing, KWSimpleMidiManagerBase& voices)
{
    // Everything less than a period away falls due; the first that is not comes a period nearer.
    uint32_t remaining = kTickSamples;
    int due = 0;
    for (int16_t place = head; place != kNone; place = at(place).next) {
        Message& message = at(place);
        if (message.delay >= remaining) {
            message.delay -= remaining;
            break;
        }
        remaining -= message.delay;
        message.delay = 0;
        ++due;
    }

    int16_t before = kNone;
    while (due-- > 0) {
        const int16_t place = linkAfter(before);
        const Message message = at(place);
        if (outgoing.append(message.status, message.note, message.velocity)) {
            unlinkAfter(before, true);
            if (message.toSynth && (message.velocity != 0 || !soundsElsewhere(message)))
                voices.noteEvent(message.note, message.velocity);
        } else if (message.velocity == 0) {
            before = place;
        } else {
            // Its end follows it in the list and may be due in this very tick.
            unlinkAfter(before, true);
            int16_t previous = before;
            int ahead = due;
            for (int16_t i = linkAfter(before); i != kNone; i = at(i).next, --ahead) {
                if (at(i).isOf(message.status, message.note)) {
                    unlinkAfter(previous, true);
                    due -= ahead > 0;
                    break;
                }
                previous = i;
            }
        }
    }
}

int KWNoteSchedule::pendingOffs(int note) const
{
    int offs = 0;
    for (int16_t place = head; place != kNone; place = at(place).next)
        offs += at(place).note == note && at(place).velocity == 0;
    return offs;
}

} // namespace ormund
