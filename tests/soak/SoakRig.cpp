#include "tests/soak/SoakRig.h"

#include "controls/KWFrame.h"
#include "data/parameters/ChoiceLists.h"
#include "data/parameters/Tags.h"
#include "panel/ControlCatalogue.h"
#include "view/offscreen/OffscreenWindow.h"

#include <algorithm>
#include <cmath>

namespace ormund {

namespace {
constexpr double kLongestNote = 175; // seconds; a whole gate at the slowest speed and tempo is 171
constexpr float kLoudest = 1.001f;   // the voices end in a limiter
constexpr double kTick = kTickSamples;

KWUniClient* made = nullptr;

AEffect* makeInstance(audioMasterCallback callback)
{
    made = new KWUniClient(callback);
    return made->getAeffect();
}
} // namespace

SoakRig::SoakRig()
{
    host.keepOutput = false;
    if (!host.attach(makeInstance, {.sampleRate = rate, .blockSize = 8192})) {
        fail(host.error());
        return;
    }
    engine = made;
    editor = new KWUniClientEditor(*engine);
    engine->setEditor(editor); // and with it, it goes
}

SoakRig::~SoakRig()
{
    closeEditor();
    host.close();
}

void SoakRig::fail(const std::string& text)
{
    if (found.empty())
        found = "at " + std::to_string(figures.seconds) + " s: " + text;
}

void SoakRig::setBlock(int frames)
{
    block = frames;
    host.dispatch(effSetBlockSize, 0, frames);
}

void SoakRig::setRate(float hertz)
{
    rate = hertz;
    host.setSampleRate(hertz);
    straightSince = -1;
}

void SoakRig::openEditor()
{
    if (user)
        return;
    editor->openIn(std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight));
    user = std::make_unique<FrameUser>(*editor->getFrame());
}

void SoakRig::closeEditor()
{
    if (!user)
        return;
    user.reset();
    editor->close();
}

bool SoakRig::play(double seconds)
{
    auto frames = static_cast<int64_t>(seconds * static_cast<double>(rate));
    while (frames > 0 && found.empty()) {
        const int count = static_cast<int>(std::min<int64_t>(frames, block));
        const double before = host.position();
        // Within half a beat the engine glides to a new place inside one block.
        const bool located = before != expected;
        host.runBlock(count);
        expected = host.position();
        figures.frames += count;
        figures.seconds += count / static_cast<double>(rate);
        ++figures.blocks;
        frames -= count;
        if (!listen())
            return false;
        // A tempo beyond counts as the nearest, so the engine is put right at the next block; a
        // cycle's end falls on a sample in the engine and between two in the host.
        const double tempo = host.transport.time.tempo;
        const bool isEven = host.position() >= before && tempo >= kMinTempo && tempo < kMaxTempo;
        evenFrames = isEven && !located ? evenFrames + count : 0;
        if (isEven)
            checkPosition();
        checkSteps();
    }
    return found.empty();
}

bool SoakRig::listen()
{
    for (const std::vector<float>* side : {&host.left, &host.right})
        for (const float sample : *side) {
            if (!(std::abs(sample) < kLoudest)) { // nor if it is no number
                fail("a sample of " + std::to_string(sample));
                return false;
            }
            figures.loudest = std::max(figures.loudest, std::abs(sample));
        }
    for (const ScriptedHost::Event& event : host.events) {
        ++figures.messages;
        if ((event.bytes[0] & 0xF0) != 0x90)
            continue;
        const size_t channel = event.bytes[0] & 0x0F;
        Sounding& note = notes[channel * 128 + event.bytes[1]];
        if (event.bytes[2] > 0) {
            if (note.since >= 0)
                fail("note " + std::to_string(event.bytes[1]) + " starts twice");
            note = {event.frame,
                event.frame + static_cast<int64_t>(kLongestNote * static_cast<double>(rate)), rate};
            ++figures.notes;
        } else if (note.since < 0) {
            fail("note " + std::to_string(event.bytes[1]) + " ends without a start");
        } else {
            const double held =
                static_cast<double>(event.frame - note.since) / static_cast<double>(note.rate);
            figures.longestNote = std::max(figures.longestNote, held);
            note.since = -1;
        }
    }
    host.events.clear();
    host.automation.clear();
    for (const Sounding& note : notes)
        if (note.since >= 0 && figures.frames > note.latest)
            fail("a note hangs");
    if (!host.faults.empty())
        fail("the plug-in " + host.faults.front());
    return found.empty();
}

