// The sound and the MIDI of whole performances, as recorded numbers.
//
// They are part of every saved piece: whatever makes the plug-in faster, smaller or tidier must
// leave them as they are, at every sample rate, on every processor and with every compiler.

#include "base/ParkMiller.h"
#include "data/parameters/Tags.h"
#include "tests/support/Checked.h"
#include "tests/support/Player.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>

namespace ormund {

namespace {
constexpr float kRates[] = {22050, 44100, 48000, 96000, 192000};
constexpr int kOddBlock = 441; // ends now in a control period, now at its edge
constexpr char kRecord[] = ORMUND_SOURCE_DIR "/tests/golden/scene-hashes.txt";

// FNV-1a, a word at a time.
class Hash {
public:
    void add(uint64_t word) { value = (value ^ word) * 1099511628211u; }
    void add(float sample)
    {
        uint32_t word = 0;
        std::memcpy(&word, &sample, sizeof word);
        add(uint64_t{word});
    }
    uint64_t value = 14695981039346656037u;
};

uint64_t hashOf(const Player& player)
{
    Hash hash;
    for (const auto* side : {&player.left(), &player.right()})
        for (const float sample : *side)
            hash.add(sample);
    for (const MidiOut& event : player.events()) {
        hash.add(static_cast<uint64_t>(event.frame));
        hash.add(static_cast<uint64_t>(event.status << 16 | event.data1 << 8 | event.data2));
    }
    return hash.value;
}

void playPresets(Player& player, PresetKind kind, const PresetTree& tree, int folder)
{
    for (int i = 0; i < tree.fileCount(folder); ++i) {
        player.engine().library.load(kind, tree.fileAt(folder, i)->path);
        player.engine().setParameter(Tag::SynthOn, 1);
        player.playBeats(3.3);
    }
}

// The songs and sounds of tests/presets/bank, which stay as they are.
PresetTree bank(PresetKind kind)
{
    PresetTree tree;
    const PresetKindRow& row = presetKindRow(kind);
    tree.scan(
        {std::string(ORMUND_BIN_DIR "/../tests/bank/") + row.title + "/Factory"}, row.extension);
    return tree;
}

void playGlobalFolder(Player& player, int folder)
{
    playPresets(player, PresetKind::Global, bank(PresetKind::Global), folder);
}

void playSynthPresets(Player& player)
{
    const PresetTree tree = bank(PresetKind::Synth);
    for (int folder = 0; folder < tree.folderCount(); ++folder)
        playPresets(player, PresetKind::Synth, tree, folder);
}

void playEffectsOnTime(Player& player)
{
    KWUniClient& engine = player.engine();
    engine.setParameter(Tag::Swing, 0.4f);
    for (const int effect : {Tag::HalfSpeed, Tag::Retrigger, Tag::Slowdown, Tag::Looper,
             Tag::GateTimeButton, Tag::VelocityGateButton, Tag::Mute}) {
        player.playBeats(0.8);
        engine.setParameter(effect, 1);
        player.playBeats(1.7);
        engine.setParameter(effect, 0);
    }
    player.stop();
    player.playBeats(2);
}

// Everything a host can move, moves; keys, a cycle, a tempo that wanders.
void playAutomation(Player& player)
{
    KWUniClient& engine = player.engine();
    ParkMiller dice(4711);
    for (int k = 0; k < 8; ++k) {
        engine.setParameter(Tag::ModTrackOn + k, 1);
        engine.setParameter(Tag::ModToSynth + k, k % 3 != 0);
    }
    player.cycle(1, 7);
    for (int move = 0; move < 160; ++move) {
        const int tag = static_cast<int>(dice.nextMagnitude() * 45.9f);
        engine.setParameter(tag, dice.nextMagnitude());
        engine.setParameter(Tag::SynthOn, move % 37 != 0);
        engine.setParameter(Tag::Mute, move % 20 == 7);
        engine.setParameter(Tag::StepPlay, move % 30 > 24);
        engine.setParameter(Tag::VelocityGateButton, move % 25 > 20);
        engine.setParameter(Tag::TriggerMode, move % 50 < 40 ? 1.0f : 0.0f);
        const int note = 36 + static_cast<int>(dice.nextMagnitude() * 60);
        player.send(move % 2 ? 0x90 : 0x80, note, 90, move);
        if (move % 10 == 0)
            player.setTempo(60 + 200 * static_cast<double>(dice.nextMagnitude()));
        player.playBeats(0.2);
    }
}

struct Scene {
    const char* name;
    std::function<void(Player&)> play;
};
const Scene kScenes[] = {
    {"bass-lines", [](Player& player) { playGlobalFolder(player, 0); }},
    {"controller-patterns", [](Player& player) { playGlobalFolder(player, 1); }},
    {"melodies-and-chords", [](Player& player) { playGlobalFolder(player, 2); }},
    {"rhythms", [](Player& player) { playGlobalFolder(player, 3); }},
    {"synth-presets", playSynthPresets},
    {"effects-on-time", playEffectsOnTime},
    {"automation", playAutomation},
};

using Hashes = std::map<std::string, uint64_t>; // "scene rate"

Hashes recorded()
{
    Hashes hashes;
    std::ifstream file(kRecord);
    for (std::string scene, rate, hash; file >> scene >> rate >> hash;)
        hashes[scene + ' ' + rate] = std::strtoull(hash.c_str(), nullptr, 16);
    return hashes;
}

Hashes playAll(const AudioLoops& loops)
{
    Hashes hashes;
    for (const Scene& scene : kScenes)
        for (const float rate : kRates) {
            if (kChecked && rate != kRates[0])
                continue;
            Player player({.rate = rate, .block = kOddBlock, .empty = false, .loops = &loops});
            player.engine().setParameter(Tag::SynthOn, 1);
            player.keepAudio(true);
            player.start();
            scene.play(player);
            float peak = 0;
            for (const float sample : player.left())
                peak = std::max(peak, std::abs(sample));
            EXPECT_GT(peak, 0.05f) << scene.name;
            EXPECT_GT(player.noteOns().size(), 20u) << scene.name;
            hashes[std::string(scene.name) + ' ' + std::to_string(static_cast<int>(rate))] =
                hashOf(player);
        }
    return hashes;
}

void expectRecorded(const AudioLoops& loops)
{
    const Hashes expected = recorded();
    const Hashes heard = playAll(loops);
    EXPECT_EQ(heard.size(), kChecked ? std::size(kScenes) : expected.size());
    for (const auto& [scene, hash] : heard) {
        const auto it = expected.find(scene);
        EXPECT_TRUE(it != expected.end() && it->second == hash)
            << scene << " sounds or plays differently. Where that is meant, record it with "
            << "ORMUND_WRITE_GOLDEN set.";
    }
}
} // namespace

TEST(Scenes, SoundAndPlayAsRecordedOnThisProcessor)
{
    if (std::getenv("ORMUND_WRITE_GOLDEN")) {
        std::ofstream file(kRecord);
        for (const auto& [scene, hash] : playAll(kBaselineLoops)) {
            char text[32];
            std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
            file << scene << ' ' << text << '\n';
        }
    }
    expectRecorded(fastestLoops());
}

TEST(Scenes, SoundAndPlayAsRecordedOnAnyProcessor) { expectRecorded(kBaselineLoops); }

} // namespace ormund
