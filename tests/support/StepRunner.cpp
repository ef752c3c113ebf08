#include "tests/support/StepRunner.h"

#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "host/plugin/KWUniClient.h"

namespace ormund {

namespace {
constexpr int kLowestNote = 48;
constexpr int kLowestPitch = -8;
constexpr int kLongestBlock = 4096;

AEffect* makeEngine(audioMasterCallback callback)
{
    return (new KWUniClient(callback))->getAeffect();
}
} // namespace

std::vector<char> plainSong(int speedIndex)
{
    KWUniClient engine(nullptr);
    engine.tracks.clearAll();
    engine.patternStore.fillWithDefaults();
    engine.patternStore.replay(engine);
    engine.setParameter(Tag::SynthOn, 0);
    engine.setParameter(
        Tag::StepSpeed, (static_cast<float>(speedIndex) + 0.5f) / static_cast<float>(kSpeeds));
    Tracks& tracks = engine.tracks;
    for (int i = 0; i < StepModel::kTrackLength; ++i) {
        tracks.pitch.setValue(i, static_cast<float>(i + kLowestPitch));
        tracks.velocity.setValue(i, 0.8f);
        tracks.velocityOn.setStep(i, 1.0f);
        tracks.gateTime.setValue(i, 0.1f);
    }
    for (KWZoneHandlerContainer* loop :
        {&tracks.pitchLoop, &tracks.velocityLoop, &tracks.gateLoop, &tracks.performanceLoop})
        loop->setZone(0, {0, StepModel::kTrackLength - 1});
    void* data = nullptr;
    const VstInt32 bytes = engine.getChunk(&data, false);
    return {static_cast<char*>(data), static_cast<char*>(data) + bytes};
}

std::vector<SoundedStep> StepRunner::play(
    double sampleRate, int speedIndex, const std::vector<ReportedBlock>& blocks)
{
    ScriptedHost host;
    host.keepOutput = false;
    const ScriptedHost::Setup setup{
        .sampleRate = static_cast<float>(sampleRate), .blockSize = kLongestBlock};
    if (!(module.empty() ? host.attach(makeEngine, setup) : host.load(module, setup))) {
        problem = host.error();
        return {};
    }
    std::vector<char> song = plainSong(speedIndex);
    host.dispatch(effSetChunk, 0, static_cast<VstIntPtr>(song.size()), song.data());
    for (const ReportedBlock& block : blocks) {
        block.playing ? host.start() : host.stop();
        host.locate(block.place);
        host.setTempo(block.tempo);
        if (block.loopOn)
            host.setCycle(block.loopStart, block.loopEnd);
        else
            host.clearCycle();
        host.runBlock(block.frames);
    }
    std::vector<SoundedStep> heard;
    for (const ScriptedHost::Event& event : host.events)
        if ((event.bytes[0] & 0xF0) == 0x90 && event.bytes[2] > 0)
            heard.push_back({event.frame, plainSongStep(event.bytes[1])});
    return heard;
}

int plainSongStep(int note) { return note - kLowestNote - kLowestPitch; }

StepFaults StepRunner::check(TransportScript& script, int size)
{
    const StepModel& model = script.model();
    return compareSteps(model.steps(),
        play(model.sampleRate(), script.speedIndex(), script.blocks(size)), script.tolerance());
}

} // namespace ormund
