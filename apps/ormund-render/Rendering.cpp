#include "apps/ormund-render/Rendering.h"

#include "apps/host/ScriptInterface.h"
#include "apps/ormund-render/ProgressBar.h"
#include "apps/ormund-render/SoundWriter.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace ormund {

namespace {

namespace fs = std::filesystem;

constexpr double kDefaultBars = 16;
constexpr double kLowestTempo = 45; // what the plug-in keeps to
constexpr double kHighestTempo = 499;

std::string ownModule(const RenderOptions& options)
{
    if (!options.plugin.empty())
        return options.plugin;
    std::error_code ignored;
    const fs::path folder = fs::read_symlink("/proc/self/exe", ignored).parent_path();
    const fs::path beside = folder / "ormund-vst2.so";
    return fs::exists(beside, ignored) ? beside.string()
                                       : (folder / "../lib/vst/ormund-vst2.so").string();
}

std::string loadState(ScriptedHost& host, const RenderOptions& options)
{
    for (const std::string& path : {options.preset, options.map})
        if (!path.empty())
            if (std::string problem = loadFile(host, path); !problem.empty())
                return problem;
    for (const auto& [tag, value] : options.settings)
        host.effect()->setParameter(host.effect(), tag, value);
    return {};
}

double tempoFor(const RenderOptions& options, const MidiFile& file, double beat)
{
    const double wanted = options.tempo ? *options.tempo
        : file.tempos.empty()           ? options.presetTempo
                                        : file.tempoAt(beat);
    return std::clamp(wanted, kLowestTempo, kHighestTempo);
}

// Hands the file's messages of the block to come over and notes them.
void sendBlock(
    ScriptedHost& host, const MidiFile& file, size_t& next, int frames, Rendering& result)
{
    const double start = host.rolled();
    const double perFrame = host.beatsPerFrame();
    for (; next < file.events.size(); ++next) {
        const MidiFileEvent& event = file.events[next];
        const double beat = file.beatOf(event.tick);
        const double frame = std::round((beat - start) / perFrame);
        if (frame >= frames)
            break;
        host.send(event.bytes, static_cast<int>(std::max(0.0, frame)));
        result.incoming.push_back({0, beat, event.bytes, 0});
    }
}

class PeakMeter {
public:
    explicit PeakMeter(Rendering& rendering) : result(rendering) { }
    void add(const std::vector<float>& left, const std::vector<float>& right)
    {
        for (size_t i = 0; i < left.size(); ++i) {
            if (count == 0)
                result.peaks.push_back({});
            WavePeak& peak = result.peaks.back();
            peak.low = std::min({peak.low, left[i], right[i]});
            peak.high = std::max({peak.high, left[i], right[i]});
            result.highest = std::max({result.highest, std::abs(left[i]), std::abs(right[i])});
            count = (count + 1) % Rendering::kPeakFrames;
        }
    }

private:
    Rendering& result;
    int count = 0;
};

// Frames of the next block: no longer than the set size, and it ends where the tempo changes.
int nextBlock(
    const ScriptedHost& host, const RenderOptions& options, const MidiFile& file, double endBeat)
{
    double stop = endBeat;
    if (!options.tempo)
        for (const MidiFileTempo& change : file.tempos)
            if (const double beat = file.beatOf(change.tick); beat > host.rolled() + 1e-9)
                stop = std::min(stop, beat);
    const double left = std::round((stop - host.rolled()) / host.beatsPerFrame());
    return static_cast<int>(std::clamp(left, 1.0, static_cast<double>(options.block)));
}

double lengthInBeats(const RenderOptions& options, const MidiFile& file, int beatsPerBar)
{
    if (options.bars)
        return *options.bars * beatsPerBar;
    if (options.midiIn.empty())
        return kDefaultBars * beatsPerBar;
    return std::max(1.0, std::ceil(file.beatOf(file.lastTick()) / beatsPerBar)) * beatsPerBar;
}

} // namespace

