#include "data/parameters/Parameters.h"

#include "data/parameters/ChoiceArrows.h"
#include "data/tracks/EditButtons.h"

#include <algorithm>

namespace ormund {

namespace {

float truncated(float v) { return static_cast<float>(static_cast<int>(v)); }

} // namespace

float sanitisedRaw(float v)
{
    return v > 0 ? std::min(v, 1.0f) : 0.0f; // no number is not above 0
}

float mapValue(const Mapping& mapping, float raw)
{
    const float v = sanitisedRaw(raw);
    const auto [kind, a, b, c, d] = mapping;
    switch (kind) {
    case Mapping::Track:
        return 0;
    case Mapping::Plain:
        return v;
    case Mapping::Button:
        return truncated(std::min(2.0f * v, 1.0f));
    case Mapping::Switch:
        return truncated(std::min(2.0f * v + 0.001f, 1.0f));
    case Mapping::Choice:
        return std::min(v * a, a - 1.0f);
    case Mapping::Offset:
        return std::min(truncated(v * a), b) * c + d;
    case Mapping::Linear:
        return v * a + b;
    case Mapping::Whole:
        return std::min(truncated(v * a + b), c);
    case Mapping::Stepped:
        return truncated(v * a) * b;
    case Mapping::Cubed:
        return v * v * v * a;
    case Mapping::Squared:
        return v * v * a + b;
    }
    return 0;
}

bool isAction(int tag)
{
    switch (tag) {
    case Tag::LoadControllers:
    case Tag::SaveControllers:
    case Tag::PresetMenu:
    case Tag::SynthPresetMenu:
    case Tag::PreviousPreset:
    case Tag::NextPreset:
    case Tag::PreviousSynthPreset:
    case Tag::NextSynthPreset:
    case Tag::MidiLearn:
    case Tag::RandomPreset:
        return true;
    default:
        return editButton(tag) || choiceArrow(tag);
    }
}

int firstControlOf(int tag)
{
    switch (tag) {
    case Tag::LoopbarModeSecond:
        return Tag::LoopbarMode;
    case Tag::PageSecond:
        return Tag::Page;
    case Tag::SynthOnSecond:
        return Tag::SynthOn;
    case Tag::KeyboardModeSecond:
        return Tag::KeyboardMode;
    default:
        return tag;
    }
}

Parameters::Parameters() { reset(); }

void Parameters::reset()
{
    for (const ParameterEntry& entry : allParameters())
        store(entry.tag, entry.defaultRaw);
}

Parameters::Stored Parameters::store(int tag, float given)
{
    const ParameterEntry* entry = parameterEntry(tag);
    if (!entry || !entry->hasValue())
        return {};
    ParameterValue& cell = value(tag);
    const float raw = sanitisedRaw(given);
    const float mapped = mapValue(entry->mapping, raw);
    const int index = static_cast<int>(mapped);
    const bool changed = cell.raw.exchange(raw) != raw;
    cell.mapped = mapped;
    cell.index = index;
    return {raw, mapped, index, changed};
}

ParameterValue& Parameters::value(int tag)
{
    return values[static_cast<size_t>(parameterEntry(tag) ? tag : kTagCount)];
}

const ParameterValue& Parameters::value(int tag) const
{
    return values[static_cast<size_t>(parameterEntry(tag) ? tag : kTagCount)];
}

} // namespace ormund
