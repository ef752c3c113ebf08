// Plays one scene with the loops that every processor has, so that its instructions can be counted:
// `valgrind --tool=callgrind --toggle-collect='KWUniClient::processReplacing*' ormund-scene SCENE`.

#include "data/parameters/Tags.h"
#include "tests/support/BusySong.h"
#include "tests/support/Player.h"

#include <cstdio>
#include <functional>
#include <string_view>

using namespace ormund;

namespace {
constexpr float kRate = 44100;

struct Scene {
    const char* name;
    std::function<void(Player&)> prepare;
};
const Scene kScenes[] = {
    {"idle", [](Player& player) { player.engine().setParameter(Tag::SynthOn, 1); }},
    {"sequencer",
        [](Player& player) {
            player.engine().setParameter(Tag::SynthOn, 0);
            player.start();
        }},
    // The transport stops, and the notes are long.
    {"voices",
        [](Player& player) {
            player.engine().setParameter(Tag::SynthOn, 1);
            player.start();
            player.play(11025);
            player.stop();
        }},
    {"everything",
        [](Player& player) {
            player.engine().setParameter(Tag::SynthOn, 1);
            for (int k = 0; k < kModTracks; ++k)
                player.engine().setParameter(Tag::ModToSynth + k, k != 0);
            player.start();
        }},
};
} // namespace

int main(int argc, char** argv)
{
    const std::string_view wanted = argc > 1 ? argv[1] : "";
    for (const Scene& scene : kScenes) {
        if (wanted != scene.name)
            continue;
        Player player(
            {.tempo = 90, .rate = kRate, .block = 64, .empty = false, .loops = &kBaselineLoops});
        writeBusySong(player.engine());
        scene.prepare(player);
        player.play(static_cast<int64_t>(kRate));
        return 0;
    }
    std::fputs("usage: ormund-scene idle|sequencer|voices|everything\n", stderr);
    return 2;
}
