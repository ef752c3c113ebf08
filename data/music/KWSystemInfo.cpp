#include "data/music/KWSystemInfo.h"

#include <algorithm>
#include <cmath>

namespace ormund {

KWSystemInfo::KWSystemInfo()
{
    // The sequential product, so that every note carries the rounding of those below it.
    float frequency = 1.021975f;
    for (Note& note : noteTable) {
        const float next = frequency * 1.0594631f;
        note = {frequency, next - frequency};
        frequency = next;
    }
    setSampleRate(44100.0f);
}

void KWSystemInfo::setTempo(double beatsPerMinute)
{
    if (!(beatsPerMinute < kMaxTempo))
        return;
    tempo = std::max(beatsPerMinute, kMinTempo);
    deriveTempo();
}

bool KWSystemInfo::setSampleRate(float hertz)
{
    if (!isUsableRate(hertz))
        return false;
    sampleRate = hertz;
    rateRatio = hertz / 44100.0f;
    samplesPerMillisecond = 0.001f * hertz;
    ticksPerMillisecond = 0.001f * controlPeriodInverse * hertz;
    deriveTempo();
    return true;
}

float KWSystemInfo::samplesPerBeatAt(double beatsPerMinute) const
{
    return static_cast<float>(static_cast<double>(sampleRate) / (beatsPerMinute / 60.0));
}

void KWSystemInfo::deriveTempo()
{
    samplesPerBeat = samplesPerBeatAt(tempo);
    ticksPerBeat = samplesPerBeat / controlPeriod;
}

float KWSystemInfo::frequencyOf(float pitch) const
{
    const float place = std::clamp(pitch + kLowestPitch, 0.0f, static_cast<float>(kNotes - 1));
    const auto index = static_cast<int>(place);
    const Note& note = noteTable[static_cast<size_t>(index)];
    return note.frequency + (place - static_cast<float>(index)) * note.difference;
}

void KWSystemInfo::addTempoListener(KWBPMChangeInterface* listener)
{
    tempoListeners.push_back(listener);
}

void KWSystemInfo::removeTempoListener(KWBPMChangeInterface* listener)
{
    std::erase(tempoListeners, listener);
}

void KWSystemInfo::notifyTempoListeners()
{
    for (KWBPMChangeInterface* listener : tempoListeners)
        listener->tempoChanged();
}

} // namespace ormund
