// Another program, started without waiting and read without waiting. It gets none of our files,
// and none of the library paths that a bundled host may have set for itself. One thread.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace ormund {

class ChildProcess {
public:
    ChildProcess() = default;
    // Ends a program that still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // The first argument is the program, looked up in PATH. False when it cannot be started.
    bool start(const std::vector<std::string>& arguments);
    bool isRunning() const { return process > 0; }
    // Reads what it wrote; true once it has ended.
    bool poll();
    void end();

    // What it wrote to its standard output, at most kMaxOutput bytes.
    const std::string& output() const { return text; }
    // -1 when it did not exit by itself, or when the host took the status.
    int exitStatus() const { return status; }
    static constexpr size_t kMaxOutput = 1 << 16;

    // Starts a program that nobody waits for; no zombie stays.
    static bool startDetached(const std::vector<std::string>& arguments);
    // Whether PATH has it.
    static bool isInstalled(const std::string& program);

private:
    void readAll();

    pid_t process = -1;
    int pipeEnd = -1;
    int status = -1;
    std::string text;
};

} // namespace ormund
