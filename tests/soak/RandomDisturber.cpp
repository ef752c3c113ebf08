#include "tests/soak/RandomDisturber.h"

#include "data/parameters/Tags.h"
#include "data/tracks/FactoryContent.h"
#include "panel/ControlCatalogue.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr size_t kMostStates = 8;
constexpr int kLoadGlobal = 1;
constexpr int kLoadSynth = 2;
constexpr VstInt32 kDoor = KWUniClient::kUniqueId;
} // namespace

RandomDisturber::RandomDisturber(
    SoakRig& victim, unsigned seed, std::vector<std::string> presetFiles)
    : rig(victim), random(seed), presets(std::move(presetFiles))
{
}

void RandomDisturber::act()
{
    for (int i = roll(4); i >= 0; --i)
        actOnce();
    KWUniClient& engine = *rig.engine;
    if (roll(3) == 0) { // so that notes and sound go on
        engine.setParameter(Tag::TriggerMode, 1);
        engine.setParameter(Tag::SynthOn, 1);
        engine.setParameter(Tag::Mute, 0);
        if (!rig.playing)
            moveTransport();
    }
    if (roll(40) == 0) // edits wear the content down
        writeFactoryContent(engine.tracks, engine.patternStore);
    if (straightSeconds == 0 && roll(30) == 0)
        straightSeconds = 15;
    if (straightSeconds > 0) {
        --straightSeconds;
        straighten();
    }
    engine.library.runDeferred();
    if (rig.isEditorOpen())
        rig.host.dispatch(effEditIdle);
}

size_t RandomDisturber::keptBytes() const
{
    size_t bytes = 0;
    for (const std::vector<char>& state : states)
        bytes += state.capacity();
    return bytes;
}

void RandomDisturber::actOnce()
{
    switch (roll(16)) {
    case 0:
    case 1:
    case 2:
        moveParameter();
        break;
    case 3:
        pressButton();
        break;
    case 4:
    case 5:
        edit();
        break;
    case 6:
    case 7:
    case 8:
        sendMidi();
        break;
    case 9:
    case 10:
        moveTransport();
        break;
    case 11:
        rig.setBlock(roll(3) == 0 ? 1 + roll(64) : 1 + roll(4096));
        break;
    case 12:
        if (roll(12) == 0) {
            const float rates[] = {44100, 44100, 48000, 22050, 11050, 96000, 192000};
            rig.setRate(rates[roll(7)]);
        }
        break;
    case 13:
    case 14:
        if (roll(4) == 0)
            load();
        break;
    default:
        useEditor();
        break;
    }
}

void RandomDisturber::straighten()
{
    KWUniClient& engine = *rig.engine;
    engine.setParameter(Tag::SongOn, 0); // a new pattern would bring its own swing
    engine.setParameter(Tag::TriggerMode, 1);
    for (const int tag :
        {Tag::Swing, Tag::HalfSpeed, Tag::Retrigger, Tag::Slowdown, Tag::StepPlay, Tag::Looper})
        if (engine.parameters.raw(tag) != 0)
            engine.setParameter(tag, 0);
    if (!rig.playing)
        moveTransport();
}

void RandomDisturber::moveParameter()
{
    const int tag = roll(2) == 0 ? roll(46) : roll(kTagCount);
    if ((tag >= Tag::PreviousPreset && tag <= Tag::NextSynthPreset) || tag == Tag::RandomPreset)
        return;
    rig.host.effect()->setParameter(rig.host.effect(), tag, roll(3) == 0 ? 0 : unit());
}

void RandomDisturber::pressButton()
{
    const int tag = roll(kTagCount);
    if (tag == Tag::RandomPreset) // draws from the clock
        return;
    rig.engine->setParameter(tag, 1);
    rig.engine->setParameter(tag, 0);
}

void RandomDisturber::edit()
{
    const TrackRow& track = kTrackTable[static_cast<size_t>(roll(kTrackTable.size()))];
    Tracks& tracks = rig.engine->tracks;
    for (int i = roll(8); i >= 0; --i)
        tracks.writeStep(track.tag, roll(32), unit());
    tracks.pitchLoop.setZone(roll(16), {roll(32), roll(32)});
    if (roll(4) == 0)
        rig.engine->sequencer.setLockButton(roll(2) == 0);
    if (roll(20) == 0)
        rig.engine->sequencer.countReload();
}

void RandomDisturber::sendMidi()
{
    const int statuses[] = {0x90, 0x90, 0x80, 0x80, 0xB0, 0xC0, 0xD0, 0xE0};
    for (int i = roll(12); i >= 0; --i)
        rig.host.send({static_cast<uint8_t>(statuses[roll(8)] | (roll(8) == 0 ? roll(16) : 0)),
                          static_cast<uint8_t>(roll(128)), static_cast<uint8_t>(roll(128))},
            roll(600));
    if (roll(10) == 0)
        rig.engine->midiMap.setLearnTarget(roll(kTagCount), roll(32));
    if (roll(40) == 0)
        rig.engine->midiMap.clearMap();
}

void RandomDisturber::moveTransport()
{
    ScriptedHost& host = rig.host;
    switch (rig.playing ? roll(6) : 0) {
    case 0:
        host.clearCycle();
        if (!rig.playing && roll(2) == 0)
            host.locate(unit() * 400);
        host.start();
        rig.playing = true;
        break;
    case 1:
        host.stop();
        rig.playing = false;
        break;
    case 2:
        host.setTempo(roll(6) == 0 ? 20 + 600 * static_cast<double>(unit()) : 60 + roll(140));
        break;
    case 3:
        host.clearCycle();
        host.locate(static_cast<double>(unit()) * (roll(10) == 0 ? 1e5 : 400));
        break;
    case 4: {
        const double from = std::floor(host.position());
        host.setCycle(from, from + 1 + roll(16));
        break;
    }
    default:
        host.clearCycle();
        break;
    }
}

void RandomDisturber::load()
{
    ScriptedHost& host = rig.host;
    const int kind = roll(4);
    if (kind < 2 && !presets.empty()) {
        std::string path = presets[static_cast<size_t>(roll(static_cast<int>(presets.size())))];
        const int code = path.ends_with(".kws") ? kLoadSynth : kLoadGlobal;
        host.dispatch(effVendorSpecific, kDoor, code, path.data());
    } else if (kind == 2 && !states.empty()) {
        std::vector<char>& state =
            states[static_cast<size_t>(roll(static_cast<int>(states.size())))];
        host.dispatch(effSetChunk, 0, static_cast<VstIntPtr>(state.size()), state.data());
    } else {
        void* data = nullptr;
        const auto bytes = host.dispatch(effGetChunk, 0, 0, &data);
        const char* const from = static_cast<char*>(data);
        if (states.size() == kMostStates)
            states.erase(states.begin());
        states.emplace_back(from, from + bytes);
        host.dispatch(effSetProgram, 0, roll(128));
    }
}

void RandomDisturber::useEditor()
{
    if (roll(12) == 0) {
        if (rig.isEditorOpen())
            rig.closeEditor();
        else
            rig.openEditor();
        return;
    }
    if (!rig.isEditorOpen())
        return;
    rig.user->wait(2000);
    const CPoint from{roll(kPanelWidth), 200 + roll(kPanelHeight - 200)}; // files lie above
    const CPoint to{roll(kPanelWidth), 200 + roll(kPanelHeight - 200)};
    if (roll(2) == 0)
        rig.user->click(from);
    else
        rig.user->drag(from, to);
}

} // namespace ormund
