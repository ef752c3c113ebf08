// Runs a program as a shell does and keeps what it said.
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace ormund {

struct Outcome {
    int code = -1;
    std::string text; // both outputs
    long lines() const { return std::count(text.begin(), text.end(), '\n'); }
};

inline Outcome runCommand(const std::string& line)
{
    FILE* pipe = popen((line + " 2>&1").c_str(), "r");
    Outcome outcome;
    char buffer[4096];
    while (const size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
        outcome.text.append(buffer, count);
    const int status = pclose(pipe);
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

} // namespace ormund
