// Eight envelopes: attack, decay, sustain, release, moved once a tick.
#pragma once

#include "synth/Lanes.h"

namespace ormund {

// Ticks that a time takes; never 0, so that it can divide.
struct EnvelopeTimes {
    float attackMs = 0; // as set; exactly 0 skips the attack
    float attack = 0;   // ticks
    float decay = 0;    // ticks
    float release = 0;  // ticks
    float sustain = 0;  // 0 to 1, of the peak
    float ticksPerMs = 0;
};

// Audio thread only. A trigger that differs from the last one restarts the envelope when it is
// above 0 and releases it otherwise.
class Envelope {
public:
    enum class Stage { Before = 0, Attack = 1, Decay = 3, Sustain = 4, Release = 5, Finished = 6 };

    // How the two envelopes of a voice differ.
    enum class Shape {
        Unit, // rises to 1
        Level // rises to the trigger itself, and starts part-way when the voice still sounds
    };

    explicit Envelope(Shape itsShape) : shape(itsShape) { }

    // Once a tick; `triggers` are velocities or levels, one a voice.
    void tick(const Lanes& triggers, const EnvelopeTimes& times);
    const Lanes& values() const { return value; }
    Stage stageOf(int voice) const { return stage[voice]; }

private:
    void retrigger(int voice, float trigger, const EnvelopeTimes& times);
    void move(int voice, float trigger, const EnvelopeTimes& times);
    void release(int voice, const EnvelopeTimes& times);

    const Shape shape;
    Lanes value;
    Lanes lastTrigger;
    Lanes counter; // ticks since the stage began; in the release what is taken off each tick
    LaneArray<Stage> stage;
    bool moving = false; // a voice is in a stage that ends by itself
};

} // namespace ormund
