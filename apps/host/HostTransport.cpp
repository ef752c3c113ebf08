#include "apps/host/HostTransport.h"

#include <cmath>

namespace ormund {

void HostTransport::setUp(double sampleRate, double tempo, int beatsPerBar)
{
    time.sampleRate = sampleRate;
    time.tempo = tempo;
    time.timeSigNumerator = beatsPerBar;
    time.timeSigDenominator = 4;
}

void HostTransport::setCycle(double startBeat, double endBeat)
{
    time.cycleStartPos = startBeat;
    time.cycleEndPos = endBeat;
    cycling = endBeat > startBeat;
}

void HostTransport::beginBlock()
{
    if (time.tempo != anchor.tempo || time.ppqPos != anchor.expected || playing != wasPlaying)
        anchor = {framesRun, rolledBeats, time.ppqPos, time.tempo, time.ppqPos};
    const double beatsPerBar = time.timeSigNumerator;
    time.samplePos = static_cast<double>(framesRun);
    time.barStartPos = std::floor(time.ppqPos / beatsPerBar) * beatsPerBar;
    time.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid;
    if (playing)
        time.flags |= kVstTransportPlaying;
    if (cycling)
        time.flags |= kVstTransportCycleActive | kVstCyclePosValid;
    if (playing != wasPlaying)
        time.flags |= kVstTransportChanged;
    wasPlaying = playing;
}

void HostTransport::endBlock(int frames)
{
    framesRun += frames;
    const double beats = static_cast<double>(framesRun - anchor.frame) * beatsPerFrame();
    rolledBeats = anchor.rolled + beats;
    if (!playing)
        return;
    time.ppqPos = anchor.expected = anchor.position + beats;
    if (cycling && time.ppqPos >= time.cycleEndPos)
        time.ppqPos = time.cycleStartPos + (time.ppqPos - time.cycleEndPos);
}

} // namespace ormund
