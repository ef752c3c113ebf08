// What the values of the lines for chance, condition, ratchet, late and strum mean. 0 is always the
// plain step.
#pragma once

#include <cstdint>

namespace ormund {

// Stored as what is missing to 100, so that 0 stays the step that always plays.
constexpr int chancePercent(int value) { return 100 - value; }

enum class ConditionKind : uint8_t {
    None,
    Turn, // the `turn`th of every `of` passes through the loop
    First,
    NotFirst,
    Fill, // while the fill button is held
    NotFill,
    Sounded, // the step before started a note
    NotSounded,
};
struct StepCondition {
    ConditionKind kind = ConditionKind::None;
    int turn = 1;
    int of = 1;
};
constexpr int kLongestTurn = 8;
constexpr int kConditions = 42; // none, 35 turns and six words

constexpr StepCondition stepCondition(int value)
{
    if (value <= 0 || value >= kConditions)
        return {};
    int turn = value;
    for (int of = 2; of <= kLongestTurn; ++of) {
        if (turn <= of)
            return {ConditionKind::Turn, turn, of};
        turn -= of;
    }
    constexpr ConditionKind kWords[] = {ConditionKind::First, ConditionKind::NotFirst,
        ConditionKind::Fill, ConditionKind::NotFill, ConditionKind::Sounded,
        ConditionKind::NotSounded};
    return {kWords[turn - 1]};
}
static_assert(stepCondition(kConditions - 1).kind == ConditionKind::NotSounded);
static_assert(stepCondition(35).turn == 8 && stepCondition(35).of == 8);

// The value of the `turn`th of `of` passes.
constexpr int turnCondition(int turn, int of) { return (of - 2) * (of + 1) / 2 + turn; }
static_assert(turnCondition(1, 2) == 1 && turnCondition(8, 8) == 35);

enum class RatchetRamp : uint8_t { Flat, Up, Down };
struct StepRatchet {
    int strikes = 1; // 1 to 8
    RatchetRamp ramp = RatchetRamp::Flat;
};
constexpr int kRatchets = 22; // one strike, and 2 to 8 in three ramps

constexpr StepRatchet stepRatchet(int value)
{
    if (value <= 0 || value >= kRatchets)
        return {};
    return {2 + (value - 1) / 3, static_cast<RatchetRamp>((value - 1) % 3)};
}

constexpr int kLateParts = 16; // of a step; the value is their number
constexpr float lateOfStep(int value) { return static_cast<float>(value) / kLateParts; }

enum class StrumWay : uint8_t { Up, Down, Alternating };
struct StepStrum {
    float gap = 0; // from note to note, 0 to 1/4 step
    StrumWay way = StrumWay::Up;
};
constexpr int kStrums = 25; // none, and 1 to 8 parts in three ways

constexpr StepStrum stepStrum(int value)
{
    if (value <= 0 || value >= kStrums)
        return {};
    constexpr float kPart = 1.0f / 32.0f;
    return {
        static_cast<float>(1 + (value - 1) / 3) * kPart, static_cast<StrumWay>((value - 1) % 3)};
}

} // namespace ormund
