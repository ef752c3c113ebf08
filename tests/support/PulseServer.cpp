#include "tests/support/PulseServer.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ormund {

namespace {

constexpr char kServer[] = "/usr/bin/pulseaudio";
constexpr char kRecorder[] = "/usr/bin/parec";

pid_t start(std::vector<std::string> words, const std::string& output)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(
        &actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    if (posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
        process = -1;
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

void end(pid_t& process, int signal)
{
    if (process <= 0)
        return;
    ::kill(process, signal);
    waitpid(process, nullptr, 0);
    process = -1;
}

} // namespace

bool PulseServer::isInstalled()
{
    return access(kServer, X_OK) == 0 && access(kRecorder, X_OK) == 0;
}

PulseServer::PulseServer(std::string ownFolder) : folder(std::move(ownFolder))
{
    std::filesystem::create_directories(folder);
    const std::string socket = folder + "/socket";
    std::filesystem::remove(socket);
    setenv("PULSE_SERVER", ("unix:" + socket).c_str(), 1);
    setenv("PULSE_RUNTIME_PATH", folder.c_str(), 1);
    process = start({kServer, "-n", "--exit-idle-time=-1", "--daemonize=no", "--use-pid-file=no",
                        "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket, "-L",
                        "module-null-sink sink_name=room format=float32le channels=2 rate="
                            + std::to_string(kRate)},
        "/dev/null");
    for (int i = 0; i < 1000 && !answers; ++i, usleep(10000))
        answers = std::filesystem::exists(socket);
}

PulseServer::~PulseServer()
{
    end(recorder, SIGTERM);
    end(process, SIGTERM);
    unsetenv("PULSE_SERVER");
    unsetenv("PULSE_RUNTIME_PATH");
}

void PulseServer::kill() { end(process, SIGKILL); }

void PulseServer::record()
{
    recorder = start({kRecorder, "--device=room.monitor", "--raw", "--format=float32le",
                         "--channels=2", "--latency-msec=20", "--rate=" + std::to_string(kRate)},
        folder + "/record");
}

std::vector<float> PulseServer::endRecord(double seconds)
{
    const auto wanted = static_cast<std::ptrdiff_t>(seconds * kRate);
    const auto isThere = [wanted](const std::vector<float>& sound) {
        const auto isHeard = [](float sample) { return sample != 0; };
        return sound.end() - std::find_if(sound.begin(), sound.end(), isHeard) >= wanted;
    };
    for (int i = 0; i < 200 && !isThere(recorded()); ++i)
        usleep(100000);
    end(recorder, SIGTERM);
    return recorded();
}

std::vector<float> PulseServer::recorded() const
{
    std::vector<float> left;
    std::ifstream file(folder + "/record", std::ios::binary);
    for (float sides[2]; file.read(reinterpret_cast<char*>(sides), sizeof sides);)
        left.push_back(sides[0]);
    return left;
}

} // namespace ormund
