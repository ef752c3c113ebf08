#include "host/formats/FormatParameters.h"

#include "data/parameters/Tags.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace ormund {

namespace {

// From this tag to the next row's.
struct Section {
    int firstTag;
    std::string_view name;
};
constexpr Section kSections[] = {{0, "Keys"}, {4, "Performance"}, {17, "Synth"}, {25, "Filter"},
    {32, "Delay"}, {36, "Gate"}, {37, "Modulation"}};

std::string_view withoutSpace(std::string_view text)
{
    const auto isSpace = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isSame(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::ranges::equal(a, b, {}, lower, lower);
}

// What stands behind a number.
std::string_view behindNumber(std::string_view text)
{
    const size_t end = text.find_first_not_of("+-0123456789.,");
    return end == std::string_view::npos ? std::string_view() : withoutSpace(text.substr(end));
}
} // namespace

std::string formatName(int number)
{
    return number == kBypassNumber ? "Bypass"
                                   : std::string(parameterEntry(tagOfNumber(number))->name);
}

bool isSwitch(int number)
{
    return number == kBypassNumber || parameterEntry(tagOfNumber(number))->isButton();
}

bool isInChunk(int number)
{
    return number != kBypassNumber && parameterEntry(tagOfNumber(number))->saved != Saved::None;
}

std::string_view formatSection(int number)
{
    std::string_view name;
    for (const Section& section : kSections)
        if (number != kBypassNumber && tagOfNumber(number) >= section.firstTag)
            name = section.name;
    return name;
}

float formatDefault(int number)
{
    if (number == kBypassNumber)
        return 0;
    const ParameterEntry& entry = *parameterEntry(tagOfNumber(number));
    return entry.isButton() ? (entry.defaultRaw >= kOnFrom ? 1.0f : 0.0f) : entry.defaultRaw;
}

std::string formatSymbol(int number)
{
    if (number == kBypassNumber)
        return "dpf_bypass"; // in sessions from the start
    std::string symbol = formatName(number);
    std::ranges::replace_if(
        symbol, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return symbol;
}

std::string formatText(int number, float value)
{
    if (number == kBypassNumber)
        return value >= kOnFrom ? "on" : "off";
    std::array<char, 64> text{};
    const size_t length = parameterText(tagOfNumber(number), value, text);
    return std::string(withoutSpace({text.data(), length}));
}

std::optional<float> formatValue(int number, std::string_view text)
{
    text = withoutSpace(text);
    if (number == kBypassNumber) {
        const bool on = isSame(text, "on") || text == "1";
        return on || isSame(text, "off") || text == "0" ? std::optional(on ? 1.0f : 0.0f)
                                                        : std::nullopt;
    }
    const int tag = tagOfNumber(number);
    const auto value = parameterFromText(tag, text);
    if (!value)
        return std::nullopt;
    for (int i = 0; i < choiceCount(tag); ++i)
        if (isSame(choiceText(tag, i), text))
            return isSwitch(number) ? (i > 0 ? 1.0f : 0.0f) : *value;
    const std::string_view unit = behindNumber(text);
    if (!unit.empty() && !isSame(unit, parameterEntry(tag)->unit))
        return std::nullopt;
    return isSwitch(number) ? (*value >= kOnFrom ? 1.0f : 0.0f) : *value;
}

} // namespace ormund
