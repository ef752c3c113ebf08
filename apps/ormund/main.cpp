// ormund: the plug-in as a program of its own.
#include "apps/ormund/Player.h"
#include "apps/ormund/PlayerOptions.h"
#include "apps/ormund/PlayerWindow.h"
#include "base/TerminalText.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <thread>
#include <unistd.h>

using namespace ormund;

namespace {

enum ExitCode { kGood = 0, kFailed = 1 };
constexpr int kIdleMs = 16;
constexpr unsigned kMostSecondsToEnd = 4;

volatile std::sig_atomic_t endWanted = 0;
volatile std::sig_atomic_t saveWanted = 0;

void listenForEnd()
{
    struct sigaction action = {};
    action.sa_handler = [](int) {
        endWanted = 1;
        alarm(kMostSecondsToEnd);
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    action.sa_handler = [](int) { saveWanted = 1; }; // a session manager's
    sigaction(SIGUSR1, &action, nullptr);
    // A sound server that stands still would hold the program in one of its calls for ever.
    action.sa_handler = [](int) { _exit(kGood); };
    sigaction(SIGALRM, &action, nullptr);
}

int fail(const std::string& problem)
{
    std::fprintf(stderr, "ormund: %s\n", terminalText(problem).c_str());
    return kFailed;
}

int listDevices()
{
    for (const SoundDevice& device : soundDevices())
        std::printf("%s  (%s)\n", device.name.c_str(), device.about.c_str());
    std::printf("none  (no sound, MIDI alone)\n");
    const MidiPorts ports = midiPorts();
    for (const std::string& name : ports.inputs)
        std::printf("MIDI in: %s\n", name.c_str());
    for (const std::string& name : ports.outputs)
        std::printf("MIDI out: %s\n", name.c_str());
    return kGood;
}

void lookAfter(Player& player)
{
    player.idle();
    player.song().idle();
    if (saveWanted) {
        saveWanted = 0;
        player.song().save();
    }
}

// A signal asks nothing: what is in no file is offered at the next start.
void keepTheSong(Player& player)
{
    if (endWanted)
        player.song().keepForNextStart();
    alarm(kMostSecondsToEnd);
}

void runWindow(Player& player, PlayerWindow& window)
{
    while (!endWanted && window.run())
        lookAfter(player);
    keepTheSong(player);
}

void runWithoutWindow(Player& player)
{
    std::string shown;
    while (!endWanted) {
        if (std::string sound = player.soundText(); sound != shown) {
            std::printf("Ormund is on: %s. Ctrl+C ends.\n", sound.c_str());
            std::fflush(stdout);
            shown = std::move(sound);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(kIdleMs));
        lookAfter(player);
    }
    keepTheSong(player);
}

int run(const PlayerOptions& options)
{
    Player player;
    if (std::string problem = player.start(options.tempo); !problem.empty())
        return fail(problem);
    player.song().begin(options.hasWindow);
    if (!options.file.empty()) {
        if (std::string problem = player.load(options.file); !problem.empty())
            return fail(problem);
    } else if (!options.isFresh) {
        player.song().openLast();
    }
    player.effect().sync().choose(options.leader);
    player.effect().sync().sendClock(options.sendClock);
    if (std::string problem = player.openSound(options.sound); !problem.empty())
        return fail("no sound: " + problem
            + (options.sound.device.empty() ? "; `ormund --device none` plays MIDI alone, "
                                              "`ormund-render` writes sound files"
                                            : ""));
    if (!options.hasWindow) {
        if (options.play)
            player.play(true);
        runWithoutWindow(player);
        return kGood;
    }
    PlayerWindow window(player);
    if (!window.isOpen())
        return fail("no window: there is no X display; `ormund --no-window --play` plays without");
    if (options.play)
        player.play(true);
    runWindow(player, window);
    return kGood;
}

} // namespace

int main(int count, char** arguments)
{
    try {
        PlayerOptions options;
        if (const auto code = parsePlayerOptions(count, arguments, options))
            return *code;
        quietLibraries();
        listenForEnd();
        return options.listDevices ? listDevices() : run(options);
    } catch (const std::exception& mishap) {
        return fail(mishap.what());
    }
}
