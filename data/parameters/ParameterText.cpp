// Parameter values as a host or a user reads and writes them.
#include "data/music/ScaleTable.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/ControllerNames.h"
#include "data/parameters/Parameters.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace ormund {

namespace {

constexpr std::array<std::string_view, 2> kOffOn = {"off", "on"};

// The lists by tag; empty for what is none.
std::span<const std::string_view> choicesOf(int tag)
{
    switch (tag) {
    case Tag::StepSpeed:
        return kSpeedNames;
    case Tag::SongSpeed:
        return kSongSpeedNames;
    case Tag::KeySync:
        return kKeySyncNames;
    case Tag::TriggerMode:
        return kTriggerModeNames;
    case Tag::GateTimeMultiply:
        return kGateMultiplyNames;
    case Tag::EditTool:
        return kEditToolNames;
    case Tag::Launch:
        return kLaunchNames;
    case Tag::PitchMode:
    case Tag::VelocityMode:
    case Tag::GateMode:
    case Tag::PerformanceMode:
        return kPlaybackModeNames;
    default:
        break;
    }
    if (tag >= Tag::ModTarget && tag < Tag::ModTarget + kModTracks)
        return controllerNames();
    if (tag >= Tag::DrumNote && tag < Tag::DrumNote + kModTracks)
        return kMidiNoteNames;
    if (tag >= Tag::LaneSpeed && tag < Tag::LaneSpeed + kStepLanes)
        return kLaneSpeedNames;
    const ParameterEntry* entry = parameterEntry(tag);
    if (!entry)
        return {};
    if (entry->isButton())
        return kOffOn;
    for (int track = 0; track < kModTracks; ++track)
        if (tag == Tag::modMode(track))
            return kPlaybackModeNames;
    return {};
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

bool sameText(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::ranges::equal(trimmed(a), trimmed(b), {}, lower, lower);
}

// The middle of the raw values that give a choice.
float rawOfChoice(int tag, int index)
{
    const auto count = static_cast<float>(choiceCount(tag));
    // The multiples' last entry is reached by the knob's end alone.
    if (tag == Tag::GateTimeMultiply)
        return std::min((static_cast<float>(index) + 0.5f) / (count - 1.0f), 1.0f);
    if (parameterEntry(tag)->isButton())
        return index != 0 ? 0.5f : 0.0f;
    return (static_cast<float>(index) + 0.5f) / count;
}

// All mappings rise with the raw value, so a wanted result is found by halving.
float rawOfMapped(const Mapping& mapping, float wanted)
{
    float low = 0;
    float high = 1;
    for (int i = 0; i < 30; ++i) {
        const float middle = 0.5f * (low + high);
        (mapValue(mapping, middle) < wanted ? low : high) = middle;
    }
    return std::abs(mapValue(mapping, low) - wanted) < std::abs(mapValue(mapping, high) - wanted)
        ? low
        : high;
}

// Both texts one behind the other, as far as there is room, and a zero.
size_t put(std::string_view first, std::string_view second, std::span<char> text)
{
    size_t length = 0;
    for (const std::string_view part : {first, second})
        for (const char c : part)
            if (length + 1 < text.size())
                text[length++] = c;
    text[length] = '\0';
    return length;
}

} // namespace

int choiceCount(int tag)
{
    return tag == Tag::Scale ? kScales : static_cast<int>(choicesOf(tag).size());
}

const char* savedText(Saved saved)
{
    switch (saved) {
    case Saved::Preset:
        return "preset";
    case Saved::PresetAndSynth:
        return "preset, synth preset";
    case Saved::Setting:
        return "key store";
    case Saved::None:
        break;
    }
    return "";
}

std::string_view choiceText(int tag, int index)
{
    if (index < 0 || index >= choiceCount(tag))
        return {};
    return tag == Tag::Scale ? scaleName(index) : choicesOf(tag)[static_cast<size_t>(index)];
}

size_t parameterText(int tag, float raw, std::span<char> text)
{
    if (text.empty())
        return 0;
    const ParameterEntry* entry = parameterEntry(tag);
    if (!entry) {
        text[0] = '\0';
        return 0;
    }
    const float mapped = mapValue(entry->mapping, raw);
    const std::string_view choice = choiceText(tag, static_cast<int>(mapped));
    if (!choice.empty())
        return put(choice, {}, text);
    // As "%f %s", but with a point whatever the locale of the host.
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
        static_cast<double>(entry->unit.empty() ? sanitisedRaw(raw) : mapped),
        std::chars_format::fixed, 6);
    const auto length = static_cast<size_t>(end.ptr - digits.data());
    digits[length] = ' ';
    return put({digits.data(), length + 1}, entry->unit, text);
}

std::optional<float> parameterFromText(int tag, std::string_view text)
{
    const ParameterEntry* entry = parameterEntry(tag);
    if (!entry || !entry->hasValue())
        return {};
    for (int i = 0; i < choiceCount(tag); ++i)
        if (sameText(choiceText(tag, i), text))
            return rawOfChoice(tag, i);

    // A comma is what some users type for the point.
    std::array<char, 64> number{};
    const std::string_view given = trimmed(text).substr(0, number.size());
    std::ranges::replace_copy(given, number.begin(), ',', '.');
    float wanted = 0;
    const char* end = number.data() + given.size();
    if (std::from_chars(number.data(), end, wanted).ec != std::errc{} || !std::isfinite(wanted))
        return {};
    return entry->unit.empty() ? sanitisedRaw(wanted) : rawOfMapped(entry->mapping, wanted);
}

} // namespace ormund
