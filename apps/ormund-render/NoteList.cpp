#include "apps/ormund-render/NoteList.h"

#include "data/parameters/ControllerNames.h"

#include <array>
#include <map>

namespace ormund {

namespace {

constexpr int kBendKey = -1;

std::string labelOf(int key)
{
    if (key == kBendKey)
        return "Pitch bend";
    const std::string name(controllerName(key));
    return name.empty() ? "Controller " + std::to_string(key) : name;
}

} // namespace

std::vector<PlayedNote> notesOf(const std::vector<ScriptedHost::Event>& events, double end)
{
    std::vector<PlayedNote> notes;
    std::array<int, 128> sounding; // index into `notes`
    sounding.fill(-1);
    for (const ScriptedHost::Event& event : events) {
        const int kind = event.bytes[0] & 0xf0;
        if (kind != 0x80 && kind != 0x90)
            continue;
        int& open = sounding[event.bytes[1] & 0x7f];
        if (open >= 0)
            notes[static_cast<size_t>(open)].end = event.beat;
        open = -1;
        if (kind == 0x90 && event.bytes[2] > 0) {
            open = static_cast<int>(notes.size());
            notes.push_back({event.beat, end, event.bytes[1], event.bytes[2]});
        }
    }
    return notes;
}

std::vector<ControlCurve> curvesOf(const std::vector<ScriptedHost::Event>& events)
{
    std::map<int, ControlCurve> curves;
    for (const ScriptedHost::Event& event : events) {
        const int kind = event.bytes[0] & 0xf0;
        int key = 0;
        float value = 0;
        if (kind == 0xb0) {
            key = event.bytes[1];
            value = static_cast<float>(event.bytes[2]) / 127.0f;
        } else if (kind == 0xd0) {
            key = kTargetAftertouch;
            value = static_cast<float>(event.bytes[1]) / 127.0f;
        } else if (kind == 0xe0) {
            key = kBendKey;
            value = static_cast<float>(event.bytes[1] | event.bytes[2] << 7) / 16383.0f;
        } else {
            continue;
        }
        ControlCurve& curve = curves[key];
        if (curve.points.empty()) {
            curve.label = labelOf(key);
            curve.isBend = key == kBendKey;
        }
        curve.points.push_back({event.beat, value});
    }
    std::vector<ControlCurve> list;
    list.reserve(curves.size());
    for (auto& [key, curve] : curves)
        list.push_back(std::move(curve));
    return list;
}

} // namespace ormund
