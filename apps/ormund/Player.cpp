#include "apps/ormund/Player.h"

#include "apps/host/ScriptInterface.h"
#include "apps/ormund/ClockedBlocks.h"
#include "apps/ormund/SilentDriver.h"
#include "data/library/PresetAbout.h"
#include "data/parameters/Tags.h"
#include "data/state/KWChunk.h"

#include <chrono>
#include <thread>

namespace ormund {

extern "C" AEffect* VSTPluginMain(audioMasterCallback host);

namespace {
constexpr int64_t kTryAgainNanos = 2000000000;
constexpr double kUsualTempo = 120;
constexpr int kMostWaitsForEnd = 200;
constexpr int kWaitMs = 1;
constexpr float kHalf = 0.5f;
constexpr float kFollowsHost = 2.0f / 3; // the last of three trigger modes
} // namespace

Player::~Player() { end(); }

std::string Player::start(std::optional<double> tempo)
{
    keepsTempo = tempo.has_value();
    return host.start(VSTPluginMain, tempo.value_or(kUsualTempo))
        ? ""
        : "the engine does not start: " + host.error();
}

std::string Player::openSound(const SoundWishes& wishes)
{
    sound = wishes;
    OpenedDriver opened = ormund::openSound(host, wishes, [] {});
    driver = std::move(opened.driver);
    return opened.problem;
}

std::string Player::load(const std::string& file) { return loadFile(host, file); }

void Player::idle()
{
    if (!driver->isAlive()) {
        isLost = true;
        playOnSilently();
    } else if (isLost && ClockedBlocks::now() >= nextTry) {
        tryAgain();
    } else {
        driver->idle();
    }
    followPanel();
    followPreset();
}

void Player::followPreset()
{
    const std::string name = presetName();
    if (keepsTempo || name == followedPreset)
        return;
    followedPreset = name;
    void* bytes = nullptr;
    const VstIntPtr count = host.dispatch(effGetChunk, 0, 0, &bytes);
    KWChunk chunk;
    if (bytes && count > 0)
        chunk.assign(bytes, static_cast<size_t>(count));
    if (const float tempo = summaryOf(chunk).about.tempo; tempo > 0)
        setTempo(static_cast<double>(tempo));
}

void Player::playOnSilently()
{
    driver.reset();
    nextTry = ClockedBlocks::now() + kTryAgainNanos;
    SoundWishes silence = sound;
    silence.rate = static_cast<int>(host.sampleRate());
    silence.block = host.largestBlock();
    const auto nothingRuns = [] {};
    driver = SilentDriver::open(host, silence, nothingRuns).driver;
    if (driver)
        return;
    // The ports that were wished for may be gone too, or be those of another server.
    silence.midiIn.clear();
    silence.midiOut.clear();
    driver = SilentDriver::open(host, silence, nothingRuns).driver;
}

void Player::tryAgain()
{
    nextTry = ClockedBlocks::now() + kTryAgainNanos;
    OpenedDriver opened = ormund::openSound(host, sound, [this] { driver.reset(); });
    if (opened.driver) {
        driver = std::move(opened.driver);
        isLost = false;
    } else if (!driver) {
        playOnSilently(); // it failed at the last step
    }
}

void Player::followPanel()
{
    const PlayLink::Wish wish = link.look(
        {readParameter(host, Tag::Play) >= kHalf, panelPlaysTransport(), host.isPlaying()});
    if (wish != PlayLink::Wish::Nothing)
        play(wish == PlayLink::Wish::Start);
}

void Player::end()
{
    if (driver && driver->isAlive()) {
        host.endNotes();
        for (int i = 0; i < kMostWaitsForEnd && !host.hasEndedNotes(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(kWaitMs));
    }
    driver.reset();
    host.close();
}

void Player::play(bool on)
{
    link.transportTold();
    if (host.sync().leader() != Leader::Jack || !driver || !driver->play(on))
        host.play(on);
}

void Player::setLeader(Leader wanted)
{
    if (wanted == host.sync().leader())
        return;
    link.transportTold();
    // JACK needs a moment, in which the song runs on.
    constexpr double kBlocksToJoin = 3;
    const double ahead =
        kBlocksToJoin * host.largestBlock() / static_cast<double>(host.sampleRate());
    if (wanted == Leader::Jack && driver && host.isPlaying() && !driver->isRolling()
        && driver->locate(host.position() + ahead * host.tempo() / 60, host.tempo()))
        driver->play(true);
    host.sync().choose(wanted);
}

void Player::toStart()
{
    if (host.sync().leader() != Leader::Jack || !driver || !driver->locate(0, host.tempo()))
        host.locate(0);
}

void Player::setTempo(double beatsPerMinute) { host.setTempo(beatsPerMinute); }

void Player::setCycle(bool on, int firstBar, int lastBar)
{
    if (on)
        host.setCycle((firstBar - 1) * LiveHost::kBeatsPerBar, lastBar * LiveHost::kBeatsPerBar);
    else
        host.setCycle(0, 0);
}

bool Player::panelPlaysTransport() { return readParameter(host, Tag::TriggerMode) >= kFollowsHost; }

std::string Player::presetName() { return host.text(effGetProgramName); }

std::string Player::clockText() const
{
    if (host.sync().leads() != Leader::MidiClock)
        return {};
    switch (host.sync().clockState()) {
    case ClockFollower::State::Silent:
        return "waits for MIDI clock";
    case ClockFollower::State::Lost:
        return "MIDI clock lost, runs on";
    case ClockFollower::State::Locking:
    case ClockFollower::State::Locked:
        break;
    }
    return {};
}

std::string Player::soundText() const
{
    std::string text = clockText();
    if (!text.empty())
        text += "; ";
    return text + (isLost ? "sound lost, runs on without" : driver->describe());
}

} // namespace ormund
