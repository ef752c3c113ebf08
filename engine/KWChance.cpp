#include "engine/KWChance.h"

#include "data/tracks/StepRules.h"
#include "data/tracks/Tracks.h"

namespace ormund {

namespace {
// A number that looks random for each place in the sequence of a seed. 0 to 1, without 1.
float drawAt(uint32_t seed, uint32_t place)
{
    uint64_t bits = (static_cast<uint64_t>(seed) << 32 | place) + 0x9E3779B97F4A7C15u;
    bits = (bits ^ bits >> 30) * 0xBF58476D1CE4E5B9u;
    bits = (bits ^ bits >> 27) * 0x94D049BB133111EBu;
    bits ^= bits >> 31;
    return static_cast<float>(bits >> 40) * 0x1p-24f;
}
} // namespace

void KWChance::tick(const KWClock::Out& clock, const KWLanes::Out& lanes, int pattern)
{
    const bool played = play.changed(clock.play);
    const bool reloaded = reload.changed(clock.reload);
    const bool selected = row.changed(pattern);
    const bool stepped = count.changed(lanes.performanceCount);
    if (played) {
        draws = 0;
        sounded = soundedBefore = false;
    } else if (stepped) {
        ++draws;
        soundedBefore = sounded;
        sounded = false;
    }
    if (played || stepped || reloaded || selected)
        values.plays = holdsCondition(lanes.performance, lanes.performancePass)
            && drawPlays(lanes.performance);
}

bool KWChance::holdsCondition(int step, int pass) const
{
    const StepCondition condition = stepCondition(static_cast<int>(tracks.condition.step(step)));
    switch (condition.kind) {
    case ConditionKind::None:
        break;
    case ConditionKind::Turn:
        return pass % condition.of == condition.turn - 1;
    case ConditionKind::First:
        return pass == 0;
    case ConditionKind::NotFirst:
        return pass != 0;
    case ConditionKind::Fill:
        return settings.fill != 0;
    case ConditionKind::NotFill:
        return settings.fill == 0;
    case ConditionKind::Sounded:
        return soundedBefore;
    case ConditionKind::NotSounded:
        return !soundedBefore;
    }
    return true;
}

bool KWChance::drawPlays(int step) const
{
    const int missing = static_cast<int>(tracks.chance.step(step));
    return missing == 0
        || drawAt(settings.seed, draws) * 100.0f < static_cast<float>(chancePercent(missing));
}

} // namespace ormund
