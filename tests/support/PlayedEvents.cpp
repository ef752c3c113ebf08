#include "tests/support/PlayedEvents.h"

#include "data/music/KWSystemInfo.h"
#include "data/tracks/Tracks.h"

#include <algorithm>
#include <cstdio>

namespace ormund {

void writePlainNotes(Tracks& tracks)
{
    for (int i = 0; i < 32; ++i) {
        tracks.pitch.setValue(i, 0.0f);
        tracks.velocity.setValue(i, 0.8f);
        tracks.velocityOn.setStep(i, 1.0f);
        tracks.gateTime.setValue(i, 0.1f);
    }
}

void PlayedEvents::keepSound(const float* left, const float* right, int frames)
{
    if (!keepsAudio)
        return;
    leftOut.insert(leftOut.end(), left, left + frames);
    rightOut.insert(rightOut.end(), right, right + frames);
}

std::vector<int> PlayedEvents::ticksOf(int count) const
{
    std::vector<int> ticks;
    for (const MidiOut& on : noteOns())
        if (static_cast<int>(ticks.size()) < count)
            ticks.push_back(static_cast<int>(on.frame / kTickSamples));
    return ticks;
}

std::vector<MidiOut> PlayedEvents::noteOns() const
{
    std::vector<MidiOut> ons;
    std::copy_if(out.begin(), out.end(), std::back_inserter(ons),
        [](const MidiOut& event) { return event.isNoteOn(); });
    return ons;
}

std::string PlayedEvents::trace() const
{
    std::string text;
    for (const MidiOut& event : out) {
        char line[64];
        std::snprintf(line, sizeof line, "tick %d  %02x %02x %02x\n",
            static_cast<int>(event.frame / kTickSamples), static_cast<unsigned>(event.status),
            static_cast<unsigned>(event.data1), static_cast<unsigned>(event.data2));
        text += line;
    }
    return text;
}

int PlayedEvents::soundingNotes() const
{
    int sounding[128] = {};
    for (const MidiOut& event : out) {
        if (event.isNoteOn())
            ++sounding[event.data1];
        else if (event.isNoteOff())
            sounding[event.data1] = std::max(sounding[event.data1] - 1, 0);
    }
    int total = 0;
    for (const int count : sounding)
        total += count;
    return total;
}

} // namespace ormund
