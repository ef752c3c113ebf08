// The stand-alone program in the background, in a home of its own, and the servers that it plays
// on.
#pragma once

#include "tests/support/Command.h"
#include "tests/support/JackServer.h"
#include "tests/support/OwnHome.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ormund {

inline constexpr char kProgram[] = ORMUND_BIN_DIR "/ormund";
inline constexpr char kMidiIn[] = "Ormund:Ormund MIDI in";
inline constexpr char kMidiOut[] = "Ormund:Ormund MIDI out";

// The program in the background.
class Running {
public:
    Running(const OwnHome& home, std::vector<std::string> arguments) : log(home.file("log"))
    {
        arguments.insert(arguments.begin(), kProgram);
        std::vector<char*> words;
        for (std::string& each : arguments)
            words.push_back(each.data());
        words.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(
            &actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_adddup2(&actions, 1, 2);
        posix_spawn(&process, kProgram, &actions, nullptr, words.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
    }
    ~Running()
    {
        // Asked first: a JACK server waits long for a client that dies.
        if (process > 0)
            kill(process, SIGTERM);
        if (process > 0 && wait() < 0 && process > 0) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }
    void signal(int number) const { kill(process, number); }
    // Its exit code; -1 when it does not end within ten seconds or dies.
    int wait()
    {
        for (int i = 0; i < 1000; ++i, usleep(10000)) {
            int status = 0;
            if (waitpid(process, &status, WNOHANG) != process)
                continue;
            process = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        return -1;
    }
    bool isThere() const { return waitpid(process, nullptr, WNOHANG) == 0; }
    std::string said() const
    {
        std::ostringstream text;
        text << std::ifstream(log).rdbuf();
        return text.str();
    }
    // Waits up to twenty seconds.
    bool says(const std::string& words) const
    {
        for (int i = 0; i < 2000 && said().find(words) == std::string::npos; ++i)
            usleep(10000);
        return said().find(words) != std::string::npos;
    }

private:
    std::string log;
    pid_t process = -1;
};

class Standalone : public testing::Test {
protected:
    void SetUp() override
    {
        setenv("LSAN_OPTIONS",
            "print_suppressions=0:suppressions=" ORMUND_SOURCE_DIR "/tests/support/lsan.supp", 0);
        setenv("JACK_DEFAULT_SERVER", "ormund-nobody", 1);
        setenv("PULSE_SERVER", home.file("no-socket").c_str(), 1);
        setenv("ALSA_CONFIG_PATH", home.file("no-config").c_str(), 1);
        unsetenv("DISPLAY");
    }
    Outcome run(const std::string& arguments)
    {
        return runCommand(std::string("timeout 20 ") + kProgram + " " + arguments);
    }
    OwnHome home;
};

class OnJack : public Standalone {
protected:
    void SetUp() override
    {
        if (!JackServer::isInstalled())
            GTEST_SKIP() << "no JACK server is installed";
        Standalone::SetUp();
        startServer();
    }
    void startServer()
    {
        server = std::make_unique<JackServer>(home.file("jackd.log"));
        ASSERT_TRUE(server->isRunning()) << server->said();
        listener = std::make_unique<JackClient>();
    }
    std::unique_ptr<JackServer> server;
    std::unique_ptr<JackClient> listener;
};

} // namespace ormund
