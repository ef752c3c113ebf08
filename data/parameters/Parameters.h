// Every parameter: what it is, how its value is mapped, and the values of one instance.
#pragma once

#include "base/Crossing.h"
#include "data/parameters/Tags.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace ormund {

constexpr int kPatternValues = 34; // a pattern stores so many parameters
constexpr int kPatterns = 16;

// How a raw value v, 0 to 1, becomes the engine's value.
struct Mapping {
    enum Kind : uint8_t {
        Track,   // a step of a track, or a loop: no value of its own
        Plain,   // v
        Button,  // min(2v, 1), truncated
        Switch,  // min(2v + 0.001, 1), truncated
        Choice,  // min(v * a, a - 1); the index is its whole part
        Offset,  // min(trunc(v * a), b) * c + d
        Linear,  // v * a + b
        Whole,   // min(trunc(v * a + b), c)
        Stepped, // trunc(v * a) * b
        Cubed,   // v^3 * a
        Squared, // v^2 * a + b
    };
    Kind kind = Plain;
    float a = 0, b = 0, c = 0, d = 0;
};
// The whole rule, ends included: no number and anything below 0 count as 0, above 1 as 1.
float mapValue(const Mapping& mapping, float v);
float sanitisedRaw(float v);

// Where a parameter is kept. Synth presets hold a part of what global presets hold.
enum class Saved : uint8_t { None, Preset, PresetAndSynth, Setting };

// What backs it.
enum class Backing : uint8_t { Value, TableXY, BtnLine, ListLine, Zones };

struct ParameterEntry {
    int32_t tag = -1;
    int32_t fileKey = -1; // the number in files, -1 never saved; stable for ever
    std::string_view name;
    Mapping mapping;
    float defaultRaw = 0;
    Saved saved = Saved::None;
    Backing backing = Backing::Value;
    int32_t patternSlot = -1; // its place in a pattern's stored values
    std::string_view unit;    // of the mapped value

    constexpr int states() const { return isButton() ? 2 : 1; }
    constexpr bool isButton() const
    {
        return mapping.kind == Mapping::Button || mapping.kind == Mapping::Switch;
    }
    constexpr bool hasValue() const { return backing == Backing::Value; }
    // The setting of the key store that mirrors it, -1 none.
    int settingIndex() const
    {
        return saved != Saved::Setting ? -1 : tag == Tag::IgnoreProgramChange ? 0 : 1;
    }
    // A load leaves it alone unless it is forced.
    constexpr bool isolated() const { return saved == Saved::Setting; }
    constexpr bool isIn(Saved list) const
    {
        return list == saved || (list == Saved::Preset && saved == Saved::PresetAndSynth);
    }
};

// Lists of all instances, in tag order.
std::span<const ParameterEntry> allParameters();
std::span<const ParameterEntry* const> presetParameters();  // what a global preset holds
std::span<const ParameterEntry* const> synthParameters();   // what a synth preset holds
std::span<const ParameterEntry* const> settingParameters(); // the key store
std::span<const ParameterEntry* const> hostParameters();    // index = tag, 0 to 45
// Null for a hole and for any other number.
const ParameterEntry* parameterEntry(int tag);
const ParameterEntry* parameterOfKey(int fileKey);

// The tags that a pattern replays, in order. Place 24 is -1, a place without a parameter; place 10
// replays the learn menu's tag, though the first target list is what is normally stored there.
std::span<const int, kPatternValues> patternParameterTags();
// The place that a tag writes, -1 none. 48 and 563 share one.
int patternSlot(int tag);
// Presets, files, dialogues and edit buttons: setting them does something once, so stored values
// of these tags are never applied again.
bool isAction(int tag);
// A value with two controls belongs to the first of them: that one's tag, any other tag itself.
int firstControlOf(int tag);

// --- as text ---
// "%f %s" of the value and its unit, or the text of a choice. Returns the length; always ends with
// a zero when there is room for one.
size_t parameterText(int tag, float raw, std::span<char> text);
// The text of one choice of a list parameter, empty when it is none.
std::string_view choiceText(int tag, int index);
int choiceCount(int tag); // 0 for what is no list or switch
// Where a parameter is kept, in words; empty for nowhere.
const char* savedText(Saved saved);
// The raw value that a user's text means: a choice's text, or a number in the parameter's unit.
std::optional<float> parameterFromText(int tag, std::string_view text);

// Written by setParameter on any thread, field by field; the audio thread may see a new raw value
// with an old index for a moment, which does no harm.
struct ParameterValue {
    Crossing<float> raw = 0.0f;    // 0 to 1 as last set; what files store
    Crossing<float> mapped = 0.0f; // the engine's value
    Crossing<int32_t> index = 0;   // its whole part
};

// The values of one instance.
class Parameters {
public:
    Parameters(); // all at their defaults

    struct Stored {
        float raw = 0;
        float mapped = 0;
        int index = 0;
        bool changed = false; // against the raw value before
    };
    // Sanitises, stores and maps. A tag without a value stores nothing and gives zeros. Any thread.
    Stored store(int tag, float value);
    void reset(); // defaults, without any reaction

    const ParameterEntry* entry(int tag) const { return parameterEntry(tag); }
    // Of a tag without a value: one that nobody reads.
    ParameterValue& value(int tag);
    const ParameterValue& value(int tag) const;
    float raw(int tag) const { return value(tag).raw; }
    float mapped(int tag) const { return value(tag).mapped; }
    int index(int tag) const { return value(tag).index; }

private:
    std::array<ParameterValue, kTagCount + 1> values; // by tag; the last one nobody reads
};

} // namespace ormund