std::string render(const RenderOptions& options, Rendering& result)
{
    MidiFile file;
    if (!options.midiIn.empty()) {
        std::vector<uint8_t> bytes;
        if (std::string problem = readFile(options.midiIn, bytes); !problem.empty())
            return problem;
        if (const auto read = file.read(bytes); read != MidiFile::ReadResult::Ok)
            return options.midiIn + " " + std::string(MidiFile::messageOf(read));
    }
    result.rate = options.rate;
    result.tempo = tempoFor(options, file, 0);
    result.beatsPerBar = file.beatsPerBar;

    ScriptedHost host;
    host.keepOutput = false;
    if (!host.load(ownModule(options),
            {static_cast<float>(options.rate), options.block, result.tempo, file.beatsPerBar}))
        return "cannot load the plug-in: " + host.error();
    if (std::string problem = loadState(host, options); !problem.empty())
        return problem;
    result.title = options.preset.empty() ? host.text(effGetProductString)
                                          : fs::path(options.preset).stem().string();

    SoundWriter sound;
    if (!options.wav.empty())
        if (std::string problem = sound.open(options.wav, static_cast<int>(options.rate));
            !problem.empty())
            return problem;

    PeakMeter meter(result);
    ProgressBar progress;
    bool diskFull = false;
    const auto playBlock = [&](int frames) {
        host.runBlock(frames);
        meter.add(host.left, host.right);
        if (sound.isOpen())
            diskFull = !sound.write(host.left, host.right);
    };

    const double endBeat = lengthInBeats(options, file, result.beatsPerBar);
    double secondsLeft = options.seconds.value_or(0);
    size_t nextEvent = 0;
    double shownTempo = 0;
    host.start();
    while (!diskFull) {
        const double tempo = tempoFor(options, file, host.rolled());
        host.setTempo(tempo);
        if (tempo != shownTempo)
            result.tempos.push_back({MidiFile().tickOf(host.rolled()), tempo});
        shownTempo = tempo;
        const double end = options.seconds ? host.rolled() + secondsLeft * tempo / 60 : endBeat;
        if (end - host.rolled() < 0.5 * host.beatsPerFrame())
            break;
        const int frames = nextBlock(host, options, file, end);
        sendBlock(host, file, nextEvent, frames, result);
        playBlock(frames);
        secondsLeft -= frames / options.rate;
        progress.show(
            options.seconds ? 1 - secondsLeft / *options.seconds : host.rolled() / endBeat);
    }
    result.beats = host.rolled();
    host.stop();
    for (auto left = host.dispatch(effGetTailSize); left > 0 && !diskFull;) {
        const int frames = static_cast<int>(std::min<VstIntPtr>(left, options.block));
        playBlock(frames);
        left -= frames;
    }
    result.allBeats = host.rolled();
    result.events = std::move(host.events);

    if (!options.save.empty()) {
        if (std::string problem = savePreset(host, options.save); !problem.empty())
            return problem;
    }
    if (sound.isOpen())
        if (std::string problem = sound.close(); !problem.empty())
            return problem;
    if (!host.faults.empty())
        return "the plug-in broke the rules of its interface: it " + host.faults.front();
    return {};
}

MidiFile midiOf(const Rendering& rendering)
{
    MidiFile file;
    file.name = rendering.title;
    file.beatsPerBar = rendering.beatsPerBar;
    file.tempos = rendering.tempos;
    for (const ScriptedHost::Event& event : rendering.events) {
        const int kind = event.bytes[0] & 0xf0;
        const bool isShort = kind == 0xc0 || kind == 0xd0;
        file.events.push_back(
            {file.tickOf(event.beat), event.bytes, static_cast<uint8_t>(isShort ? 2 : 3)});
    }
    file.endTick = file.tickOf(rendering.allBeats);
    return file;
}

std::string readFile(const std::string& path, std::vector<uint8_t>& bytes)
{
    errno = 0;
    std::error_code isFolder;
    std::ifstream file(path, std::ios::binary);
    if (!file || fs::is_directory(path, isFolder))
        return "cannot read " + path + ": " + std::strerror(errno ? errno : EISDIR);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
    return {};
}

std::string writeFile(const std::string& path, const std::vector<uint8_t>& bytes)
{
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(
        reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file ? "" : "cannot write " + path + ": " + std::strerror(errno ? errno : EIO);
}

} // namespace ormund
