#include "host/formats/SavedState.h"

#include "host/formats/FormatParameters.h"
#include "host/formats/KWFormatWrapper.h"

#include <cctype>
#include <charconv>
#include <cmath>

namespace ormund {

namespace {
// The words that sessions have had from the start.
constexpr std::string_view kTexts = "__dpf_state_begin__";
constexpr std::string_view kTextsEnd = "__dpf_state_end__";
constexpr std::string_view kValues = "__dpf_parameters_begin__";
constexpr std::string_view kValuesEnd = "__dpf_parameters_end__";
constexpr std::string_view kChunk = "chunk";
constexpr char kEnd = '\xfe';

// Takes the next text; null where no zero ends it.
std::optional<std::string_view> nextText(std::string_view& rest)
{
    const size_t length = rest.find('\0');
    if (length == std::string_view::npos)
        return std::nullopt;
    const std::string_view text = rest.substr(0, length);
    rest.remove_prefix(length + 1);
    return text;
}
} // namespace

SavedState SavedState::of(KWFormatWrapper& wrapper)
{
    SavedState state{.chunk = wrapper.state(), .values = {}};
    for (int number = 0; number < kFormatParameters; ++number)
        if (!isInChunk(number))
            state.values[formatSymbol(number)] = wrapper.value(number);
    return state;
}

bool SavedState::restore(KWFormatWrapper& wrapper) const
{
    if (!wrapper.setState(chunk))
        return false;
    for (int number = 0; number < kFormatParameters; ++number)
        if (const auto found = values.find(formatSymbol(number));
            found != values.end() && !isInChunk(number))
            wrapper.setValue(number, found->second);
    return true;
}

std::string SavedState::pack() const
{
    std::string bytes;
    const auto put = [&bytes](std::string_view text) { (bytes += text) += '\0'; };
    put(kTexts);
    put(kChunk);
    put(chunk);
    put(kTextsEnd);
    put(kValues);
    for (const auto& [symbol, value] : values) {
        char digits[32];
        const auto end = std::to_chars(std::begin(digits), std::end(digits), value);
        put(symbol);
        put({digits, static_cast<size_t>(end.ptr - digits)});
    }
    put(kValuesEnd);
    put({&kEnd, 1});
    return bytes;
}

std::optional<SavedState> SavedState::unpack(std::string_view bytes)
{
    SavedState state;
    std::string_view section;
    while (!bytes.empty() && bytes.front() != kEnd) {
        const auto key = nextText(bytes);
        if (!key)
            return std::nullopt;
        if (*key == kTexts || *key == kValues) {
            section = *key;
        } else if (*key == kTextsEnd || *key == kValuesEnd) {
            section = {};
        } else {
            const auto value = nextText(bytes);
            if (!value || section.empty())
                return std::nullopt;
            if (section == kTexts && *key == kChunk)
                state.chunk = *value;
            float number = 0;
            if (section == kValues
                && std::from_chars(value->data(), value->data() + value->size(), number).ec
                    == std::errc()
                && std::isfinite(number))
                state.values[std::string(*key)] = number;
        }
    }
    if (bytes.empty() || state.chunk.empty())
        return std::nullopt;
    return state;
}

} // namespace ormund
