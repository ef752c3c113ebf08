// The formats, for tests that run with each of them.
#pragma once

#include "tests/formats/FormatHost.h"
#include "tests/platform/TestFolder.h"

#include <ostream>

namespace ormund {

struct Format {
    const char* name;
    std::unique_ptr<FormatHost> (*make)();
};
inline constexpr Format kFormats[] = {
    {"CLAP", makeClapHost}, {"LV2", makeLv2Host}, {"VST3", makeVst3Host}};
inline void PrintTo(const Format& format, std::ostream* out) { *out << format.name; }

// Two global presets that an instance finds. Both play notes, and the swing says which one it is.
class TwoPresets {
public:
    static constexpr float kFirstSwing = 0.1f;
    static constexpr float kSecondSwing = 0.2f;
    TwoPresets();

private:
    TestFolder folder;
};

} // namespace ormund
