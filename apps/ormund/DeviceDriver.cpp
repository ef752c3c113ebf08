#include "apps/ormund/DeviceDriver.h"

#include "base/Product.h"

#include <algorithm>
#include <cctype>

namespace ormund {

namespace {

constexpr unsigned kUsualRate = 48000;
constexpr unsigned kUsualBlock = 512;
// A sound server stands between; with two blocks its own lateness is heard.
constexpr unsigned kServerBuffers = 4;
constexpr unsigned kCardBuffers = 2;
// An underrun or two is a late block. That many failures without a good block are a device that has
// gone.
constexpr int kMostFailures = 8;

bool containsText(const std::string& text, const std::string& part)
{
    const auto same = [](unsigned char a, unsigned char b) {
        return std::tolower(a) == std::tolower(b);
    };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

unsigned rateFor(const RtAudio::DeviceInfo& info, int wanted)
{
    if (wanted != 0)
        return static_cast<unsigned>(wanted);
    const auto& rates = info.sampleRates;
    if (info.preferredSampleRate != 0)
        return info.preferredSampleRate;
    return rates.empty() || std::count(rates.begin(), rates.end(), kUsualRate) ? kUsualRate
                                                                               : rates.back();
}

} // namespace

thread_local DeviceDriver* DeviceDriver::running = nullptr;

const char* DeviceDriver::nameOf(RtAudio::Api api)
{
    return api == RtAudio::LINUX_PULSE ? "pulse" : "alsa";
}

const char* DeviceDriver::titleOf(RtAudio::Api api)
{
    return api == RtAudio::LINUX_PULSE ? "PulseAudio" : "ALSA";
}

std::vector<SoundDevice> DeviceDriver::devices(RtAudio::Api api)
{
    std::vector<SoundDevice> found;
    try {
        RtAudio audio(api);
        audio.showWarnings(false);
        for (unsigned i = 0; i < audio.getDeviceCount(); ++i) {
            const RtAudio::DeviceInfo info = audio.getDeviceInfo(i);
            if (info.probed && info.outputChannels >= 2)
                found.push_back({std::string(nameOf(api)) + ":" + info.name,
                    std::to_string(rateFor(info, 0)) + " Hz"});
        }
    } catch (const RtAudioError&) {
        found.clear();
    }
    return found;
}

DeviceDriver::DeviceDriver(LiveHost& ownHost, RtAudio::Api api) : host(ownHost), audio(api)
{
    audio.showWarnings(false);
}

DeviceDriver::~DeviceDriver()
{
    try {
        if (audio.isStreamOpen())
            audio.closeStream();
    } catch (const RtAudioError&) {
        // The device went first.
    }
}

OpenedDriver DeviceDriver::open(LiveHost& host, const SoundWishes& wishes,
    const BeforeBlocks& before, RtAudio::Api api, const std::string& part)
{
    try {
        std::unique_ptr<DeviceDriver> made(new DeviceDriver(host, api));
        std::string problem = made->begin(wishes, before, part);
        if (problem.empty())
            return {std::move(made), {}};
        return {nullptr, std::move(problem)};
    } catch (const RtAudioError& error) {
        return {nullptr, std::string(titleOf(api)) + " does not play: " + error.what()};
    }
}

std::string DeviceDriver::begin(
    const SoundWishes& wishes, const BeforeBlocks& before, const std::string& part)
{
    const unsigned count = audio.getDeviceCount();
    unsigned chosen = count;
    RtAudio::DeviceInfo info;
    for (unsigned i = 0; i < count; ++i) {
        const RtAudio::DeviceInfo each = audio.getDeviceInfo(i);
        if (!each.probed || each.outputChannels < 2 || !containsText(each.name, part))
            continue;
        if (chosen == count || (each.isDefaultOutput && !info.isDefaultOutput)) {
            chosen = i;
            info = each;
        }
    }
    if (chosen == count)
        return titleOf(audio.getCurrentApi())
            + (part.empty() ? std::string(" has no device") : " has no device named " + part);

    const unsigned rate = rateFor(info, wishes.rate);
    unsigned frames = wishes.block != 0 ? static_cast<unsigned>(wishes.block) : kUsualBlock;
    RtAudio::StreamParameters output;
    output.deviceId = chosen;
    output.nChannels = 2;
    RtAudio::StreamOptions options;
    options.flags = RTAUDIO_NONINTERLEAVED | RTAUDIO_SCHEDULE_REALTIME;
    const bool hasServer = audio.getCurrentApi() == RtAudio::LINUX_PULSE;
    options.numberOfBuffers = hasServer ? kServerBuffers : kCardBuffers;
    options.streamName = product::kName;
    audio.openStream(
        &output, nullptr, RTAUDIO_FLOAT32, rate, &frames,
        [](void* out, void*, unsigned size, double, RtAudioStreamStatus, void* self) -> int {
            auto* left = static_cast<float*>(out);
            return static_cast<DeviceDriver*>(self)->run(left, left + size);
        },
        this, &options, blockFailed);
    const unsigned played = audio.getStreamSampleRate();
    const auto block = static_cast<int>(frames);
    before();
    host.setFormat(static_cast<float>(played), block);
    // The library measures no latency before it plays: the buffers are what it will be.
    blocks = std::make_unique<ClockedBlocks>(host, static_cast<double>(played), block,
        block * static_cast<int>(options.numberOfBuffers), wishes.midiIn, wishes.midiOut);
    if (!blocks->problem().empty())
        return blocks->problem();
    audio.startStream();
    if (!audio.isStreamRunning())
        return std::string(titleOf(audio.getCurrentApi())) + " does not start " + info.name;
    title = std::string(titleOf(audio.getCurrentApi())) + " " + info.name + ", "
        + std::to_string(played) + " Hz";
    return {};
}

DeviceDriver::Answer DeviceDriver::run(float* left, float* right)
{
    running = this;
    failures = hasFailed ? failures + 1 : 0;
    hasFailed = false;
    // The library would call again at once, without end and without the device's pace.
    if (failures >= kMostFailures)
        return kAbort;
    blocks->run(left, right);
    return kGoOn;
}

// Told on the thread of the blocks, without a word about whose they are. What is told elsewhere
// shows in the stream's state.
void DeviceDriver::blockFailed(RtAudioError::Type, const std::string&)
{
    if (running)
        running->hasFailed = true;
}

std::string DeviceDriver::describe() const { return title; }

} // namespace ormund