int SoakRig::sounding() const
{
    return static_cast<int>(std::count_if(
        notes.begin(), notes.end(), [](const Sounding& note) { return note.since >= 0; }));
}

// At a block's end the engine stands where the host says that it will stand.
void SoakRig::checkPosition()
{
    if (!playing)
        return;
    double off = std::abs(engine->info.songPosition - host.position());
    const VstTimeInfo& time = host.transport.time;
    if ((time.flags & kVstTransportCycleActive) != 0) {
        // One of the two may stand a sample before the cycle's end, the other at its start.
        const double acrossEnd = std::abs(off - (time.cycleEndPos - time.cycleStartPos));
        if (acrossEnd < off) {
            off = acrossEnd;
            evenFrames = 0;
        }
    }
    const double ticks = off / (kTick * host.beatsPerFrame());
    figures.widestDrift = std::max(figures.widestDrift, ticks);
    ++figures.positionChecks;
    if (ticks > 1)
        fail("the position is " + std::to_string(ticks) + " ticks off");
}

// Nothing bends the way from the position to the step.
bool SoakRig::isStraight() const
{
    const Parameters& parameters = engine->parameters;
    if (!playing || parameters.index(Tag::TriggerMode) != 2 || engine->screen.playing == 0
        || parameters.raw(Tag::Swing) > 0)
        return false;
    for (const int tag :
        {Tag::HalfSpeed, Tag::Retrigger, Tag::Slowdown, Tag::StepPlay, Tag::Looper})
        if (parameters.index(tag) != 0)
            return false;
    return true;
}

void SoakRig::checkSteps()
{
    const int speed = engine->parameters.index(Tag::StepSpeed);
    // A new pattern brings its speed at the end of a tick whose step went by the old one.
    const float pattern = engine->screen.pattern;
    if (!isStraight() || speed != straightSpeed || pattern != straightPattern) {
        straightSpeed = speed;
        straightPattern = pattern;
        straightSince = isStraight() ? host.rolled() : -1;
        return;
    }
    // The step is that of the last tick, which must have been on this side of a locate.
    if (evenFrames <= 2 * kTickSamples)
        return;
    // A performance effect ends at the next step, so two must have passed since.
    const auto perBeat = static_cast<double>(kSpeedStepsPerBeat[static_cast<size_t>(speed)]);
    if (straightSince < 0 || host.rolled() - straightSince < 2.5 / perBeat)
        return;
    // Where the last tick stood.
    const double place = host.position() - (engine->info.controlCounter + 1) * host.beatsPerFrame();
    const double tick = kTick * host.beatsPerFrame();
    const auto earliest = static_cast<float>(std::floor((place - tick) * perBeat));
    const auto latest = static_cast<float>(std::floor((place + tick) * perBeat));
    const float step = engine->screen.masterStep;
    ++figures.stepChecks;
    if (step < earliest || step > latest)
        fail("step " + std::to_string(step) + " where the host's position asks for "
            + std::to_string(earliest));
}

bool SoakRig::fallSilent()
{
    host.stop();
    playing = false;
    host.send({0xB0, 123, 0});
    host.clearCycle();
    // What was begun at a high rate is as many samples long at a low one.
    setBlock(8192);
    setRate(192000);
    if (!play(kLongestNote + 5))
        return false;
    if (sounding() > 0)
        fail(std::to_string(sounding()) + " notes sound at the end");
    return found.empty();
}

} // namespace ormund
