#include "platform/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ormund {

namespace {

bool isHostsOwn(const char* setting)
{
    for (const char* name : {"LD_LIBRARY_PATH=", "LD_PRELOAD="})
        if (std::strncmp(setting, name, std::strlen(name)) == 0)
            return true;
    return false;
}

pid_t spawn(const std::vector<std::string>& arguments, int outputEnd)
{
    std::vector<char*> pointers;
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    std::vector<char*> environment;
    for (char** setting = environ; *setting; ++setting)
        if (!isHostsOwn(*setting))
            environment.push_back(*setting);
    environment.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (outputEnd >= 0)
        posix_spawn_file_actions_adddup2(&actions, outputEnd, 1);
    else
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);

    // Hosts block and ignore signals as they need; the program starts with none of that, and in a
    // session of its own, so that end() reaches what it started itself.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(
        &attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    pid_t process = -1;
    const int error = posix_spawnp(
        &process, pointers[0], &actions, &attributes, pointers.data(), environment.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? process : -1;
}

} // namespace

ChildProcess::~ChildProcess() { end(); }

bool ChildProcess::start(const std::vector<std::string>& arguments)
{
    end();
    text.clear();
    status = -1;
    int ends[2];
    if (arguments.empty() || pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    // The program's end blocks as programs expect.
    fcntl(ends[1], F_SETFL, 0);
    process = spawn(arguments, ends[1]);
    close(ends[1]);
    if (process < 0) {
        close(ends[0]);
        return false;
    }
    pipeEnd = ends[0];
    return true;
}

void ChildProcess::readAll()
{
    char block[4096];
    ssize_t count = 0;
    while ((count = read(pipeEnd, block, sizeof block)) > 0)
        if (text.size() < kMaxOutput)
            text.append(block, static_cast<size_t>(count));
}

bool ChildProcess::poll()
{
    if (process <= 0)
        return true;
    readAll();
    int word = 0;
    const pid_t ended = waitpid(process, &word, WNOHANG);
    if (ended == 0 || (ended < 0 && errno == EINTR))
        return false;
    // The rest that it wrote between the read and its end.
    readAll();
    if (ended == process && WIFEXITED(word))
        status = WEXITSTATUS(word);
    close(pipeEnd);
    pipeEnd = -1;
    process = -1;
    return true;
}

void ChildProcess::end()
{
    if (process <= 0)
        return;
    kill(-process, SIGKILL);
    waitpid(process, nullptr, 0);
    close(pipeEnd);
    pipeEnd = -1;
    process = -1;
}

bool ChildProcess::startDetached(const std::vector<std::string>& arguments)
{
    if (arguments.empty() || !isInstalled(arguments[0]))
        return false;
    // The shell ends at once, and the program goes to the system's first process.
    std::vector<std::string> command{"/bin/sh", "-c", "\"$@\" &", "sh"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const pid_t shell = spawn(command, -1);
    if (shell < 0)
        return false;
    while (waitpid(shell, nullptr, 0) < 0 && errno == EINTR) { }
    return true;
}

bool ChildProcess::isInstalled(const std::string& program)
{
    if (program.find('/') != std::string::npos)
        return access(program.c_str(), X_OK) == 0;
    const char* path = std::getenv("PATH");
    std::string rest = path ? path : "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const size_t colon = rest.find(':');
        const std::string folder = rest.substr(0, colon);
        rest = colon == std::string::npos ? "" : rest.substr(colon + 1);
        if (!folder.empty() && access((folder + "/" + program).c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

} // namespace ormund
