// The built module behind a scripted host, in a home of its own.
#pragma once

#include "apps/host/ScriptedHost.h"
#include "tests/support/OwnHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace ormund {

inline const std::string kModule = ORMUND_BIN_DIR "/ormund-vst2.so";
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float kInfinity = std::numeric_limits<float>::infinity();

inline constexpr VstInt32 kDoor = fourCharacters('K', 'W', 'O', 'R');
inline constexpr int kRootKey = 0;
inline constexpr int kScale = 1;
inline constexpr int kPlayButton = 9;
inline constexpr int kSynthSwitch = 513;

class Module : public testing::Test {
protected:
    void SetUp() override { start(host, {}); }
    static void start(ScriptedHost& one, const ScriptedHost::Setup& setup)
    {
        ASSERT_TRUE(one.load(kModule, setup)) << one.error();
    }
    void set(int tag, float value) { host.effect()->setParameter(host.effect(), tag, value); }
    static std::vector<char> stateOf(ScriptedHost& one)
    {
        void* data = nullptr;
        const auto bytes = one.dispatch(effGetChunk, 0, 0, &data);
        return {static_cast<char*>(data), static_cast<char*>(data) + bytes};
    }
    static bool give(ScriptedHost& one, std::vector<char> state)
    {
        const auto bytes = static_cast<VstIntPtr>(state.size());
        return one.dispatch(effSetChunk, 0, bytes, state.data()) == 1;
    }
    // One of the files' codes of the script interface.
    static bool script(ScriptedHost& one, int code, std::string path)
    {
        return one.dispatch(effVendorSpecific, kDoor, code, path.data()) == 1;
    }
    OwnHome home;
    ScriptedHost host;
};

// What still sounds after all messages, by pitch.
inline std::map<int, int> soundingAfter(const std::vector<ScriptedHost::Event>& events)
{
    std::map<int, int> open;
    for (const auto& event : events) {
        if ((event.bytes[0] & 0xe0) != 0x80)
            continue;
        const bool isOn = (event.bytes[0] & 0xf0) == 0x90 && event.bytes[2] > 0;
        int& count = open[event.bytes[1]];
        count = isOn ? count + 1 : 0;
        if (count == 0)
            open.erase(event.bytes[1]);
    }
    return open;
}

inline std::vector<ScriptedHost::Event> noteOns(const std::vector<ScriptedHost::Event>& events)
{
    std::vector<ScriptedHost::Event> notes;
    std::copy_if(events.begin(), events.end(), std::back_inserter(notes),
        [](const auto& event) { return (event.bytes[0] & 0xf0) == 0x90 && event.bytes[2] > 0; });
    return notes;
}

inline float loudest(const std::vector<float>& samples)
{
    float peak = 0;
    for (const float sample : samples)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

inline bool allFinite(const std::vector<float>& samples)
{
    return std::all_of(
        samples.begin(), samples.end(), [](float sample) { return std::isfinite(sample); });
}

} // namespace ormund
