#include "engine/KWPerformance.h"

#include "data/tracks/Tracks.h"

#include <algorithm>

namespace ormund {

namespace {
float drawnValue(StepCommand command, float r)
{
    const auto whole = [](float value) { return static_cast<float>(static_cast<int>(value)); };
    switch (command) {
    case StepCommand::Pitch:
        return whole(r * 24.0f - 12.0f);
    case StepCommand::VelocityOn:
        return r > 0.5f ? 1.0f : 0.0f;
    case StepCommand::Octave:
        return whole(4.0f * r - 2.0f);
    case StepCommand::PitchBend:
        return whole(r * 19.0f);
    case StepCommand::MajorChord:
        return whole(r * 23.0f);
    case StepCommand::MinorChord:
        return 24.0f + whole(23.0f * r);
    case StepCommand::Arpeggio:
        return whole(r * 17.0f);
    default:
        return r; // velocity, gate, modulation
    }
}
} // namespace

void KWPerformance::tick(const KWLanes::Out& lanes)
{
    const int value = static_cast<int>(tracks.performance.step(lanes.performance));
    values.command =
        static_cast<StepCommand>(std::clamp(value, 0, static_cast<int>(StepCommand::LastMod)));
    const bool acts = values.command != StepCommand::None;
    if (!key.changed(acts ? lanes.performance : -1))
        return;
    const float r = random.nextMagnitude();
    if (acts)
        values.slots[static_cast<size_t>(values.command)] = drawnValue(values.command, r);
}

} // namespace ormund
