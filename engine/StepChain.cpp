#include "engine/StepChain.h"

namespace ormund {

namespace {
constexpr float kCountWrap = 32000.0f;
} // namespace

float HalfSpeedLink::tick(float count, bool on)
{
    if (switched.changed(on))
        base = count;
    return on ? (count - base) * 0.5f + base : count;
}

float RetriggerLink::tick(float count, bool on, const StepSpeed& speed)
{
    if (step.changed(static_cast<int>(count)))
        latched = on;
    if (latched)
        ownCount += speed.stepsPerTick;
    if (activeEdge.rose(latched) || ownCount >= kCountWrap)
        ownCount = 0;
    const float swung = swing.tick(wholePart(ownCount), speed.swingAmount, speed.swingDelay);
    return latched ? swung : count;
}

float SlowdownLink::tick(float count, bool on, float curve, const StepSpeed& speed)
{
    if (step.changed(static_cast<int>(count))) {
        active = on;
        pace = active ? static_cast<float>(speed.stepsPerTick) : 0.0f;
        decay = pace * curve;
    }
    time += decay;
    ownCount += pace / (time + 1.0f);
    const bool starts = activeEdge.rose(active);
    if (starts || time > kCountWrap)
        time = 0;
    if (starts || ownCount >= kCountWrap)
        ownCount = 0;
    if (starts)
        base = count;
    const float swung = swing.tick(wholePart(ownCount), speed.swingAmount, speed.swingDelay);
    return active ? swung + base : count;
}

float ManualLink::tick(float count, bool on, float keyStep, bool keyHeld, float restart)
{
    if (keySeen.changed(keyStep) && keyHeld)
        ownCount += 1.0f;
    if (restartEdge.rose(restart) || ownCount >= kCountWrap)
        ownCount = 0;
    return on ? ownCount : count;
}

float LooperLink::tick(float count, bool on, int steps, const StepSpeed& speed)
{
    if (step.changed(static_cast<int>(count)))
        active = on;
    length = static_cast<float>(steps);
    advance(speed.stepsPerTick);
    const bool switched = activeSeen.changed(active);
    if (switched)
        base = count;
    if ((switched && active) || ownCount >= length)
        ownCount = 0;
    const float swung = swing.tick(wholePart(ownCount), speed.swingAmount, speed.swingDelay);
    return active ? swung + base : count;
}

} // namespace ormund
