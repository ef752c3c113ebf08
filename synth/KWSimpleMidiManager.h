// The voice slots of the synth: which pitch and which velocity each voice plays.
#pragma once

#include <array>
#include <cstddef>

namespace ormund {

// What a sender of notes needs to know.
class KWSimpleMidiManagerBase {
public:
    virtual ~KWSimpleMidiManagerBase() = default;
    // A velocity of 0 is a note off.
    virtual void noteEvent(unsigned note, unsigned velocity) = 0;
    virtual void reset() = 0;
};

// Slots are taken in turn, a silent one first, so that a released voice rings on as long as
// possible. Audio thread only.
template <typename T, int N>
class KWSimpleMidiManager final : public KWSimpleMidiManagerBase {
public:
    void noteEvent(unsigned note, unsigned velocity) override
    {
        const T pitch = static_cast<T>(note);
        if (velocity == 0)
            release(pitch);
        else
            start(pitch, static_cast<T>(velocity));
    }

    void reset() override
    {
        pitchOf.fill(T{});
        velocityOf.fill(T{});
        last = 0;
    }

    // N pitches. A released slot keeps its pitch, so that the release sounds in tune.
    const T* notes() const { return pitchOf.data(); }
    // N velocities, 0 for a slot that is not held.
    const T* velocities() const { return velocityOf.data(); }

private:
    void start(T pitch, T velocity)
    {
        size_t slot = (last + 1) % N;
        if (velocityOf[slot] != T{}) {
            for (size_t other = 0; other < N; ++other) {
                if (velocityOf[other] == T{}) {
                    slot = other;
                    break;
                }
            }
        }
        pitchOf[slot] = pitch;
        velocityOf[slot] = velocity;
        last = slot;
    }

    void release(T pitch)
    {
        for (size_t slot = 0; slot < N; ++slot) {
            if (pitchOf[slot] == pitch)
                velocityOf[slot] = T{};
        }
    }

    alignas(32) std::array<T, N> pitchOf{};
    alignas(32) std::array<T, N> velocityOf{};
    size_t last = 0;
};

} // namespace ormund
