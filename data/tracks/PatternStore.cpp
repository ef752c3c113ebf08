#include "data/tracks/PatternStore.h"

#include "data/parameters/ParameterSink.h"

namespace ormund {

namespace {

// The process-wide buffer of the global copy button.
constinit OneWayFlag bufferInUse;
constinit bool bufferValid = false;
constinit std::array<float, kPatternValues> buffer{};

bool isPattern(int pattern) { return pattern >= 0 && pattern < kPatterns; }

} // namespace

PatternStore::PatternStore() { fillWithDefaults(); }

void PatternStore::fillWithDefaults()
{
    const auto tags = patternParameterTags();
    for (int position = 0; position < kPatternValues; ++position) {
        const ParameterEntry* entry = parameterEntry(tags[static_cast<size_t>(position)]);
        for (int pattern = 0; pattern < kPatterns; ++pattern)
            setAt(pattern, position, entry ? entry->defaultRaw : 0.0f);
    }
}

void PatternStore::write(int tag, int pattern, float raw) { setAt(pattern, patternSlot(tag), raw); }

float PatternStore::at(int pattern, int position) const
{
    if (!isPattern(pattern) || position < 0 || position >= kPatternValues)
        return 0;
    return values[static_cast<size_t>(pattern)][static_cast<size_t>(position)];
}

void PatternStore::setAt(int pattern, int position, float raw)
{
    if (isPattern(pattern) && position >= 0 && position < kPatternValues)
        values[static_cast<size_t>(pattern)][static_cast<size_t>(position)] = sanitisedRaw(raw);
}

void PatternStore::replay(ParameterSink& sink) const { replay(currentPattern, sink); }

void PatternStore::replay(int pattern, ParameterSink& sink) const
{
    if (!isPattern(pattern))
        return;
    const auto tags = patternParameterTags();
    for (int position = 0; position < kPatternValues; ++position)
        sink.setParameter(tags[static_cast<size_t>(position)], at(pattern, position));
}

void PatternStore::copy() const
{
    if (!isPattern(currentPattern) || !bufferInUse.tryRaise())
        return;
    for (int position = 0; position < kPatternValues; ++position)
        buffer[static_cast<size_t>(position)] = at(currentPattern, position);
    bufferValid = true;
    bufferInUse.lower();
}

bool PatternStore::paste()
{
    if (!bufferInUse.tryRaise())
        return false;
    const bool pasted = bufferValid && isPattern(currentPattern);
    for (int position = 0; pasted && position < kPatternValues; ++position)
        setAt(currentPattern, position, buffer[static_cast<size_t>(position)]);
    bufferInUse.lower();
    return pasted;
}

void PatternStore::forgetCopy()
{
    if (!bufferInUse.tryRaise())
        return;
    bufferValid = false;
    bufferInUse.lower();
}

} // namespace ormund
